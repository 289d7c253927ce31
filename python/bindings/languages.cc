// The registered languages, made once while the module is imported.

#include "bindings/languages.h"

#include <climits>
#include <utility>
#include <vector>

#include "bindings/arguments.h"
#include "phoneme/phoneme.h"

namespace qeo::python {

namespace {

// Set once, and never destroyed: objects must not be released after the interpreter has ended.
const std::vector<Language>* all_languages = nullptr;

const std::vector<Language>& AllLanguages() { return *all_languages; }

int LanguageOfName(PyObject* name) {
  for (const Language& language : AllLanguages()) {
    if (language.py_name == name) return language.id;
  }
  if (const auto id = sp::LanguageOfName(TextArgument(name))) return *id;
  throw py::value_error("unknown language " + Shown(name) + "; the languages are " +
                        sp::KnownLanguages());
}

// The library serves any id; one that does not fit an int is as unregistered as any other.
int LanguageId(PyObject* integer) {
  int overflow = 0;
  const long id = PyLong_AsLongAndOverflow(integer, &overflow);
  if (overflow > 0 || id > INT_MAX) return INT_MAX;
  if (overflow < 0 || id < INT_MIN) return INT_MIN;
  return static_cast<int>(id);
}

}  // namespace

void InitializeLanguages(const py::module_& enums) {
  const py::object language_enum = enums.attr("Language");
  std::vector<Language> languages;
  for (const sp::LanguageNames& names : sp::Languages()) {
    Language& language = languages.emplace_back();
    language.name = names.name;
    language.id = names.id;
    language.py_name = PyUnicode_InternFromString(language.name.c_str());
    language.member = language_enum(py::int_(language.id)).release().ptr();
  }
  all_languages = new std::vector<Language>(std::move(languages));
}

py::dict LanguageIds() {
  py::dict ids;
  for (const Language& language : AllLanguages()) ids[py::str(language.name)] = language.id;
  return ids;
}

const Language* FindLanguage(int id) {
  for (const Language& language : AllLanguages()) {
    if (language.id == id) return &language;
  }
  return nullptr;
}

int LanguageArgument(PyObject* language, PyObject* fallback) {
  if (PyUnicode_Check(language)) return LanguageOfName(language);
  const py::object integer = IndexOf(language);
  if (!integer) {
    throw py::type_error("a language must be a name, a Language or an int, not " +
                         TypeName(language));
  }
  const int id = LanguageId(integer.ptr());
  if (FindLanguage(id) != nullptr || FlagArgument(fallback)) return id;
  throw py::value_error("unknown language " + Shown(integer.ptr()) + "; the languages are " +
                        sp::KnownLanguages());
}

}  // namespace qeo::python
