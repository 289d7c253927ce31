#ifndef TOOLS_COMMANDS_CUT_COMPARISON_H_
#define TOOLS_COMMANDS_CUT_COMPARISON_H_

// The ways to cut the words of a text that are written without tones, for the user to compare.

#include <string>
#include <string_view>

#include "notation/cutting.h"

namespace qeo::tool {

/// Appends how the words that no digit closes are cut in each way of kCuttings, of which `used` is
/// marked, and how they could be cut; kNone is shown only when it is used. What a cut leaves out is
/// in brackets: "yi ping [uo]".
///
/// The words on which the other ways differ come first, then those that can be cut in several ways
/// or in none; what is beyond the first few is counted, as is what can be cut in one way only.
/// Nothing is appended for a text without such words.
///
/// `text` is normalised: letters, digits and blanks.
void AppendCutsOfWords(int language, std::string_view text, notation::Cutting used,
                       std::string& out);

}  // namespace qeo::tool

#endif  // TOOLS_COMMANDS_CUT_COMPARISON_H_
