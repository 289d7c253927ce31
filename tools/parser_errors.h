#ifndef TOOLS_PARSER_ERRORS_H_
#define TOOLS_PARSER_ERRORS_H_

// What is wrong with a command line, in the words of this tool: none of the parser's own reach the
// user.

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace qeo::tool {

using Words = std::vector<std::string>;

/// Throws UsageError for what the parser accepts in `words` and yet does not read as written.
void CheckWords(const CLI::App& app, const Words& words);

/// Throws UsageError for `words`, which the parser has refused with `error`.
[[noreturn]] void RefuseWords(const CLI::App& app, const Words& words,
                              const CLI::ParseError& error);

}  // namespace qeo::tool

#endif  // TOOLS_PARSER_ERRORS_H_
