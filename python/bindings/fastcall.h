#ifndef PYTHON_BINDINGS_FASTCALL_H_
#define PYTHON_BINDINGS_FASTCALL_H_

// Functions with positional arguments on Python's own calling convention: a call costs a tenth of
// what a function with conversions and overloads costs, and the conversions of single words are
// shorter than that.

#include <pybind11/pybind11.h>

#include <exception>
#include <new>
#include <string>
#include <utility>

namespace qeo::python {

namespace py = pybind11;

/// Calls a function that returns a pybind11 object; what it throws becomes a Python exception and
/// the result null.
template <typename Function>
PyObject* Guard(Function function) noexcept {
  try {
    return function().release().ptr();
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (const py::builtin_exception& error) {
    error.set_error();
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  }
  return nullptr;
}

/// The arguments of a call; as many as its function was added with.
using Arguments = PyObject* const*;
using Function = py::object (*)(Arguments arguments);

template <Function kFunction, Py_ssize_t kCount>
PyObject* Call(PyObject* /*module*/, Arguments arguments, Py_ssize_t count) noexcept {
  return Guard([&] {
    if (count != kCount) {
      throw py::type_error("expected " + std::to_string(kCount) + " arguments, got " +
                           std::to_string(count));
    }
    return kFunction(arguments);
  });
}

/// The entry of a method table for a function of kCount arguments.
template <Function kFunction, Py_ssize_t kCount>
PyMethodDef Method(const char* name) {
  auto* call = reinterpret_cast<void (*)()>(Call<kFunction, kCount>);
  return {name, reinterpret_cast<PyCFunction>(call), METH_FASTCALL, nullptr};
}

/// Adds the functions of a table that an empty entry ends; the table must outlive the module.
inline void AddMethods(py::module_& module, PyMethodDef* methods) {
  if (PyModule_AddFunctions(module.ptr(), methods) != 0) throw py::error_already_set();
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_FASTCALL_H_
