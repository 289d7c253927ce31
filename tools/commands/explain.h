#ifndef TOOLS_COMMANDS_EXPLAIN_H_
#define TOOLS_COMMANDS_EXPLAIN_H_

// `phoneme explain`: how a text is read, on one screen.

#include <string>

#include "notation/analysis.h"

namespace qeo::tool {

/// Appends one screen that shows how `text` is read: rules applied, syllables, phones, the text in
/// the library's notations, cuts of words without tones, problems, and what the library reads
/// without any rule. `language` is a registered one.
///
/// The text may be any bytes. The lines are UTF-8 without control characters, at most 80 cells of
/// a terminal wide, and long lists are cut short ("... and 7 more"). Returns false when the text
/// has a problem.
bool AppendExplanation(int language, const std::string& text,
                       const notation::AnalysisOptions& options, std::string& out);

}  // namespace qeo::tool

#endif  // TOOLS_COMMANDS_EXPLAIN_H_
