#ifndef TOOLS_FILES_H_
#define TOOLS_FILES_H_

/// Files that the tool opens itself. Their descriptors are never those of standard input, output
/// and error, also where one of these was closed: what is meant for them must not end up in a file.

#include <string>
#include <utility>

namespace qeo::tool {

/// An open file, closed at the end of its life; or none.
class File {
 public:
  File() = default;
  explicit File(int file_descriptor) : file_descriptor_(file_descriptor) {}
  ~File() { Close(); }
  File(File&& other) noexcept : file_descriptor_(std::exchange(other.file_descriptor_, -1)) {}
  File& operator=(File&& other) noexcept {
    std::swap(file_descriptor_, other.file_descriptor_);
    return *this;
  }

  bool IsOpen() const { return file_descriptor_ >= 0; }
  int descriptor() const { return file_descriptor_; }

  /// Returns the errno of what the file system reports only now, or 0.
  int Close();

 private:
  int file_descriptor_ = -1;
};

/// Moves an open descriptor beyond the standard ones, or closes it. With no file, errno is set,
/// also when `file_descriptor` was -1.
File MoveBeyondStandard(int file_descriptor);

/// Opens a file, with the flags of open(2); it is closed on exec. With no file, errno is set.
File OpenFile(const std::string& path, int flags);

/// What messages call an input: its name in quotes, or "standard input" for "-".
std::string InputName(const std::string& path);

}  // namespace qeo::tool

#endif  // TOOLS_FILES_H_
