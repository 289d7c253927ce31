#include "tools/io/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include "tools/io/nonblocking.h"

namespace qeo::tool {
namespace {

constexpr std::size_t kLargeBytes = std::size_t{1} << 17;

// Where a regular file ends, if that is where it is being written; else -1. Another program may
// write to the same file.
off_t EndOfFile(int file_descriptor) {
  const off_t end = ::lseek(file_descriptor, 0, SEEK_CUR);
  struct stat status = {};
  const bool is_end =
      ::fstat(file_descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == end;
  return is_end ? end : -1;
}

}  // namespace

Output::Output(const Destination& destination) {
  if (destination.error != 0) {
    errno = destination.error;
  } else if (destination.descriptor >= 0) {
    file_ = File(::fcntl(destination.descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  } else if (destination.is_special) {
    file_ = OpenFile(destination.path, O_WRONLY);
  } else {
    file_ = replacement_.emplace(destination.path).Create();
  }
  if (!file_.IsOpen()) Fail(errno);
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
    } else if (WouldWait(errno)) {
      WaitFor(file_.descriptor(), POLLOUT);
    } else if (errno != EINTR) {
      Fail(errno);
      TakeBackPartOfLine(lines.substr(0, lines.size() - rest.size()));
    }
  }
}

// What another stream on the same file writes next follows the last whole line.
void Output::TakeBackPartOfLine(std::string_view written) {
  const std::size_t part = written.size() - (written.rfind('\n') + 1);
  const off_t end = EndOfFile(file_.descriptor());
  if (part > 0 && end >= 0) {
    const off_t whole = end - static_cast<off_t>(part);
    // Nothing can be done about a failure: the first one is being reported already.
    static_cast<void>(::ftruncate(file_.descriptor(), whole) == 0 &&
                      ::lseek(file_.descriptor(), whole, SEEK_SET) == whole);
  }
}

bool Output::IsLarge() const { return text_.size() >= kLargeBytes; }

bool Output::IsTerminal() const { return ::isatty(file_.descriptor()) == 1; }

void Output::Close() {
  Flush();
  if (replacement_ && error_ == 0 && ::fsync(file_.descriptor()) != 0) Fail(errno);
  if (const int error = file_.Close(); error != 0) Fail(error);
}

void Output::Fail(int error) {
  if (error_ == 0) error_ = error;
}

void PutInPlace(const std::vector<Output*>& outputs) {
  std::vector<Replacement*> placed;
  placed.reserve(outputs.size());
  const SignalsHeld held;
  for (Output* const output : outputs) {
    if (!output->replacement_) continue;
    if (!output->replacement_->Exchange()) {
      output->Fail(errno);
      std::for_each(placed.begin(), placed.end(), [](Replacement* file) { file->Undo(); });
      return;
    }
    placed.push_back(&*output->replacement_);
  }
  std::for_each(placed.begin(), placed.end(), [](Replacement* file) { file->SyncDirectory(); });
}

}  // namespace qeo::tool
