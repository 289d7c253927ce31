#include "tools/progress.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace qeo::tool {
namespace {

constexpr auto kBetweenDrawings = std::chrono::milliseconds(100);
constexpr std::size_t kBarWidth = 40;

// The bar is no result, so a terminal that does not take it is no failure.
void Draw(std::string_view text) {
  static_cast<void>(::write(STDERR_FILENO, text.data(), text.size()) == 0);
}

}  // namespace

Progress::Progress(bool is_wanted, std::uint64_t total_bytes)
    : is_wanted_(is_wanted && ::isatty(STDERR_FILENO) == 1),
      total_bytes_(total_bytes),
      last_(Clock::now()) {}

void Progress::Show(std::uint64_t byte_count, std::uint64_t line_count) {
  if (!is_wanted_ || Clock::now() - last_ < kBetweenDrawings) {
    return;
  }
  last_ = Clock::now();
  is_shown_ = true;
  std::string text = "\r";
  if (total_bytes_ != 0) {
    const double part =
        std::min(1.0, static_cast<double>(byte_count) / static_cast<double>(total_bytes_));
    const auto filled = static_cast<std::size_t>(part * static_cast<double>(kBarWidth));
    text += '[' + std::string(filled, '#') + std::string(kBarWidth - filled, ' ') + "] " +
            std::to_string(static_cast<int>(part * 100)) + " %, ";
  }
  Draw(text + std::to_string(line_count) + " lines");
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
  if (begin < 0 || ::fstat(file_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    return 0;
  }
  return static_cast<std::uint64_t>(std::max<off_t>(status.st_size - begin, 0));
}

}  // namespace qeo::tool
