#ifndef PYTHON_BINDINGS_NOTATION_H_
#define PYTHON_BINDINGS_NOTATION_H_

// Normalising, analysing, cutting and spelling, as plain tuples for the package to name.

#include <pybind11/pybind11.h>

#include <cstdint>

#include "notation/records.h"

namespace qeo::python {

/// The rules of a set given as bits, in the order of the enum.
notation::RuleSet Rules(std::uint32_t bits);

void AddNotation(pybind11::module_& module);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_NOTATION_H_
