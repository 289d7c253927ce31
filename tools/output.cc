#include "tools/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
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

// A file that is not finished, for a signal handler: the name counts while `is_set`.
struct UnfinishedFile {
  std::array<char, PATH_MAX> name = {};
  volatile std::sig_atomic_t is_set = 0;
};
std::array<UnfinishedFile, 2> unfinished_files = {};

extern "C" void RemoveUnfinishedFiles(int signal) {
  for (const UnfinishedFile& file : unfinished_files) {
    if (file.is_set != 0) {
      ::unlink(file.name.data());
    }
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// Leaves a signal that is ignored, as under nohup, ignored.
void HandleSignal(int signal) {
  struct sigaction action = {};
  if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
    action.sa_handler = RemoveUnfinishedFiles;
    ::sigaction(signal, &action, nullptr);
  }
}

void RemoveWhenKilled(const std::string& name) {
  for (UnfinishedFile& file : unfinished_files) {
    if (file.is_set != 0 || name.size() >= file.name.size()) {
      continue;
    }
    file.name.fill('\0');
    name.copy(file.name.data(), name.size());
    std::atomic_signal_fence(std::memory_order_release);
    file.is_set = 1;
    break;
  }
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    HandleSignal(signal);
  }
}

void KeepWhenKilled(const std::string& name) {
  for (UnfinishedFile& file : unfinished_files) {
    if (file.is_set != 0 && file.name.data() == name) {
      file.is_set = 0;
    }
  }
}

// The mode of a file that is replaced, or of a new one.
mode_t ModeOf(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) == 0) {
    return status.st_mode & 0777;
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
    file_ = OpenFile(path, O_WRONLY);
  } else {
    OpenBeside(ResolveLinks(path));
  }
  if (!file_.IsOpen()) {
    Fail(errno);
  }
}

void Output::OpenBeside(const std::string& path) {
  if (path.empty()) {
    return;
  }
  temporary_ = path.substr(0, path.rfind('/') + 1) + ".phoneme-XXXXXX";
  const int created = ::mkostemp(temporary_.data(), O_CLOEXEC);
  if (created < 0) {
    return;
  }
  path_ = path;  // from here on the destructor removes the file
  file_ = MoveBeyondStandard(created);
  if (!file_.IsOpen()) {
    return;
  }
  RemoveWhenKilled(temporary_);
  if (::fchmod(file_.descriptor(), ModeOf(path)) != 0) {
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
    const ssize_t count = ::write(file_.descriptor(), rest.data(), rest.size());
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
  const off_t end = ::lseek(file_.descriptor(), 0, SEEK_CUR);
  struct stat status = {};
  const bool is_file = ::fstat(file_.descriptor(), &status) == 0 && S_ISREG(status.st_mode);
  if (part > 0 && end >= 0 && is_file) {
    // Nothing can be done about a failure: the first one is being reported already.
    static_cast<void>(::ftruncate(file_.descriptor(), end - static_cast<off_t>(part)) == 0);
  }
}

bool Output::IsLarge() const { return text_.size() >= kLargeBytes; }

void Output::Close() {
  Flush();
  if (const int error = file_.Close(); error != 0) {
    Fail(error);
  }
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
