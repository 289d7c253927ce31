#ifndef TOOLS_EXIT_STATUS_H_
#define TOOLS_EXIT_STATUS_H_

/// How a run of the tool ends.

#include <stdexcept>

namespace qeo::tool {

enum ExitStatus {
  kSuccess = 0,
  kFailure = 1,     ///< a text failed, or a check found a problem
  kBadUsage = 2,    ///< nothing was read or written
  kUnfinished = 3,  ///< reading, writing, memory or threads failed: a part of the output is missing
  kReaderGone = 4,  ///< never seen outside: main ends by SIGPIPE, or with kUnfinished
};

/// What is wrong with the command line, found only when its files are looked at. The message is
/// ready for a terminal.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace qeo::tool

#endif  // TOOLS_EXIT_STATUS_H_
