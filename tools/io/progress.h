#ifndef TOOLS_IO_PROGRESS_H_
#define TOOLS_IO_PROGRESS_H_

// A progress bar on standard error, when that is a terminal.

#include <chrono>
#include <cstdint>
#include <string>

namespace qeo::tool {

/// What has been done, and how long it took.
struct Done {
  std::uint64_t bytes = 0;
  std::uint64_t total_bytes = 0;  ///< 0 when it is not known how much there is
  std::uint64_t lines = 0;
  double seconds = 0;  ///< more than 0
};

/// Returns a line for the user: "[#####               ] 25 %, 300 lines, 100 lines/s, 0:09 left".
/// The bar and the time left are there when the total is known.
std::string ProgressLine(const Done& done);

class Progress {
 public:
  /// `total_bytes` is 0 when it is not known how much there is.
  Progress(bool is_wanted, std::uint64_t total_bytes);
  ~Progress() { Clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Draws the bar, at most ten times a second.
  void Show(std::uint64_t byte_count, std::uint64_t line_count);

  /// Takes the bar off the screen, so that something else can be written.
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  bool is_wanted_;
  bool is_shown_ = false;
  std::uint64_t total_bytes_;
  Clock::time_point begin_;
  Clock::time_point last_;
};

/// Bytes from the current position of an open file to its end; 0 for what is not a regular file.
std::uint64_t BytesAhead(int file_descriptor);

}  // namespace qeo::tool

#endif  // TOOLS_IO_PROGRESS_H_
