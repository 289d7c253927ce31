#ifndef PYTHON_BINDINGS_RECORDS_H_
#define PYTHON_BINDINGS_RECORDS_H_

// The types Phone, Syllable and SyllableRow. They are written on Python's own interface: a syllable
// is made in a few dozen nanoseconds, and what a type can do is all in one place.

#include <pybind11/pybind11.h>

#include <vector>

#include "phoneme/phoneme.h"

namespace qeo::python {

namespace py = pybind11;

/// Makes the three types and adds them to the module.
void AddRecordTypes(py::module_& module);

/// A new Phone; `type` is a member of the enum PhoneType.
py::object MakePhone(const sp::PhoneInfo& row, const py::object& type);

/// A new SyllableRow; `initial` and `final` are a Phone or None.
py::object MakeSyllableRow(int language, const sp::PinyinInfo& row, PyObject* initial,
                           PyObject* final);

/// A new Syllable, and a list of them.
py::object MakeSyllable(const sp::SyllableInfo& syllable);
py::object MakeSyllables(const std::vector<sp::SyllableInfo>& syllables);

/// The record of a Syllable; a TypeError for any other object.
sp::SyllableInfo SyllableArgument(PyObject* syllable);

/// Whether an object is a Syllable.
bool IsSyllable(PyObject* object);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_RECORDS_H_
