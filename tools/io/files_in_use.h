#ifndef TOOLS_IO_FILES_IN_USE_H_
#define TOOLS_IO_FILES_IN_USE_H_

// Which files a run reads and writes.

#include <optional>
#include <string>
#include <vector>

#include "tools/io/files.h"

namespace qeo::tool {

/// The regular files of a run, standard output and standard error among them from the beginning.
/// None is both read and written, and none is written twice: a file that is written while it is
/// read can grow without end, and one of two that are written replaces the other.
///
/// Only the two streams may be one file. Pipes, terminals and devices may be used in any way.
class FilesInUse {
 public:
  FilesInUse();

  /// Adds a file. `name` is what messages call it. Throws UsageError when it is in use already and
  /// one of the two uses is to write.
  void Read(const std::string& name, const std::optional<FileId>& file);
  void Write(const std::string& name, const std::optional<FileId>& file, bool is_stream = false);

 private:
  struct Use {
    std::string name;
    FileId file;
    bool is_written;
    bool is_stream;
  };

  std::vector<Use> uses_;
};

}  // namespace qeo::tool

#endif  // TOOLS_IO_FILES_IN_USE_H_
