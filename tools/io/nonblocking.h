#ifndef TOOLS_IO_NONBLOCKING_H_
#define TOOLS_IO_NONBLOCKING_H_

// Descriptors that do not block, which a program inherits from one that shares them.

#include <poll.h>

#include <cerrno>

namespace qeo::tool {

/// Returns whether a read or write failed only because it would have had to wait.
inline bool WouldWait(int error) { return error == EAGAIN || error == EWOULDBLOCK; }

/// Waits for an event of poll(2).
inline void WaitFor(int file_descriptor, short event) {
  pollfd waiting = {file_descriptor, event, 0};
  while (::poll(&waiting, 1, -1) < 0 && errno == EINTR) {
  }
}

}  // namespace qeo::tool

#endif  // TOOLS_IO_NONBLOCKING_H_
