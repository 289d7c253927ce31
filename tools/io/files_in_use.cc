#include "tools/io/files_in_use.h"

#include <unistd.h>

#include "tools/base/usage_error.h"

namespace qeo::tool {

FilesInUse::FilesInUse() {
  Write("standard output", IdOf(STDOUT_FILENO), true);
  Write("standard error", IdOf(STDERR_FILENO), true);
}

void FilesInUse::Read(const std::string& name, const std::optional<FileId>& file) {
  if (!file) return;
  for (const Use& use : uses_) {
    if (use.is_written && use.file == *file) {
      throw UsageError(name + " and " + use.name + " are the same file",
                       use.file == IdOf(STDERR_FILENO));
    }
  }
  uses_.push_back({name, *file, false, false});
}

void FilesInUse::Write(const std::string& name, const std::optional<FileId>& file, bool is_stream) {
  if (!file) return;
  for (const Use& use : uses_) {
    if (use.file == *file && !(is_stream && use.is_stream)) {
      throw UsageError(use.name + " and " + name + " are the same file",
                       use.file == IdOf(STDERR_FILENO));
    }
  }
  uses_.push_back({name, *file, true, is_stream});
}

}  // namespace qeo::tool
