#ifndef PYTHON_BINDINGS_ARGUMENTS_H_
#define PYTHON_BINDINGS_ARGUMENTS_H_

// What Python passes in, read without a copy more than needed: texts and buffers as bytes, small
// integers. What cannot be read is a Python exception.

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

namespace qeo::python {

namespace py = pybind11;

/// Appends the bytes of a text: those of bytes, or a str as UTF-8, where a lone surrogate is
/// encoded like any other code point. False when the object is neither.
bool AppendText(PyObject* text, std::string& bytes);

/// The bytes of a text as AppendText reads it; a TypeError for anything else.
std::string TextArgument(PyObject* text);

/// The bytes of bytes, or of a buffer that IsRow of ItemType "B", "b" or "c"; a TypeError that
/// calls them `what` for anything else.
std::vector<unsigned char> BytesArgument(PyObject* bytes, const char* what);

/// Whether a buffer has one dimension, and its items follow one another without gaps.
bool IsRow(const py::buffer_info& buffer);

/// The format of a buffer's items, without a leading sign of the machine's own byte order.
std::string ItemType(const py::buffer_info& buffer);

/// Whether an object is true.
bool FlagArgument(PyObject* flag);

/// The int of an object that can be one, null for any other and for a bool, which is an int by
/// mistake more often than on purpose. Exceptions other than TypeError come through.
py::object IndexOf(PyObject* object);

/// A TypeError that calls an object `what`, unless it is of an iterable type.
void CheckIterable(PyObject* object, const char* what);

/// An integer from `least` to `most`; a ValueError that calls it `what` outside, a TypeError when
/// it is not an integer.
long IntegerArgument(PyObject* integer, long least, long most, const char* what);

/// A str as error messages repeat it: its first 60 characters, those that are not printable as
/// escapes. All that comes from outside passes through here.
std::string Presentable(PyObject* text);

/// How error messages call the type of an object.
std::string TypeName(PyObject* object);

/// How error messages show an object: by its repr, or in words where it is a number of too many
/// digits.
std::string Shown(PyObject* object);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_ARGUMENTS_H_
