#include "tools/io/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tools/io/split_path.h"

namespace qeo::tool {
namespace {

std::optional<FileId> IdOf(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  return FileId{status.st_dev, status.st_ino, ""};
}

}  // namespace

File::~File() {
  if (file_descriptor_ > STDERR_FILENO) Close();
}

int File::Close() {
  const int file_descriptor = std::exchange(file_descriptor_, -1);
  return file_descriptor >= 0 && ::close(file_descriptor) != 0 ? errno : 0;
}

File MoveBeyondStandard(int file_descriptor) {
  if (file_descriptor < 0 || file_descriptor > STDERR_FILENO) return File(file_descriptor);
  const int moved = ::fcntl(file_descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const int error = errno;
  ::close(file_descriptor);
  errno = error;
  return File(moved);
}

File OpenFile(const std::string& path, int flags) {
  int file_descriptor = -1;
  do {
    file_descriptor = ::open(path.c_str(), flags | O_CLOEXEC);
  } while (file_descriptor < 0 && errno == EINTR);
  return MoveBeyondStandard(file_descriptor);
}

std::optional<FileId> IdOf(int file_descriptor) {
  struct stat status = {};
  return ::fstat(file_descriptor, &status) == 0 ? IdOf(status) : std::nullopt;
}

std::optional<FileId> IdOf(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) == 0) return IdOf(status);
  const PathParts parts = SplitPath(path);
  if (::stat(parts.directory.c_str(), &status) != 0) return std::nullopt;
  return FileId{status.st_dev, status.st_ino, parts.name};
}

bool IsRegularFile(const std::string& path) {
  struct stat status = {};
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace qeo::tool
