#include "tools/io/destination.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>

#include "tools/base/decimal.h"
#include "tools/io/split_path.h"

namespace qeo::tool {
namespace {

constexpr int kMostLinks = 40;  // as many as Linux follows

struct Freeing {
  // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): realpath allocates so
  void operator()(char* text) const { std::free(text); }
};

// The path without links, or an empty text when it leads nowhere.
std::string RealPath(const std::string& path) {
  const std::unique_ptr<char, Freeing> resolved(::realpath(path.c_str(), nullptr));
  return resolved ? resolved.get() : "";
}

// Whether the names in a directory are the numbers of this process's descriptors.
bool HoldsDescriptors(const std::string& directory) {
  const std::string real = RealPath(directory);
  for (const char* const known : {"/proc/self/fd", "/proc/thread-self/fd", "/dev/fd"}) {
    if (!real.empty() && real == RealPath(known)) return true;
  }
  return false;
}

// Whether a name leads to a pipe or a device, the descriptors of other processes included, whose
// links do not have the names of files.
bool IsSpecialFile(const std::string& path) {
  struct stat status = {};
  return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

Destination LeadsNowhere(int error) {
  Destination found;
  found.error = error;
  return found;
}

Destination LeadsToDescriptor(const std::string& number) {
  const int descriptor = ParseNumber<int>(number).value_or(-1);
  const int flags = descriptor < 0 ? -1 : ::fcntl(descriptor, F_GETFL);
  if (flags < 0 || (flags & O_ACCMODE) == O_RDONLY) return LeadsNowhere(EBADF);
  Destination found;
  found.descriptor = descriptor;
  return found;
}

// What a link holds, or an empty text for what is not a link.
std::string ReadLink(const std::string& path) {
  std::array<char, PATH_MAX> text = {};
  const ssize_t size = ::readlink(path.c_str(), text.data(), text.size());
  return size > 0 ? std::string(text.data(), static_cast<std::size_t>(size)) : "";
}

}  // namespace

bool Destination::IsStream() const {
  return descriptor == STDOUT_FILENO || descriptor == STDERR_FILENO;
}

std::optional<FileId> Destination::Id() const {
  if (error != 0) return std::nullopt;
  return descriptor >= 0 ? IdOf(descriptor) : IdOf(path);
}

Destination FindDestination(const std::string& name) {
  if (name == "-") return LeadsToDescriptor(std::to_string(STDOUT_FILENO));
  Destination found;
  found.path = name;
  for (int links = 0; links <= kMostLinks; ++links) {
    const PathParts parts = SplitPath(found.path);
    if (HoldsDescriptors(parts.directory)) return LeadsToDescriptor(parts.name);
    const std::string link = ReadLink(found.path);
    if (link.empty()) {
      found.is_special = IsSpecialFile(name);
      found.path = found.is_special ? name : found.path;
      return found;
    }
    found.path = link.front() == '/' ? link : parts.directory + link;
  }
  return LeadsNowhere(ELOOP);
}

}  // namespace qeo::tool
