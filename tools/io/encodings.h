#ifndef TOOLS_IO_ENCODINGS_H_
#define TOOLS_IO_ENCODINGS_H_

// Files that are not UTF-8 text, and how to make UTF-8 text of them.

#include <optional>
#include <string>
#include <string_view>

namespace qeo::tool {

/// Returns what a file is that is not UTF-8, by its first bytes, and the command that makes text of
/// it: "it is gzip, not UTF-8 text; try: gzip -dc FILE | phoneme ...". UTF-16 and UTF-32 without a
/// byte order mark are found by their NUL bytes, where at least half of the characters are ASCII.
/// `use` ends the command that the message advises: where the text goes.
std::optional<std::string> EncodingProblem(std::string_view beginning,
                                           std::string_view use = "| phoneme ...");

}  // namespace qeo::tool

#endif  // TOOLS_IO_ENCODINGS_H_
