#ifndef PYTHON_BINDINGS_BATCHES_H_
#define PYTHON_BINDINGS_BATCHES_H_

// Conversions of many texts at once, into NumPy arrays.

#include <pybind11/pybind11.h>

namespace qeo::python {

void AddBatches(pybind11::module_& module);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_BATCHES_H_
