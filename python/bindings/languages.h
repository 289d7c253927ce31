#ifndef PYTHON_BINDINGS_LANGUAGES_H_
#define PYTHON_BINDINGS_LANGUAGES_H_

// The registered languages as Python names them.

#include <pybind11/pybind11.h>

#include <string>

namespace qeo::python {

namespace py = pybind11;

/// One language. References are never given back: the objects outlive every user.
struct Language {
  std::string name;
  int id = 0;
  PyObject* py_name = nullptr;  // interned, so that most names compare as pointers
  PyObject* member = nullptr;   // of the enum Language
};

/// Makes the languages; `enums` is the module of the enum Language. To be called once, before all
/// else.
void InitializeLanguages(const py::module_& enums);

/// The ids of the languages by their names, a dict.
py::dict LanguageIds();

/// The registered language of an id, or null.
const Language* FindLanguage(int id);

/// The id of a language that is given by name or code, in any case, or as an integer. A ValueError
/// that lists the languages for another name, and for an id that is not registered, unless
/// `fallback` is true: then the library answers, with the tables of a registered language.
int LanguageArgument(PyObject* language, PyObject* fallback);

/// The getter of an object's field `language`, an id, as a member of the enum Language.
template <typename Object>
PyObject* GetLanguage(PyObject* self, void* /*closure*/) {
  PyObject* member = FindLanguage(reinterpret_cast<Object*>(self)->language)->member;
  Py_INCREF(member);
  return member;
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_LANGUAGES_H_
