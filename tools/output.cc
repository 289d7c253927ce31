#include "tools/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "tools/files.h"

namespace qeo::tool {
namespace {

constexpr std::size_t kLargeBytes = std::size_t{1} << 17;
constexpr mode_t kNewFileMode = 0666;  // less what the user's umask takes away

// Names of files that are not finished, which a signal handler can read.
using FileName = std::array<char, PATH_MAX>;
std::array<FileName, 2> unfinished_files = {};

extern "C" void RemoveUnfinishedFiles(int signal) {
  for (const FileName& name : unfinished_files) {
    if (name[0] != '\0') {
      ::unlink(name.data());
    }
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// The entry for a name that is not there yet, or null.
FileName* FindUnfinished(const std::string& name) {
  for (FileName& entry : unfinished_files) {
    if (entry.data() == name) {
      return &entry;
    }
  }
  return nullptr;
}

void RemoveWhenKilled(const std::string& name) {
  FileName* const entry = FindUnfinished("");
  if (entry == nullptr || name.size() >= entry->size()) {
    return;
  }
  name.copy(entry->data(), name.size());
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    if (std::signal(signal, RemoveUnfinishedFiles) == SIG_IGN) {
      std::signal(signal, SIG_IGN);  // as under nohup
    }
  }
}

void KeepWhenKilled(const std::string& name) {
  if (FileName* const entry = FindUnfinished(name); entry != nullptr) {
    entry->fill('\0');
  }
}

// The mode of a file that is replaced, or of a new one.
mode_t ModeOf(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) == 0) {
    return status.st_mode & 07777;
  }
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return kNewFileMode & ~mask;
}

bool IsSpecialFile(const std::string& path) {
  struct stat status = {};
  return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

bool IsLink(const std::string& path) {
  struct stat status = {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

// The file that a name leads to, so that a link is kept and its file replaced; or an empty text
// with errno set.
std::string ResolveLinks(const std::string& path) {
  if (!IsLink(path)) {
    return path;
  }
  char* const resolved = ::realpath(path.c_str(), nullptr);
  if (resolved == nullptr) {
    return "";
  }
  std::string target = resolved;
  std::free(resolved);  // NOLINT(cppcoreguidelines-no-malloc): realpath allocates so
  return target;
}

}  // namespace

Output::Output(const std::string& path) {
  if (IsSpecialFile(path)) {
    file_descriptor_ = OpenFile(path, O_WRONLY);
  } else {
    OpenBeside(ResolveLinks(path));
  }
  if (file_descriptor_ < 0) {
    Fail(errno);
  }
}

void Output::OpenBeside(const std::string& path) {
  if (path.empty()) {
    return;
  }
  temporary_ = path.substr(0, path.rfind('/') + 1) + ".phoneme-XXXXXX";
  file_descriptor_ = MoveBeyondStandard(::mkostemp(temporary_.data(), O_CLOEXEC));
  if (file_descriptor_ < 0) {
    return;
  }
  path_ = path;
  RemoveWhenKilled(temporary_);
  if (::fchmod(file_descriptor_, ModeOf(path)) != 0) {
    Fail(errno);
  }
}

Output::~Output() {
  if (!path_.empty()) {
    ::unlink(temporary_.c_str());
    KeepWhenKilled(temporary_);
  }
}

void Output::Flush() {
  Send(text_);
  text_.clear();
}

void Output::Write(std::string_view lines) {
  Flush();
  Send(lines);
}

void Output::Send(std::string_view lines) {
  std::string_view rest = lines;
  while (!rest.empty() && error_ == 0) {
    const ssize_t count = ::write(file_descriptor_, rest.data(), rest.size());
    if (count >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      Fail(errno);
      TakeBackPartOfLine(lines.substr(0, lines.size() - rest.size()));
    }
  }
}

void Output::TakeBackPartOfLine(std::string_view written) {
  const std::size_t part = written.size() - (written.rfind('\n') + 1);
  const off_t end = ::lseek(file_descriptor_, 0, SEEK_CUR);
  struct stat status = {};
  const bool is_file = ::fstat(file_descriptor_, &status) == 0 && S_ISREG(status.st_mode);
  if (part > 0 && end >= 0 && is_file) {
    // Nothing can be done about a failure: the first one is being reported already.
    static_cast<void>(::ftruncate(file_descriptor_, end - static_cast<off_t>(part)) == 0);
  }
}

bool Output::IsLarge() const { return text_.size() >= kLargeBytes; }

void Output::Close() {
  Flush();
  if (file_descriptor_ >= 0 && ::close(file_descriptor_) != 0) {
    Fail(errno);
  }
  file_descriptor_ = -1;
}

void Output::GiveName() {
  if (path_.empty() || error_ != 0) {
    return;
  }
  if (std::rename(temporary_.c_str(), path_.c_str()) != 0) {
    return Fail(errno);
  }
  KeepWhenKilled(temporary_);
  path_.clear();
}

void Output::Fail(int error) {
  if (error_ == 0) {
    error_ = error;
  }
}

}  // namespace qeo::tool
