// Asks utf8proc what each character is. Only its kind counts and not its script: a table of
// harmless characters would always leave somebody's letters out.

#include "tools/report/terminal_text.h"

#include <utf8proc.h>

#include <algorithm>

namespace qeo::tool {
namespace {

// Bytes as \xNN.
std::string Hex(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    hex += {'\\', 'x', kDigits[byte / 16], kDigits[byte % 16]};
  }
  return hex;
}

bool IsShown(utf8proc_int32_t code_point, const utf8proc_property_t& character) {
  constexpr utf8proc_int32_t kBrailleBlank = 0x2800;  // a symbol by its category
  switch (character.category) {
    case UTF8PROC_CATEGORY_CC:  // controls
    case UTF8PROC_CATEGORY_CF:  // format characters, of which some change the direction
    case UTF8PROC_CATEGORY_CN:  // unassigned
    case UTF8PROC_CATEGORY_CO:  // private use, which looks as the font likes
    case UTF8PROC_CATEGORY_ZS:  // blanks, which look like ' ', or like nothing
    case UTF8PROC_CATEGORY_ZL:  // these two separate lines and paragraphs
    case UTF8PROC_CATEGORY_ZP:
      return false;
    default:
      return code_point != kBrailleBlank &&
             !character.ignorable;  // fillers and selectors, which leave no trace
  }
}

bool IsMark(const utf8proc_property_t& character) {
  return character.category == UTF8PROC_CATEGORY_MN || character.category == UTF8PROC_CATEGORY_MC ||
         character.category == UTF8PROC_CATEGORY_ME;
}

std::size_t CellsOf(utf8proc_int32_t code_point, const utf8proc_property_t& character) {
  const auto cells = static_cast<std::size_t>(utf8proc_charwidth(code_point));
  // Unlike the other marks these are beside their letter, which utf8proc does not count.
  return character.category == UTF8PROC_CATEGORY_MC ? std::max<std::size_t>(cells, 1) : cells;
}

}  // namespace

Glyph ReadGlyph(std::string_view text) {
  if (text.front() >= ' ' && text.front() <= '~') {
    return {std::string(1, text.front()), 1, 1, false};
  }
  utf8proc_int32_t code_point = 0;
  const utf8proc_ssize_t read =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                       static_cast<utf8proc_ssize_t>(text.size()), &code_point);
  if (read > 0) {
    const std::string_view bytes = text.substr(0, static_cast<std::size_t>(read));
    const utf8proc_property_t& character = *utf8proc_get_property(code_point);
    if (IsShown(code_point, character)) {
      return {std::string(bytes), CellsOf(code_point, character), bytes.size(), IsMark(character)};
    }
  }
  const std::size_t size = read > 0 ? static_cast<std::size_t>(read) : 1;
  const std::string hex = Hex(text.substr(0, size));
  return {hex, hex.size(), size, false};
}

std::size_t Cells(std::string_view text) {
  std::size_t cells = 0;
  while (!text.empty()) {
    const Glyph glyph = ReadGlyph(text);
    cells += glyph.cells;
    text.remove_prefix(glyph.size);
  }
  return cells;
}

namespace {

constexpr std::string_view kDots = "...";

Glyph ReadEscaped(std::string_view text) {
  Glyph glyph = ReadGlyph(text);
  if (text.front() == '\\' || text.front() == '"') {
    glyph.shown.insert(0, 1, '\\');
    ++glyph.cells;
  }
  return glyph;
}

// Whether a mark would join a character of the text itself when it follows the glyph of `bytes`,
// and not an escape or a quote, which would then look like another character.
bool CarriesMarks(const Glyph& glyph, std::string_view bytes) {
  return glyph.shown == bytes && bytes != "\"" && bytes != "\\";
}

// The glyphs of a text, as `read` makes them, that fit into `cells`.
Excerpt Begin(std::string_view text, std::size_t cells, Glyph (*read)(std::string_view)) {
  constexpr std::size_t kBytesPerCell = 8;  // marks take no cell, and a letter may have many
  Excerpt excerpt;
  std::size_t used = 0;
  bool carries_marks = false;
  while (!text.empty()) {
    Glyph glyph = read(text);
    const std::string_view bytes = text.substr(0, glyph.size);
    if (glyph.is_mark && !carries_marks) {
      const std::string hex = Hex(bytes);
      glyph = {hex, hex.size(), glyph.size, false};
    }
    carries_marks = CarriesMarks(glyph, bytes);
    used += glyph.cells;
    if (used > cells || excerpt.shown.size() + glyph.shown.size() > kBytesPerCell * cells) {
      excerpt.is_whole = false;
      return excerpt;
    }
    excerpt.shown += glyph.shown;
    text.remove_prefix(glyph.size);
  }
  return excerpt;
}

}  // namespace

std::string Fitted(std::string_view text, std::size_t cells) {
  Excerpt excerpt = Begin(text, cells, ReadGlyph);
  return excerpt.is_whole ? excerpt.shown
                          : Begin(text, cells - kDots.size(), ReadGlyph).shown.append(kDots);
}

Excerpt Escape(std::string_view text, std::size_t cells) { return Begin(text, cells, ReadEscaped); }

std::string Quote(std::string_view text, std::size_t cells) {
  const std::size_t room = cells - 2;  // between the quotes
  const Excerpt excerpt = Escape(text, room);
  if (excerpt.is_whole) return '"' + excerpt.shown + '"';
  return '"' + Escape(text, room - kDots.size()).shown + '"' + std::string(kDots);
}

}  // namespace qeo::tool
