#ifndef TOOLS_OUTPUT_H_
#define TOOLS_OUTPUT_H_

/// Text out, to a file descriptor or a file, of which a reader sees whole lines.

#include <string>
#include <string_view>

#include "tools/files.h"

namespace qeo::tool {

/// Where text is written. A failure is remembered, and nothing is written after it.
class Output {
 public:
  /// Writes to an open file descriptor.
  explicit Output(int file_descriptor) : file_(file_descriptor) {}

  /// Writes to a file that gets its name, in place of an older one, from GiveName alone; until then
  /// it has another one in the same directory, which goes when it is not finished, or SIGHUP,
  /// SIGINT or SIGTERM ends the process. What is no regular file, a pipe or a device, is
  /// written to as it is.
  explicit Output(const std::string& path);

  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// The text that waits to be written; callers append whole lines.
  std::string& text() { return text_; }

  /// Tells whether enough text waits that it should be written.
  bool IsLarge() const;

  /// Writes the waiting text, then whole lines that need not wait.
  void Write(std::string_view lines);

  /// Writes the waiting text. When the file system has no more room, the part of a line that it
  /// took is taken back from a regular file. After a failed write all text is dropped.
  void Flush();

  /// Flushes and closes, which can be the moment that a file system reports an error.
  void Close();

  /// Gives a closed file its name, unless something has failed.
  void GiveName();

  /// The errno of what failed first, 0 when nothing has.
  int error() const { return error_; }

 private:
  void Send(std::string_view lines);
  void Fail(int error);
  void OpenBeside(const std::string& path);
  void TakeBackPartOfLine(std::string_view written);

  File file_;
  int error_ = 0;
  std::string text_;
  std::string path_;       // to be given at the end, empty when there is none
  std::string temporary_;  // what the file is called until then
};

}  // namespace qeo::tool

#endif  // TOOLS_OUTPUT_H_
