#ifndef TOOLS_IO_DESTINATION_H_
#define TOOLS_IO_DESTINATION_H_

// Where the name of an output leads.

#include <optional>
#include <string>

#include "tools/io/files.h"

namespace qeo::tool {

/// A descriptor of this process, a file, or an error.
struct Destination {
  int descriptor = -1;      ///< that names such as /dev/stdout and /dev/fd/3 lead to, or -1
  std::string path;         ///< without links when it is that of a file, which need not exist
  bool is_special = false;  ///< the path is that of a pipe, a device or a directory
  int error = 0;            ///< the errno when the name leads nowhere, then the others are not set

  /// Returns whether it is standard output or standard error.
  bool IsStream() const;

  /// What identifies the file, if it is a regular one.
  std::optional<FileId> Id() const;
};

/// Follows all links, the last of which may lead to what does not exist yet. A descriptor must be
/// open for writing. "-" is standard output.
Destination FindDestination(const std::string& name);

}  // namespace qeo::tool

#endif  // TOOLS_IO_DESTINATION_H_
