#ifndef PYTHON_BINDINGS_TYPES_H_
#define PYTHON_BINDINGS_TYPES_H_

// Types on Python's own interface: a record is made in a few dozen nanoseconds, and what a type can
// do is all in one place.

#include <pybind11/pybind11.h>
#include <structmember.h>

#include <cstddef>
#include <cstdint>

#include "bindings/objects.h"

namespace qeo::python {

namespace py = pybind11;

template <typename Function>
void* Slot(Function* function) {
  return reinterpret_cast<void*>(function);
}

/// Python's interface takes constant text as if it could change.
inline char* Mutable(const char* text) { return const_cast<char*>(text); }

/// A member that cannot be written; `offset` is its place in the object.
inline PyMemberDef Member(const char* name, int type, std::size_t offset, const char* doc) {
  return {Mutable(name), type, static_cast<Py_ssize_t>(offset), READONLY, Mutable(doc)};
}

/// Makes a type of objects of `size` bytes.
inline PyTypeObject* MakeType(const char* name, std::size_t size, PyType_Slot* slots) {
#ifdef Py_TPFLAGS_IMMUTABLETYPE  // from Python 3.10
  constexpr unsigned kTypeFlags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_IMMUTABLETYPE;
#else
  constexpr unsigned kTypeFlags = Py_TPFLAGS_DEFAULT;
#endif
  PyType_Spec spec = {name, static_cast<int>(size), 0, kTypeFlags, slots};
  PyObject* type = PyType_FromSpec(&spec);
  if (type == nullptr) throw py::error_already_set();
  return reinterpret_cast<PyTypeObject*>(type);
}

inline void AddType(py::module_& module, const char* name, PyTypeObject* type) {
  module.attr(name) = Borrow(reinterpret_cast<PyObject*>(type));
}

/// A new object of a type, its fields zero.
inline py::object NewObject(PyTypeObject* type) {
  PyObject* object = type->tp_alloc(type, 0);
  if (object == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(object);
}

/// A comparison's answer, from what an ordering of the two gives: negative, 0 or positive.
inline PyObject* Answer(std::int64_t order, int operation) {
  Py_RETURN_RICHCOMPARE(order, 0, operation);
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_TYPES_H_
