#include "tools/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "tools/messages.h"

namespace qeo::tool {

int File::Close() {
  const int file_descriptor = std::exchange(file_descriptor_, -1);
  return file_descriptor >= 0 && ::close(file_descriptor) != 0 ? errno : 0;
}

File MoveBeyondStandard(int file_descriptor) {
  if (file_descriptor < 0 || file_descriptor > STDERR_FILENO) {
    return File(file_descriptor);
  }
  const int moved = ::fcntl(file_descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const int error = errno;
  ::close(file_descriptor);
  errno = error;
  return File(moved);
}

File OpenFile(const std::string& path, int flags) {
  return MoveBeyondStandard(::open(path.c_str(), flags | O_CLOEXEC));
}

std::string InputName(const std::string& path) {
  return path == "-" ? "standard input" : Quoted(path);
}

}  // namespace qeo::tool
