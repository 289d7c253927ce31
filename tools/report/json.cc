#include "tools/report/json.h"

#include <algorithm>
#include <string_view>

#include "phoneme/ascii.h"
#include "tools/report/terminal_text.h"

namespace qeo::tool {
namespace {

constexpr bool IsPlain(char c) { return ascii::IsAscii(c) && c != '\x7f'; }

// A character as \uNNNN, or as two of these.
std::string EscapeCharacter(std::string_view character) {
  const std::string quoted = Json(character).dump(-1, ' ', true);
  return quoted.substr(1, quoted.size() - 2);
}

// Whether a mark that follows some plain bytes of JSON would join a character of a text, and not a
// quote or an escape.
bool CarriesMarks(std::string_view plain) {
  bool carries_marks = false;
  while (!plain.empty()) {
    const bool is_escape = plain.front() == '\\';
    carries_marks = !is_escape && plain.front() != '"';
    plain.remove_prefix(!is_escape ? 1 : plain[1] == 'u' ? 6 : 2);
  }
  return carries_marks;
}

}  // namespace

void AppendJsonText(const Json& json, std::string& out) {
  const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  // Only in strings of JSON are characters beyond ASCII, so an escape can take their place.
  bool carries_marks = false;
  for (std::string_view rest = text; !rest.empty();) {
    const auto size = std::find_if_not(rest.begin(), rest.end(), IsPlain) - rest.begin();
    const std::string_view plain = rest.substr(0, static_cast<std::size_t>(size));
    out += plain;
    rest.remove_prefix(plain.size());
    if (!rest.empty()) {
      const Glyph glyph = ReadGlyph(rest);
      const std::string_view bytes = rest.substr(0, glyph.size);
      if (glyph.is_mark && !plain.empty()) carries_marks = CarriesMarks(plain);
      carries_marks = glyph.shown == bytes && (!glyph.is_mark || carries_marks);
      out += carries_marks ? glyph.shown : EscapeCharacter(bytes);
      rest.remove_prefix(glyph.size);
    }
  }
}

}  // namespace qeo::tool
