#ifndef TOOLS_EXIT_STATUS_H_
#define TOOLS_EXIT_STATUS_H_

/// How a run of the tool ends.

#include <stdexcept>
#include <string>

namespace qeo::tool {

enum ExitStatus {
  kSuccess = 0,
  kFailure = 1,     ///< a text failed, or a check found a problem
  kBadUsage = 2,    ///< nothing was read or written
  kUnfinished = 3,  ///< reading, writing, memory or threads failed: a part of the output is missing
  kReaderGone = 4,  ///< never seen outside: main ends by SIGPIPE, or with kUnfinished
};

/// What is wrong with the command line, found only when its files are looked at. The message is
/// ready for a terminal, and must not go to standard error where that is the file in question.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& message, bool is_about_standard_error = false)
      : std::runtime_error(message), is_about_standard_error_(is_about_standard_error) {}

  bool is_about_standard_error() const { return is_about_standard_error_; }

 private:
  bool is_about_standard_error_;
};

}  // namespace qeo::tool

#endif  // TOOLS_EXIT_STATUS_H_
