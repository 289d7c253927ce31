#ifndef PYTHON_BINDINGS_LOCK_H_
#define PYTHON_BINDINGS_LOCK_H_

// Work without Python's lock, in threads that may outlive the interpreter.

#include <pthread.h>
#include <pybind11/pybind11.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <exception>
#include <new>
#include <thread>
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

/// How many calls work without the lock. The process's end waits for them, since it frees what they
/// read of the library; Python lets none begin any more. A fork leaves them to the parent.
class CallsAtWork {
 public:
  /// To be asked first with the lock held.
  static std::atomic<int>& Count() {
    static const CallsAtWork calls;
    return count_;
  }

  ~CallsAtWork() {
    while (count_.load() != 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

  CallsAtWork(const CallsAtWork&) = delete;
  CallsAtWork& operator=(const CallsAtWork&) = delete;

 private:
  CallsAtWork() {
    if (pthread_atfork(nullptr, nullptr, [] { count_ = 0; }) != 0) throw std::bad_alloc();
  }

  static inline std::atomic<int> count_{0};
};

/// Calls `function` without the lock, and throws what it throws with the lock held again.
template <typename Function>
void WithoutLock(Function function) {
  std::atomic<int>& count = CallsAtWork::Count();
  ++count;
  PyThreadState* state = PyEval_SaveThread();
  std::exception_ptr error;
  try {
    function();
  } catch (const std::exception&) {
    error = std::current_exception();
  }
  --count;
  Relock(state);
  if (error) std::rethrow_exception(error);
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_LOCK_H_
