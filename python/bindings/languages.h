#ifndef PYTHON_BINDINGS_LANGUAGES_H_
#define PYTHON_BINDINGS_LANGUAGES_H_

// The languages as Python sees them: their names, and the rows of their tables as objects that are
// made once and live as long as the process.

#include <pybind11/pybind11.h>

#include <cstdint>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"

namespace qeo::python {

namespace py = pybind11;

/// The ids of the phones of a syllable, those that it has, and the length of its spelling.
struct RowPhones {
  std::uint8_t ids[2];
  std::uint8_t count;
  std::uint8_t letters;  // of its spelling
};

/// One language. References are never given back: the objects outlive every user.
struct Language {
  std::string name;
  int id = 0;
  PyObject* py_name = nullptr;    // interned, so that most names compare as pointers
  PyObject* member = nullptr;     // of the enum Language
  std::vector<PyObject*> phones;  // a Phone for each row
  PyObject* phone_tuple = nullptr;
  std::vector<PyObject*> syllables;  // a SyllableRow for each row
  PyObject* syllable_tuple = nullptr;
  std::vector<RowPhones> row_phones;  // what a syllable code / 10 stands for
};

/// Makes the languages; `enums` is the module of the enums Language and PhoneType. To be called
/// once, after the types of the records exist.
void InitializeLanguages(const py::module_& enums);

/// The ids of the languages by their names, a dict.
py::dict LanguageIds();

/// The registered language of an id, or null.
const Language* FindLanguage(int id);

/// The language that answers for phones, or for syllables, when `id` is asked.
const Language& PhoneLanguage(int id);
const Language& SyllableLanguage(int id);

/// The id of a language's name or code, a str, in any case; a ValueError that lists them for any
/// other.
int LanguageOfName(PyObject* name);

/// The object of a phone, None for null; a borrowed reference.
PyObject* PhoneObject(const sp::PhoneInfo* phone);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_LANGUAGES_H_
