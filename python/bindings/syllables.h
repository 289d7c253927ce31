#ifndef PYTHON_BINDINGS_SYLLABLES_H_
#define PYTHON_BINDINGS_SYLLABLES_H_

// The type Syllable, and its way to the library's record and back.

#include <pybind11/pybind11.h>

#include <vector>

#include "phoneme/phoneme.h"

namespace qeo::python {

namespace py = pybind11;

/// Makes the type and adds it to the module.
void AddSyllables(py::module_& module);

/// A new Syllable, and a list of them.
py::object MakeSyllable(const sp::SyllableInfo& syllable);
py::object MakeSyllables(const std::vector<sp::SyllableInfo>& syllables);

/// The record of a Syllable; a TypeError for any other object.
sp::SyllableInfo SyllableArgument(PyObject* syllable);

/// Whether an object is a Syllable.
bool IsSyllable(PyObject* object);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_SYLLABLES_H_
