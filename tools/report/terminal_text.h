#ifndef TOOLS_REPORT_TERMINAL_TEXT_H_
#define TOOLS_REPORT_TERMINAL_TEXT_H_

// Bytes of any origin as a terminal can show them: text unchanged, and as \xNN what the
// terminal would obey and what nobody would see.

#include <cstddef>
#include <string>
#include <string_view>

namespace qeo::tool {

/// A character, or a byte that is none.
struct Glyph {
  std::string shown;
  std::size_t cells = 0;  ///< that it takes on a terminal
  std::size_t size = 0;   ///< bytes of the text
  bool is_mark = false;   ///< it joins what is before it
};

/// Reads the glyph that `text` begins with, which is not empty.
///
/// Letters, marks and signs of any script are shown unchanged, and the space. Bytes that are not
/// UTF-8, controls, changes of direction and other format characters, other blanks, invisible,
/// private and unassigned characters become the numbers of their bytes: "\xc2\x85".
Glyph ReadGlyph(std::string_view text);

/// Returns how many cells a text takes when it is shown glyph by glyph.
std::size_t Cells(std::string_view text);

/// Returns as much of a text of the tool's own as fits into `cells`, with "..." at its end when
/// that is not all.
std::string Fitted(std::string_view text, std::size_t cells);

/// The beginning of a text of any origin as a terminal can show it.
struct Excerpt {
  std::string shown;
  bool is_whole = true;
};

/// Escapes as much of `text` as fits into `cells`: each glyph as ReadGlyph shows it, but a
/// backslash and a double quote with a backslash before them, and as \xNN a mark that would not
/// join a character of the text: one that is first, or after an escape. So no two texts look alike.
///
/// All that messages repeat of files and arguments passes through here.
Excerpt Escape(std::string_view text, std::size_t cells);

/// Returns `text` escaped and in double quotes, in at most `cells`. Three dots after the closing
/// quote mean that it goes on.
std::string Quote(std::string_view text, std::size_t cells);

}  // namespace qeo::tool

#endif  // TOOLS_REPORT_TERMINAL_TEXT_H_
