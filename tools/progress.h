#ifndef TOOLS_PROGRESS_H_
#define TOOLS_PROGRESS_H_

/// A progress bar on standard error, when that is a terminal.

#include <chrono>
#include <cstdint>

namespace qeo::tool {

class Progress {
 public:
  /// `total_bytes` is 0 when nobody knows how much there is; then lines are counted.
  Progress(bool is_wanted, std::uint64_t total_bytes);

  /// Draws the bar, ten times a second at the most.
  void Show(std::uint64_t byte_count, std::uint64_t line_count);

  /// Takes the bar off the screen, so that something else can be written.
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  bool is_wanted_;
  bool is_shown_ = false;
  std::uint64_t total_bytes_;
  Clock::time_point last_;
};

/// Bytes from where an open file stands to its end; 0 for what is no regular file.
std::uint64_t BytesAhead(int file_descriptor);

}  // namespace qeo::tool

#endif  // TOOLS_PROGRESS_H_
