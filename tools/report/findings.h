#ifndef TOOLS_REPORT_FINDINGS_H_
#define TOOLS_REPORT_FINDINGS_H_

// What a check has found, in the form that editors and CI systems read or as JSON.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "notation/records.h"
#include "tools/io/output.h"

namespace qeo::tool {

struct Finding {
  std::uint64_t line = 0;  ///< counted from 1
  std::size_t offset = 0;  ///< bytes of the line before it
  std::size_t length = 0;  ///< bytes, 0 when it is about the line or the file
  std::string_view kind;   ///< "unknown syllable"
  std::string message;     ///< the details, for the user
  std::string suggestion;  ///< what may have been meant, or empty
  bool is_problem = true;  ///< else a note
  /// What it was made of, for the details of a hint; may be null.
  const notation::Problem* source = nullptr;
};

/// Writes findings, one a line, to standard output.
class FindingWriter {
 public:
  explicit FindingWriter(bool is_json) : is_json_(is_json) {}

  /// The file that the findings to come are about.
  void BeginFile(const std::string& name) { file_ = name; }

  void Write(const Finding& finding);

  /// Sends off what has been written.
  void Flush() { output_.Flush(); }
  void Close() { output_.Close(); }

  int error() const { return output_.error(); }
  bool has_problems() const { return has_problems_; }

 private:
  void WriteText(const Finding& finding);
  void WriteJson(const Finding& finding);

  bool is_json_;
  bool has_problems_ = false;
  std::string file_;
  Output output_{STDOUT_FILENO};
};

}  // namespace qeo::tool

#endif  // TOOLS_REPORT_FINDINGS_H_
