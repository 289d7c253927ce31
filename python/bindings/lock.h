#ifndef PYTHON_BINDINGS_LOCK_H_
#define PYTHON_BINDINGS_LOCK_H_

// Work without Python's lock, in threads that may outlive the interpreter.

#include <pybind11/pybind11.h>
#include <unistd.h>

#include <exception>
#ifdef __GLIBCXX__
#include <cxxabi.h>
#endif

namespace qeo::python {

/// Takes the lock again. In a thread that is left when the interpreter ends, Python answers by
/// unwinding it (up to 3.13), and would so release objects that nobody may touch any more, or end
/// the process in a destructor that must not throw. Such a thread waits for the process's end.
inline void Relock(PyThreadState* state) {
#ifdef __GLIBCXX__
  try {
    PyEval_RestoreThread(state);
  } catch (const abi::__forced_unwind&) {
    for (;;) pause();
  }
#else
  PyEval_RestoreThread(state);
#endif
}

/// Calls `function` without the lock, and throws what it throws with the lock held again.
template <typename Function>
void WithoutLock(Function function) {
  PyThreadState* state = PyEval_SaveThread();
  std::exception_ptr error;
  try {
    function();
  } catch (const std::exception&) {
    error = std::current_exception();
  }
  Relock(state);
  if (error) std::rethrow_exception(error);
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_LOCK_H_
