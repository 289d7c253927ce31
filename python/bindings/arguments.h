#ifndef PYTHON_BINDINGS_ARGUMENTS_H_
#define PYTHON_BINDINGS_ARGUMENTS_H_

// What Python passes in, read without a copy more than needed: texts as bytes, languages as ids,
// small integers. Whatever cannot be read is a Python exception.

#include <pybind11/pybind11.h>

#include <string>

namespace qeo::python {

namespace py = pybind11;

/// Appends the bytes of a text: those of bytes, or a str as UTF-8, where a lone surrogate is
/// encoded like any other code point. False when the object is neither.
bool AppendText(PyObject* text, std::string& bytes);

/// The bytes of a text as AppendText reads it; a TypeError for anything else.
std::string TextArgument(PyObject* text);

/// The id of a language that is given by name or as an integer. The library serves an unregistered
/// id, and one too large for it is as unregistered as any.
int LanguageArgument(PyObject* language);

/// An integer from `least` to `most`; a ValueError that calls it `what` outside.
long IntegerArgument(PyObject* integer, long least, long most, const char* what);

/// How error messages call the type of an object.
std::string TypeName(PyObject* object);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_ARGUMENTS_H_
