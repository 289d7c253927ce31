#include "tools/report/messages.h"

#include <cstddef>
#include <system_error>

#include "tools/report/terminal_text.h"

namespace qeo::tool {
namespace {

// All in cells.
constexpr std::size_t kLongestQuote = 80;
constexpr std::size_t kLongestName = 256;
constexpr std::size_t kLongestPath = 16384;    // more than a name that the system opens, escaped
constexpr std::size_t kLongestMessage = 1000;  // room for some quotes and the longest list

// What follows the beginning of a text that goes on.
std::string SizeOf(std::string_view text) {
  return "... (" + std::to_string(text.size()) + " bytes)";
}

std::string QuotedWithin(std::string_view text, std::size_t cells) {
  const Excerpt excerpt = Escape(text, cells);
  const std::string quoted = '"' + excerpt.shown + '"';
  return excerpt.is_whole ? quoted : quoted + SizeOf(text);
}

}  // namespace

std::string Escaped(std::string_view text) { return Escape(text, kLongestPath).shown; }

std::string Quoted(std::string_view text) { return QuotedWithin(text, kLongestQuote); }

std::string QuotedName(std::string_view name) { return QuotedWithin(name, kLongestName); }

std::string InputName(std::string_view path) {
  return path == "-" ? "standard input" : QuotedName(path);
}

std::string Presentable(std::string_view message) { return Fitted(message, kLongestMessage); }

std::string Described(const notation::Problem& problem, std::string_view text) {
  const std::string bytes = Quoted(text.substr(problem.range.offset, problem.range.length));
  const std::string hint = HintText(problem, text);
  return hint.empty() ? bytes : bytes + ", " + hint;
}

std::string HintText(const notation::Problem& problem, std::string_view text) {
  const bool is_whole =
      problem.piece.offset == problem.range.offset && problem.piece.length == problem.range.length;
  const std::string piece =
      is_whole ? "" : " for " + Quoted(text.substr(problem.piece.offset, problem.piece.length));
  switch (problem.hint) {
    case notation::Hint::kNone:
      break;
    case notation::Hint::kSpelling:
      return "perhaps " + Quoted(problem.suggestion) + piece;
    case notation::Hint::kAlias:
      return "an alias gives " + problem.suggestion + piece + ", see --aliases";
    case notation::Hint::kGap: {
      const std::string initial(problem.initial);
      const std::string final(problem.final);
      return initial + " and " + final + " exist, " + initial + final + " is not in the table";
    }
  }
  return "";
}

void AppendMessage(std::string_view message, std::string& out) {
  out += "phoneme: ";
  out += Presentable(message);
  out += '\n';
}

std::string SystemProblem(std::string_view action, int error) {
  return std::string(action) + ": " + std::generic_category().message(error);
}

}  // namespace qeo::tool
