#include "tools/io/progress.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace qeo::tool {
namespace {

constexpr auto kBetweenDrawings = std::chrono::milliseconds(100);
constexpr std::size_t kBarWidth = 20;

// The bar is not a result, so a terminal that does not take it is not a failure.
void Draw(std::string_view text) {
  static_cast<void>(::write(STDERR_FILENO, text.data(), text.size()) == 0);
}

// As much of a line as a terminal shows without beginning another one.
std::string_view Fitting(std::string_view line) {
  struct winsize size = {};
  const bool is_known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return is_known ? line.substr(0, std::size_t{size.ws_col} - 1) : line;
}

std::string Padded(std::uint64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

// "0:09", "1:02:03"
std::string Time(std::uint64_t seconds) {
  constexpr std::uint64_t kMinute = 60;
  constexpr std::uint64_t kHour = 60 * kMinute;
  const std::uint64_t minutes = seconds % kHour / kMinute;
  const std::string hours = seconds < kHour
                                ? std::to_string(minutes)
                                : std::to_string(seconds / kHour) + ':' + Padded(minutes);
  return hours + ':' + Padded(seconds % kMinute);
}

std::string Bar(double part) {
  const auto filled = static_cast<std::size_t>(part * static_cast<double>(kBarWidth));
  return '[' + std::string(filled, '#') + std::string(kBarWidth - filled, ' ') + "] " +
         std::to_string(static_cast<int>(part * 100)) + " %, ";
}

}  // namespace

std::string ProgressLine(const Done& done) {
  const auto rate = static_cast<std::uint64_t>(static_cast<double>(done.lines) / done.seconds);
  std::string lines = std::to_string(done.lines) + " lines, " + std::to_string(rate) + " lines/s";
  if (done.total_bytes == 0 || done.bytes == 0) return lines;
  // A file can grow while it is read.
  const double total = static_cast<double>(std::max(done.bytes, done.total_bytes));
  const double part = static_cast<double>(done.bytes) / total;
  const auto left = static_cast<std::uint64_t>(std::lround(done.seconds / part - done.seconds));
  return Bar(part) + lines + ", " + Time(left) + " left";
}

Progress::Progress(bool is_wanted, std::uint64_t total_bytes)
    : is_wanted_(is_wanted && ::isatty(STDERR_FILENO) == 1),
      total_bytes_(total_bytes),
      begin_(Clock::now()),
      last_(begin_) {}

void Progress::Show(std::uint64_t byte_count, std::uint64_t line_count) {
  if (!is_wanted_) return;
  const Clock::time_point now = Clock::now();
  if (now - last_ < kBetweenDrawings) return;
  last_ = now;
  is_shown_ = true;
  const double seconds = std::chrono::duration<double>(now - begin_).count();
  const std::string line = ProgressLine({byte_count, total_bytes_, line_count, seconds});
  Draw("\r" + std::string(Fitting(line)) + "\x1b[K");
}

void Progress::Clear() {
  if (is_shown_) {
    Draw("\r\x1b[K");
    is_shown_ = false;
  }
}

std::uint64_t BytesAhead(int file_descriptor) {
  struct stat status = {};
  const off_t begin = ::lseek(file_descriptor, 0, SEEK_CUR);
  if (begin < 0 || ::fstat(file_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return 0;
  return static_cast<std::uint64_t>(std::max<off_t>(status.st_size - begin, 0));
}

}  // namespace qeo::tool
