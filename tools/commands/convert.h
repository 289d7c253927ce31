#ifndef TOOLS_COMMANDS_CONVERT_H_
#define TOOLS_COMMANDS_CONVERT_H_

// `phoneme convert`: texts from the arguments, a file or standard input.

#include <cstddef>
#include <string>
#include <vector>

#include "lexicon/lexicon.h"
#include "tools/base/exit_status.h"
#include "tools/conversion/notations.h"
#include "tools/io/files_in_use.h"

namespace qeo::tool {

struct ConvertOptions {
  Conversion conversion;
  lexicon::Layout layout;
  std::vector<std::string> texts;  ///< when empty, the lines of `input`
  std::string input;               ///< a file, or empty or "-" for standard input
  std::string output;              ///< a file, or empty for standard output
  std::string rejects;             ///< a file for the lines that fail, or empty
  std::size_t jobs = 1;            ///< threads that convert
  bool is_quiet = false;           ///< neither progress nor totals
};

/// Converts all texts, which `options.conversion` must allow (CheckConversion), and returns the
/// exit status. What fails is reported on standard error. `files` are those that are in use
/// already; throws UsageError when a file is among them.
ExitStatus Convert(const ConvertOptions& options, FilesInUse& files);

}  // namespace qeo::tool

#endif  // TOOLS_COMMANDS_CONVERT_H_
