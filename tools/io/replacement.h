#ifndef TOOLS_IO_REPLACEMENT_H_
#define TOOLS_IO_REPLACEMENT_H_

// A file that takes its name, and the place of an older file of that name, only when it is whole.

#include <atomic>
#include <csignal>
#include <string>

#include "tools/io/files.h"

namespace qeo::tool {

/// Keeps the signals that end a program from the calling thread, so that what they would interrupt
/// is done whole; they arrive afterwards.
class SignalsHeld {
 public:
  SignalsHeld();
  ~SignalsHeld();
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t before_ = {};
};

/// Until a file has its name it has a temporary one in the same directory. The temporary file is
/// removed when the Replacement ends, and when a signal ends the process, other than SIGKILL and
/// those of a fault of the program (SIGBUS, SIGFPE, SIGILL, SIGSEGV). No more than two exist at a
/// time.
class Replacement {
 public:
  /// For a file of this path, which is not a link.
  explicit Replacement(const std::string& path);
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  /// Makes the temporary file, with the mode of the older file, or that of a new one, and with the
  /// older file's owner and group where the system allows it. With no file, errno is set.
  File Create();

  /// Gives the file its name. What had the name before has the temporary one, until the Replacement
  /// ends or Undo gives the name back. Returns false with errno set when nothing has changed.
  bool Exchange();
  void Undo();

  /// Makes the name last, where the system can, once the file has it.
  void SyncDirectory() const;

 private:
  std::string path_;
  std::string temporary_;
  std::atomic<const char*>* registered_ = nullptr;  // where the signal handler finds the name
  bool is_new_ = false;                             // Exchange found no older file
};

}  // namespace qeo::tool

#endif  // TOOLS_IO_REPLACEMENT_H_
