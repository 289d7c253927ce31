#ifndef TOOLS_COMMANDS_CHECK_H_
#define TOOLS_COMMANDS_CHECK_H_

// `phoneme check`: reports what in a file cannot be converted, and nothing else.

#include <string>
#include <vector>

#include "lexicon/lexicon.h"
#include "tools/base/exit_status.h"
#include "tools/conversion/notations.h"
#include "tools/io/files_in_use.h"

namespace qeo::tool {

struct CheckOptions {
  Conversion conversion;    ///< that lines are checked for
  bool has_target = false;  ///< else they are checked for codes and pronunciation
  lexicon::Layout layout;
  bool is_lexicon = false;  ///< the entries are phones, of which those of the language are known
  bool is_json = false;
  std::vector<std::string> files;  ///< "-" is standard input
};

/// Checks all files and returns the exit status: kSuccess when they are clean. `in_use` are the
/// files that are in use already; throws UsageError when one to check is written.
ExitStatus Check(const CheckOptions& options, FilesInUse& in_use);

}  // namespace qeo::tool

#endif  // TOOLS_COMMANDS_CHECK_H_
