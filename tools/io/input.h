#ifndef TOOLS_IO_INPUT_H_
#define TOOLS_IO_INPUT_H_

// Input as blocks of whole lines, in constant memory. Lines are bytes of any value.

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qeo::tool {

/// Bytes of the longest line that is taken, its end not counted: 1 MiB. A carriage return counts.
/// While it is read a line needs at most 300 times its length in memory.
inline constexpr std::size_t kLongestLine = std::size_t{1} << 20;

struct ReadLimits {
  std::size_t longest_line = kLongestLine;  ///< in bytes; at least 3, which is a byte order mark
  std::size_t bytes_a_read = std::size_t{1} << 18;  ///< at least 1, at most longest_line
};

/// Whole lines of the input, or a part of a line that is longer than the limit.
struct Block {
  std::string text;
  std::uint64_t first_line = 0;  ///< the number of its first line, counted from 1
  std::uint64_t line_count = 0;
  bool is_overlong = false;    ///< `text` is a part of one line that is too long
  bool is_first_part = false;  ///< of that line
  bool is_last_part = false;   ///< of that line, with its whole end
};

/// Reads a file from its current position to its end. A byte order mark at the beginning is left
/// out.
class BlockReader {
 public:
  explicit BlockReader(int file_descriptor, const ReadLimits& limits = {})
      : file_descriptor_(file_descriptor), limits_(limits) {}

  /// Returns whether Next will return without waiting for another program.
  bool IsReady() const;

  /// Reads as many lines as one read gives, at least one, or a part of a line that is too long,
  /// which may be empty. Returns false at the end of the input and after a read error; a line that
  /// the error cut in two is dropped.
  bool Next(Block& block);

  /// The errno of a failed read, 0 when there was none.
  int error() const { return error_; }

  /// Bytes read so far.
  std::uint64_t byte_count() const { return byte_count_; }

 private:
  bool HasMark(std::string_view text) const;
  void ReadLine(std::string& text);
  bool TakeLines(Block& block);
  void TakePart(Block& block);
  bool Fill(std::string& text);
  ssize_t Read(char* bytes) const;

  int file_descriptor_;
  ReadLimits limits_;
  int error_ = 0;
  bool is_at_beginning_ = true;
  bool is_in_long_line_ = false;
  bool is_at_end_ = false;  // the last read gave nothing
  std::uint64_t byte_count_ = 0;
  std::uint64_t next_line_ = 1;
  std::string rest_;  // read, and not yet returned
};

}  // namespace qeo::tool

#endif  // TOOLS_IO_INPUT_H_
