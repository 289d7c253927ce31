// A library for LD_PRELOAD that makes calls of the C library fail, come up short, or be interrupted
// by a signal, at a moment that no other means hits. FAIL says which, as "CALL NUMBER WHAT", with a
// comma between two of them:
//
//   FAIL="close 1 EIO"             the first call of close fails
//   FAIL="write * short"           each call of write takes one byte
//   FAIL="mkostemp 1 SIGTERM"      the signal comes right after the first call of mkostemp
//   FAIL="clock_gettime * second"  a second passes from one look at the clock to the next

#include <dlfcn.h>
#include <pthread.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace {

struct Named {
  const char* name;
  int number;
};

constexpr Named kErrors[] = {{"EACCES", EACCES}, {"EAGAIN", EAGAIN}, {"EINTR", EINTR},
                             {"EINVAL", EINVAL}, {"EIO", EIO},       {"ENOSPC", ENOSPC},
                             {"EPERM", EPERM},   {"EPIPE", EPIPE},   {"EROFS", EROFS}};
constexpr int kLastRealTimeSignal = 64;  // SIGRTMAX of Linux, which is a call
constexpr Named kSignals[] = {
    {"SIGHUP", SIGHUP},   {"SIGINT", SIGINT},       {"SIGQUIT", SIGQUIT},
    {"SIGTERM", SIGTERM}, {"SIGXCPU", SIGXCPU},     {"SIGPIPE", SIGPIPE},
    {"SIGABRT", SIGABRT}, {"SIGALRM", SIGALRM},     {"SIGPOLL", SIGPOLL},
    {"SIGPROF", SIGPROF}, {"SIGPWR", SIGPWR},       {"SIGSTKFLT", SIGSTKFLT},
    {"SIGSYS", SIGSYS},   {"SIGTRAP", SIGTRAP},     {"SIGUSR1", SIGUSR1},
    {"SIGUSR2", SIGUSR2}, {"SIGVTALRM", SIGVTALRM}, {"SIGRTMAX", kLastRealTimeSignal}};

// All here takes no memory: a sanitizer looks at the clock while its allocator is locked.

template <std::size_t kSize>
int NumberOf(std::string_view name, const Named (&table)[kSize]) {
  const Named* const found = std::find_if(
      table, table + kSize, [&name](const Named& entry) { return name == entry.name; });
  return found == table + kSize ? 0 : found->number;
}

// Takes what is before the first `separator` off `text`, and that.
std::string_view Take(std::string_view& text, char separator) {
  const std::string_view part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

bool IsNumber(std::string_view text, int number) {
  int value = 0;
  const char* const end = text.data() + text.size();
  return std::from_chars(text.data(), end, value).ptr == end && value == number;
}

// What is to happen to one call of the C library; empty when nothing is.
std::string_view FateOf(std::string_view call, int number) {
  const char* const plan = std::getenv("FAIL");
  std::string_view entries = plan == nullptr ? "" : plan;
  while (!entries.empty()) {
    std::string_view entry = Take(entries, ',');
    const std::string_view name = Take(entry, ' ');
    const std::string_view which = Take(entry, ' ');
    if (name == call && (which == "*" || IsNumber(which, number))) return entry;
  }
  return "";
}

// One call of a function of the C library, which has a counter of its own.
class Call {
 public:
  Call(const char* name, std::atomic<int>& count) : name_(name), fate_(FateOf(name, ++count)) {}

  bool Is(std::string_view fate) const { return fate_ == fate; }

  // Calls the function itself, or fails as it does: with -1 and errno. A signal comes afterwards.
  template <typename Result, typename... Parameters, typename... Arguments>
  Result Make(Result (*)(Parameters...), Arguments... arguments) const {
    if (const int error = NumberOf(fate_, kErrors); error != 0) {
      errno = error;
      return -1;
    }
    using Function = Result (*)(Parameters...);
    const Result result = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name_))(arguments...);
    const int error = errno;
    if (const int signal = NumberOf(fate_, kSignals); signal != 0) std::raise(signal);
    errno = error;
    return result;
  }

 private:
  const char* name_;
  std::string_view fate_;
};

std::size_t Length(const Call& call, std::size_t size) {
  return call.Is("short") ? std::min<std::size_t>(size, 1) : size;
}

}  // namespace

extern "C" {

ssize_t read(int file, void* bytes, std::size_t size) {
  static std::atomic<int> count = 0;
  const Call call("read", count);
  return call.Make(&read, file, bytes, Length(call, size));
}

ssize_t write(int file, const void* bytes, std::size_t size) {
  static std::atomic<int> count = 0;
  const Call call("write", count);
  return call.Make(&write, file, bytes, Length(call, size));
}

int close(int file) {
  static std::atomic<int> count = 0;
  return Call("close", count).Make(&close, file);
}

int fsync(int file) {
  static std::atomic<int> count = 0;
  return Call("fsync", count).Make(&fsync, file);
}

int mkostemp(char* path, int flags) {
  static std::atomic<int> count = 0;
  return Call("mkostemp", count).Make(&mkostemp, path, flags);
}

int fchown(int file, uid_t owner, gid_t group) noexcept {
  static std::atomic<int> count = 0;
  return Call("fchown", count).Make(&fchown, file, owner, group);
}

int link(const char* from, const char* to) noexcept {
  static std::atomic<int> count = 0;
  return Call("link", count).Make(&link, from, to);
}

int rename(const char* from, const char* to) noexcept {
  static std::atomic<int> count = 0;
  return Call("rename", count).Make(&rename, from, to);
}

int renameat2(int from_directory, const char* from, int to_directory, const char* to,
              unsigned flags) noexcept {
  static std::atomic<int> count = 0;
  return Call("renameat2", count).Make(&renameat2, from_directory, from, to_directory, to, flags);
}

// Returns its error.
int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                   void* argument) noexcept {
  static std::atomic<int> count = 0;
  const Call call("pthread_create", count);
  const int result = call.Make(&pthread_create, thread, attributes, run, argument);
  return result < 0 ? errno : result;
}

int clock_gettime(clockid_t clock, timespec* time) noexcept {
  static std::atomic<int> count = 0;
  const Call call("clock_gettime", count);
  const int result = call.Make(&clock_gettime, clock, time);
  if (call.Is("second")) *time = {count, 0};
  return result;
}

}  // extern "C"
