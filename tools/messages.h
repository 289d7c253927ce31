#ifndef TOOLS_MESSAGES_H_
#define TOOLS_MESSAGES_H_

/// The form of what the tool tells the user on standard error: one line a message.

#include <string>
#include <string_view>

#include "notation/records.h"

namespace qeo::tool {

/// Returns `text` as a terminal can show it, on one line: as ReadGlyph shows each of its glyphs,
/// and a backslash as two.
std::string Escaped(std::string_view text);

/// Returns `text` escaped and in double quotes, cut short ("...") behind a glyph when it is longer
/// than 1000 bytes.
std::string Quoted(std::string_view text);

/// Returns the bytes of a problem in the text that has it, and what may have been meant:
/// "hoa3", perhaps "hao3".
std::string Described(const notation::Problem& problem, std::string_view text);

/// Appends the line "phoneme: MESSAGE" to `out`.
void AppendMessage(std::string_view message, std::string& out);

/// Returns `action` with the system's words for an errno: "cannot read: Is a directory".
std::string SystemProblem(std::string_view action, int error);

}  // namespace qeo::tool

#endif  // TOOLS_MESSAGES_H_
