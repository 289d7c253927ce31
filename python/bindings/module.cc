// The extension module phoneme._core: the functions that the package wraps.

#include <pybind11/pybind11.h>

#include "bindings/arguments.h"
#include "bindings/batches.h"
#include "bindings/conversions.h"
#include "bindings/fastcall.h"
#include "bindings/languages.h"
#include "bindings/lexicon.h"
#include "bindings/notation.h"
#include "bindings/rows.h"
#include "bindings/syllables.h"

namespace qeo::python {

namespace {

// The objects of the tables belong to the interpreter that made them.
bool IsMainInterpreter() { return PyInterpreterState_Get() == PyInterpreterState_Main(); }

constexpr char kRefusal[] =
    "phoneme works in the main interpreter only, not in a subinterpreter; use threads or processes";

// require_main_interpreter(): asked by the package, since an interpreter may take a module that
// another one has imported without running it again.
py::object RequireMainInterpreter(Arguments /*none*/) {
  if (!IsMainInterpreter()) throw py::import_error(kRefusal);
  return py::none();
}

// What the package's own messages show, see arguments.h.

// presentable(text)
py::object PresentableText(Arguments arguments) { return py::str(Presentable(arguments[0])); }

// shown(object)
py::object ShownObject(Arguments arguments) { return py::str(Shown(arguments[0])); }

// type_name(object)
py::object TypeNameOf(Arguments arguments) { return py::str(TypeName(arguments[0])); }

PyMethodDef methods[] = {
    Method<RequireMainInterpreter, 0>("require_main_interpreter"),
    Method<PresentableText, 1>("presentable"),
    Method<ShownObject, 1>("shown"),
    Method<TypeNameOf, 1>("type_name"),
    {},
};

void Fill(py::module_& module) {
  module.attr("__version__") = PHONEME_VERSION;
  AddMethods(module, methods);
  const auto enums = py::module_::import("phoneme._enums");
  InitializeLanguages(enums);
  AddRows(module, enums);
  AddSyllables(module);
  module.attr("LANGUAGES") = LanguageIds();
  AddConversions(module);
  AddBatches(module);
  AddNotation(module);
  AddLexicon(module);
}

}  // namespace

// What PYBIND11_MODULE would make, but for the question before it: pybind11 remembers the first
// interpreter that it sees, and would wait for it for ever when that one is gone.
// NOLINTNEXTLINE(bugprone-reserved-identifier): Python calls it by this name
extern "C" PYBIND11_EXPORT PyObject* PyInit__core() {
  if (!IsMainInterpreter()) {
    PyErr_SetString(PyExc_ImportError, kRefusal);
    return nullptr;
  }
  PYBIND11_CHECK_PYTHON_VERSION
  PYBIND11_ENSURE_INTERNALS_READY
  static PyModuleDef definition;
  auto module = py::module_::create_extension_module("_core", nullptr, &definition);
  try {
    Fill(module);
    return module.ptr();
  }
  PYBIND11_CATCH_INIT_EXCEPTIONS
}

}  // namespace qeo::python
