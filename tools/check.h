#ifndef TOOLS_CHECK_H_
#define TOOLS_CHECK_H_

/// `phoneme check`: tells what in a file cannot be converted, and nothing else.

#include <string>
#include <vector>

#include "tools/dictionary.h"
#include "tools/messages.h"
#include "tools/notations.h"

namespace qeo::tool {

struct CheckOptions {
  int language = 0;
  Source from = Source::kText;
  notation::AnalysisOptions reading;
  Layout layout;
  bool is_lexicon = false;  ///< the entries are phones, of which those of the language are known
  bool is_json = false;
  std::vector<std::string> files;  ///< "-" is standard input
};

/// Checks all files and returns the exit status: kSuccess when they are clean.
ExitStatus Check(const CheckOptions& options);

}  // namespace qeo::tool

#endif  // TOOLS_CHECK_H_
