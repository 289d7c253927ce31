#ifndef TOOLS_IO_OUTPUT_H_
#define TOOLS_IO_OUTPUT_H_

// Text out, to a file descriptor or a file, of which a reader sees whole lines.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/io/destination.h"
#include "tools/io/files.h"
#include "tools/io/replacement.h"

namespace qeo::tool {

/// Where text is written. A failure is remembered, and nothing is written after it.
class Output {
 public:
  /// Writes to an open file descriptor. The destructor leaves a standard one open.
  explicit Output(int file_descriptor) : file_(file_descriptor) {}

  /// Writes to a descriptor of this process, a pipe or a device as it is. A regular file gets its
  /// name, in place of an older one, from PutInPlace alone.
  explicit Output(const Destination& destination);

  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// The text that waits to be written; callers append whole lines.
  std::string& text() { return text_; }

  /// Returns whether enough text waits that it should be written.
  bool IsLarge() const;

  bool IsTerminal() const;

  /// Writes the waiting text, then whole lines that need not wait.
  void Write(std::string_view lines);

  /// Writes the waiting text. When the file system has no more room, the part of a line that it
  /// took is taken back from a regular file. After a failed write all text is dropped.
  void Flush();

  /// Flushes and closes, which can be the moment that a file system reports an error. A file that
  /// waits for its name is on the disk then.
  void Close();

  /// The errno of what failed first, 0 when nothing has.
  int error() const { return error_; }

 private:
  friend void PutInPlace(const std::vector<Output*>& outputs);

  void Send(std::string_view lines);
  void Fail(int error);
  void TakeBackPartOfLine(std::string_view written);

  std::optional<Replacement> replacement_;
  File file_;
  int error_ = 0;
  std::string text_;
};

/// Gives closed files their names: all, or none when one cannot have it, whose error() is set then.
/// Only what ends the process between two of them and cannot be held back, SIGKILL or a power
/// failure, leaves one without the other.
void PutInPlace(const std::vector<Output*>& outputs);

}  // namespace qeo::tool

#endif  // TOOLS_IO_OUTPUT_H_
