#include "tools/messages.h"

#include <cstddef>
#include <system_error>

#include "tools/glyphs.h"

namespace qeo::tool {
namespace {

constexpr std::size_t kLongestQuote = 1000;  // bytes of the text

}  // namespace

std::string Escaped(std::string_view text) {
  std::string escaped;
  while (!text.empty()) {
    const Glyph glyph = ReadGlyph(text);
    escaped += glyph.shown == "\\" ? "\\\\" : glyph.shown;
    text.remove_prefix(glyph.size);
  }
  return escaped;
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  std::size_t taken = 0;
  while (taken < text.size()) {
    const Glyph glyph = ReadGlyph(text.substr(taken));
    taken += glyph.size;
    if (taken > kLongestQuote) {
      return quoted + "...\"";
    }
    quoted += glyph.shown;
  }
  return quoted + '"';
}

std::string Described(const notation::Problem& problem, std::string_view text) {
  const std::string bytes = Quoted(text.substr(problem.range.offset, problem.range.length));
  return problem.suggestion.empty() ? bytes : bytes + ", perhaps " + Quoted(problem.suggestion);
}

void AppendMessage(std::string_view message, std::string& out) {
  out += "phoneme: ";
  out += message;
  out += '\n';
}

std::string SystemProblem(std::string_view action, int error) {
  return std::string(action) + ": " + std::generic_category().message(error);
}

}  // namespace qeo::tool
