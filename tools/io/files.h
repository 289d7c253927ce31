#ifndef TOOLS_IO_FILES_H_
#define TOOLS_IO_FILES_H_

// Files that the tool opens itself. Their descriptors are never those of standard input, output
// and error, also where one of these was closed: what is meant for them must not end up in a file.

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>

namespace qeo::tool {

/// An open file, or none. It is closed at the end of its life, but for the standard descriptors: an
/// exception that unwinds a command leaves them open for the message about it.
class File {
 public:
  File() = default;
  explicit File(int file_descriptor) : file_descriptor_(file_descriptor) {}
  ~File();
  File(File&& other) noexcept : file_descriptor_(std::exchange(other.file_descriptor_, -1)) {}
  File& operator=(File&& other) noexcept {
    std::swap(file_descriptor_, other.file_descriptor_);
    return *this;
  }

  bool IsOpen() const { return file_descriptor_ >= 0; }
  int descriptor() const { return file_descriptor_; }

  /// Closes any descriptor. Returns the errno of what the file system reports only now, or 0.
  int Close();

 private:
  int file_descriptor_ = -1;
};

/// Moves an open descriptor beyond the standard ones, or closes it. With no file, errno is set,
/// also when `file_descriptor` was -1.
File MoveBeyondStandard(int file_descriptor);

/// Opens a file, with the flags of open(2); it is closed on exec. With no file, errno is set.
File OpenFile(const std::string& path, int flags);

/// What identifies a regular file, whatever its names are. A file that does not exist yet is
/// identified by its directory and by its name there.
struct FileId {
  dev_t device = 0;
  ino_t inode = 0;
  std::string name;  ///< empty for a file that exists

  friend bool operator==(const FileId& a, const FileId& b) {
    return a.device == b.device && a.inode == b.inode && a.name == b.name;
  }
};

/// Returns what identifies an open file; nothing for what is not a regular file.
std::optional<FileId> IdOf(int file_descriptor);

/// The same for a path, whose links are followed. The last part of the path may be missing.
std::optional<FileId> IdOf(const std::string& path);

bool IsRegularFile(const std::string& path);

}  // namespace qeo::tool

#endif  // TOOLS_IO_FILES_H_
