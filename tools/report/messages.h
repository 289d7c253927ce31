#ifndef TOOLS_REPORT_MESSAGES_H_
#define TOOLS_REPORT_MESSAGES_H_

// The form of what the tool reports on standard error: one line a message.

#include <string>
#include <string_view>

#include "notation/records.h"

namespace qeo::tool {

/// Returns a file name escaped, for use before ":LINE:COLUMN: ". It is not shortened, so that
/// an editor finds the file; the system does not open a name of more than 4096 bytes.
std::string Escaped(std::string_view text);

/// Returns a text from outside as messages repeat it: escaped (see Escape), in double quotes, and
/// at most 80 cells of it. A longer one goes on as `"abc"... (5000 bytes)`.
std::string Quoted(std::string_view text);

/// Returns the name of a file as Quoted does a text, at most 256 cells of it.
std::string QuotedName(std::string_view name);

/// Returns what messages call an input: its name in quotes, or "standard input" for "-".
std::string InputName(std::string_view path);

/// Returns a message on one line, at most 1000 cells of it and without anything that a terminal
/// would obey, for any bytes in it. Quoted leaves nothing to do here; this is for what forgets
/// it.
std::string Presentable(std::string_view message);

/// Returns the bytes of a problem in the text that has it, and its hint: "hoa3", perhaps "hao3".
std::string Described(const notation::Problem& problem, std::string_view text);

/// Returns the hint of a problem, or an empty text: perhaps "hao3"; perhaps "yao" for "yai"; an
/// alias gives nei1, see --aliases; l and an exist, lan is not in the table.
std::string HintText(const notation::Problem& problem, std::string_view text);

/// Appends the line "phoneme: MESSAGE" to `out`. Every message for standard error passes through
/// here and Presentable.
void AppendMessage(std::string_view message, std::string& out);

/// Returns `action` with the system's words for an errno: "cannot read: Is a directory".
std::string SystemProblem(std::string_view action, int error);

}  // namespace qeo::tool

#endif  // TOOLS_REPORT_MESSAGES_H_
