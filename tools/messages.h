#ifndef TOOLS_MESSAGES_H_
#define TOOLS_MESSAGES_H_

/// The form of what the tool tells the user on standard error: one line a message.

#include <string>
#include <string_view>

namespace qeo::tool {

/// The exit statuses of the tool.
enum ExitStatus { kSuccess = 0, kFailure = 1, kBadUsage = 2 };

/// Returns `text` with every control byte as \xNN, so that it fits on one line of a terminal.
std::string Escaped(std::string_view text);

/// Returns `text` escaped and in double quotes, cut short ("...") when it is very long.
std::string Quoted(std::string_view text);

/// Appends the line "phoneme: MESSAGE" to `out`.
void AppendMessage(std::string_view message, std::string& out);

/// Returns `action` with the system's words for an errno: "cannot read: Is a directory".
std::string SystemProblem(std::string_view action, int error);

}  // namespace qeo::tool

#endif  // TOOLS_MESSAGES_H_
