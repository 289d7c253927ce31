#ifndef PYTHON_BINDINGS_CONVERSIONS_H_
#define PYTHON_BINDINGS_CONVERSIONS_H_

// The tables and the conversions of one text, one code or one phone.

#include <pybind11/pybind11.h>

namespace qeo::python {

void AddConversions(pybind11::module_& module);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_CONVERSIONS_H_
