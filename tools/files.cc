#include "tools/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "tools/messages.h"

namespace qeo::tool {

int MoveBeyondStandard(int file_descriptor) {
  if (file_descriptor < 0 || file_descriptor > STDERR_FILENO) {
    return file_descriptor;
  }
  const int moved = ::fcntl(file_descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const int error = errno;
  ::close(file_descriptor);
  errno = error;
  return moved;
}

int OpenFile(const std::string& path, int flags) {
  return MoveBeyondStandard(::open(path.c_str(), flags | O_CLOEXEC));
}

std::string InputName(const std::string& path) {
  return path == "-" ? "standard input" : Quoted(path);
}

}  // namespace qeo::tool
