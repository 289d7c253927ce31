#ifndef TOOLS_LINES_H_
#define TOOLS_LINES_H_

/// Lines in and text out over file descriptors, with buffers of a fixed size (one line that is
/// longer makes them grow). Lines are bytes of any value.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qeo::tool {

struct Line {
  std::string_view text;  ///< without its end
  std::string_view end;   ///< "\n" or "\r\n"; "\n" for a last line that has none
};

class LineReader {
 public:
  explicit LineReader(int file_descriptor);

  /// Tells whether Next will return a line without waiting for input.
  bool HasLine();

  /// Reads the next line; it stays valid until the next call. Returns false at the end of the input
  /// and after a read error, which also swallows a line that it cut in two.
  bool Next(Line& line);

  /// The errno of a failed read, 0 when there was none.
  int error() const { return error_; }

 private:
  bool Fill();
  Line Take(std::size_t size, std::size_t end_size);

  int file_descriptor_;
  int error_ = 0;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;    // of the bytes not yet returned
  std::size_t end_ = 0;      // of the bytes read
  std::size_t scanned_ = 0;  // no line end lies between begin_ and here
};

class Output {
 public:
  explicit Output(int file_descriptor) : file_descriptor_(file_descriptor) {}

  /// The text that waits to be written; callers append to it.
  std::string& text() { return text_; }

  /// Tells whether enough text waits that it should be written.
  bool IsLarge() const;

  /// Writes the waiting text. After a failed write all text is dropped.
  void Flush();

  /// Flushes and closes the descriptor, which can be the moment that a file system reports an
  /// error.
  void Close();

  /// The errno of a failed write, 0 when there was none.
  int error() const { return error_; }

 private:
  int file_descriptor_;
  int error_ = 0;
  std::string text_;
};

}  // namespace qeo::tool

#endif  // TOOLS_LINES_H_
