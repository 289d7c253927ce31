#ifndef PYTHON_BINDINGS_OBJECTS_H_
#define PYTHON_BINDINGS_OBJECTS_H_

// Objects made of others.

#include <pybind11/pybind11.h>

#include <cstddef>

namespace qeo::python {

namespace py = pybind11;

/// A reference of its own to an object that somebody else holds.
inline py::object Borrow(PyObject* object) { return py::reinterpret_borrow<py::object>(object); }

/// The tuple of what `function` makes of each item.
template <typename Items, typename Function>
py::tuple TupleOf(const Items& items, Function function) {
  py::tuple tuple(items.size());
  for (std::size_t i = 0; i < items.size(); ++i) tuple[i] = function(items[i]);
  return tuple;
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_OBJECTS_H_
