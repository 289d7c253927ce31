#ifndef PYTHON_BINDINGS_NOTATION_H_
#define PYTHON_BINDINGS_NOTATION_H_

// Normalising, analysing, cutting and spelling, as plain tuples for the package to name.

#include <pybind11/pybind11.h>

namespace qeo::python {

void AddNotation(pybind11::module_& module);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_NOTATION_H_
