#include "tools/io/replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "tools/io/split_path.h"

namespace qeo::tool {
namespace {

constexpr mode_t kNewFileMode = 0666;  // less what the user's umask takes away
// The signals that end a program. Not those of its own faults, after which no handler is safe, nor
// SIGPIPE and SIGXFSZ, which the tool ignores.
constexpr std::array kSignals = {
    SIGHUP,    SIGINT, SIGQUIT, SIGTERM, SIGXCPU, SIGABRT,   SIGALRM,
    SIGPROF,   SIGSYS, SIGTRAP, SIGUSR1, SIGUSR2, SIGVTALRM,
#ifdef SIGPOLL
    SIGPOLL,
#endif
#ifdef SIGPWR
    SIGPWR,
#endif
#ifdef SIGSTKFLT
    SIGSTKFLT,
#endif
};

// The names of temporary files, for the signal handler. They are those of the Replacements, which
// outlive their entries.
std::array<std::atomic<const char*>, 2> temporary_files = {};
static_assert(std::atomic<const char*>::is_always_lock_free);

extern "C" void RemoveTemporaryFiles(int signal) {
  for (const std::atomic<const char*>& file : temporary_files) {
    if (const char* const name = file.load(); name != nullptr) ::unlink(name);
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// Calls `act` with each signal that ends a program, which the real-time signals do too.
template <typename Act>
void ForEachSignal(Act act) {
  std::for_each(kSignals.begin(), kSignals.end(), act);
#ifdef SIGRTMIN
  for (int signal = SIGRTMIN; signal <= SIGRTMAX; ++signal) act(signal);
#endif
}

sigset_t EndingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  ForEachSignal([&signals](int signal) { sigaddset(&signals, signal); });
  return signals;
}

// A signal that is ignored, as under nohup, stays ignored.
void HandleSignals() {
  const sigset_t signals = EndingSignals();
  ForEachSignal([&signals](int signal) {
    struct sigaction action = {};
    if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
      action.sa_handler = RemoveTemporaryFiles;
      action.sa_mask = signals;
      ::sigaction(signal, &action, nullptr);
    }
  });
}

std::atomic<const char*>* Register(const char* name) {
  HandleSignals();
  for (std::atomic<const char*>& file : temporary_files) {
    const char* none = nullptr;
    if (file.compare_exchange_strong(none, name)) return &file;
  }
  return nullptr;
}

mode_t Umask() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return mask;
}

// The mode of a file that has lost its owner or its group gives nobody more than before. The rights
// of the group would be those of another one, so they go. Who was the owner is now one of the group
// or of the others, and who was of the group is one of the others: they get what they had at most.
mode_t ModeWithout(mode_t mode, bool has_owner, bool has_group) {
  if (!has_owner) mode &= 0700 | (mode & 0700) >> 3 | (mode & 0700) >> 6;
  return has_group ? mode : mode & (0700 | (mode & 0070) >> 3);
}

// What the system does not allow is left out: a user cannot give files away, and some file systems
// have no modes. Set-user-ID and set-group-ID are lost, as they are when a file is written to.
void CopyOwnerAndMode(const std::string& path, int file_descriptor) {
  struct stat older = {};
  if (::stat(path.c_str(), &older) != 0) {
    static_cast<void>(::fchmod(file_descriptor, kNewFileMode & ~Umask()) == 0);
    return;
  }
  static_cast<void>(::fchown(file_descriptor, older.st_uid, static_cast<gid_t>(-1)) == 0);
  static_cast<void>(::fchown(file_descriptor, static_cast<uid_t>(-1), older.st_gid) == 0);
  struct stat newer = {};
  const bool is_known = ::fstat(file_descriptor, &newer) == 0;
  const bool has_owner = is_known && newer.st_uid == older.st_uid;
  const bool has_group = is_known && newer.st_gid == older.st_gid;
  const mode_t mode = ModeWithout(older.st_mode & 0777, has_owner, has_group);
  static_cast<void>(::fchmod(file_descriptor, mode) == 0);
}

bool IsDirectory(const std::string& path) {
  struct stat status = {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool Exists(const std::string& path) {
  struct stat status = {};
  return ::lstat(path.c_str(), &status) == 0;
}

bool RenameFile(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

// For file systems that cannot exchange two names. Where there are links, `to` always has a file.
bool ExchangeByThirdName(const std::string& from, const std::string& to) {
  const std::string older = from + "-older";
  if (::link(to.c_str(), older.c_str()) != 0 && !RenameFile(to, older)) return false;
  if (RenameFile(from, to) && RenameFile(older, from)) return true;
  const int error = errno;
  RenameFile(older, to);  // does nothing where both are links of one file
  ::unlink(older.c_str());
  errno = error;
  return false;
}

bool ExchangeFiles(const std::string& from, const std::string& to) {
#ifdef RENAME_EXCHANGE
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_EXCHANGE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
#endif
  return ExchangeByThirdName(from, to);
}

}  // namespace

SignalsHeld::SignalsHeld() {
  const sigset_t signals = EndingSignals();
  ::pthread_sigmask(SIG_BLOCK, &signals, &before_);
}

SignalsHeld::~SignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

Replacement::Replacement(const std::string& path)
    : path_(path), temporary_(SplitPath(path).directory + ".phoneme-XXXXXX") {}

Replacement::~Replacement() {
  if (registered_ != nullptr) {
    ::unlink(temporary_.c_str());
    registered_->store(nullptr);
  }
}

File Replacement::Create() {
  const SignalsHeld held;
  const int created = ::mkostemp(temporary_.data(), O_CLOEXEC);
  if (created < 0) return File();
  registered_ = Register(temporary_.c_str());
  File file = MoveBeyondStandard(created);
  if (file.IsOpen()) CopyOwnerAndMode(path_, file.descriptor());
  return file;
}

bool Replacement::Exchange() {
  if (IsDirectory(path_)) {
    errno = EISDIR;
    return false;
  }
  is_new_ = !Exists(path_);
  return is_new_ ? RenameFile(temporary_, path_) : ExchangeFiles(temporary_, path_);
}

void Replacement::Undo() {
  // Nothing can be done about a failure: what made this necessary is being reported already.
  static_cast<void>(is_new_ ? RenameFile(path_, temporary_) : ExchangeFiles(temporary_, path_));
}

void Replacement::SyncDirectory() const {
  const File directory = OpenFile(SplitPath(path_).directory, O_RDONLY | O_DIRECTORY);
  static_cast<void>(directory.IsOpen() && ::fsync(directory.descriptor()) == 0);
}

}  // namespace qeo::tool
