#ifndef TOOLS_BASE_EXIT_STATUS_H_
#define TOOLS_BASE_EXIT_STATUS_H_

// How a run of the tool ends.

namespace qeo::tool {

enum ExitStatus {
  kSuccess = 0,
  kFailure = 1,     ///< a text failed, or a check found a problem
  kBadUsage = 2,    ///< nothing was read or written
  kUnfinished = 3,  ///< reading, writing, memory or threads failed: a part of the output is missing
  kReaderGone = 4,  ///< never seen outside: main ends by SIGPIPE, or with kUnfinished
};

}  // namespace qeo::tool

#endif  // TOOLS_BASE_EXIT_STATUS_H_
