#include "tools/json.h"

#include <algorithm>
#include <string_view>

#include "phoneme/ascii.h"
#include "tools/glyphs.h"

namespace qeo::tool {
namespace {

constexpr bool IsPlain(char c) { return ascii::IsAscii(c) && c != '\x7f'; }

// A character as \uNNNN, or as two of these.
std::string EscapeCharacter(std::string_view character) {
  const std::string quoted = Json(character).dump(-1, ' ', true);
  return quoted.substr(1, quoted.size() - 2);
}

}  // namespace

void AppendJsonText(const Json& json, std::string& out) {
  const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  // Only in strings of JSON are characters beyond ASCII, so an escape can take their place.
  for (std::string_view rest = text; !rest.empty();) {
    const auto plain = std::find_if_not(rest.begin(), rest.end(), IsPlain) - rest.begin();
    out += rest.substr(0, static_cast<std::size_t>(plain));
    rest.remove_prefix(static_cast<std::size_t>(plain));
    if (!rest.empty()) {
      const Glyph glyph = ReadGlyph(rest);
      const std::string_view bytes = rest.substr(0, glyph.size);
      out += glyph.shown == bytes ? glyph.shown : EscapeCharacter(bytes);
      rest.remove_prefix(glyph.size);
    }
  }
}

}  // namespace qeo::tool
