// The library gives its pieces and not their places, so they are looked for, one after the
// other, where it can have found them.

#include "tools/library_reading.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::tool {
namespace {

constexpr std::string_view kSeparators = "\t\n\v\f\r '`";

bool IsSeparator(char c) { return kSeparators.find(c) != kSeparators.npos; }

// Whether what is written ends a piece at `index`, or begins one there.
bool IsBorder(std::string_view text, std::size_t index) {
  if (index == 0 || index == text.size()) {
    return true;
  }
  const char before = text[index - 1];
  const char behind = text[index];
  return IsSeparator(before) || ascii::IsDigit(before) || IsSeparator(behind) ||
         ascii::IsCapital(behind);
}

// A capital, which the library makes a small letter, can only be the first of a piece.
bool StartsWith(std::string_view text, std::string_view piece) {
  return text.size() >= piece.size() && ascii::ToSmall(text.front()) == piece.front() &&
         text.substr(1, piece.size() - 1) == piece.substr(1);
}

// Where a piece is, `from` or later. One of letters alone is a syllable, which may have been
// cut from the letters around it: it follows on the piece before or, where letters were dropped,
// begins at a border. Any other piece is between borders.
std::size_t FindPiece(std::string_view text, std::size_t from, std::string_view piece) {
  const bool is_cut = std::all_of(piece.begin(), piece.end(), ascii::IsSmall);
  for (std::size_t at = from; at < text.size(); ++at) {
    const bool can_begin = (is_cut && at == from) || IsBorder(text, at);
    if (can_begin && StartsWith(text.substr(at), piece) &&
        (is_cut || IsBorder(text, at + piece.size()))) {
      return at;
    }
  }
  return text.size();
}

}  // namespace

std::vector<notation::Range> PlacesOfPieces(int language, const std::string& text) {
  std::vector<std::string> pieces;
  sp::pyw2py(language, text, pieces, false);
  std::vector<notation::Range> places;
  std::size_t end = 0;  // of the piece before
  for (const std::string& piece : pieces) {
    const std::size_t offset = FindPiece(text, end, piece);
    end = std::min(offset + piece.size(), text.size());
    places.push_back({offset, end - offset});
  }
  return places;
}

namespace {

bool IsSyllable(int language, const std::string& piece) {
  std::vector<unsigned short> codes;
  return sp::py2code(language, piece + ' ', codes) == 0;  // the blank keeps it in one piece
}

// Appends what is from `begin` to `end` and is not a separator.
void AppendLost(std::string_view text, std::size_t begin, std::size_t end,
                std::vector<notation::Range>& lost) {
  const std::string_view before_end = text.substr(0, end);
  for (std::size_t at = before_end.find_first_not_of(kSeparators, begin); at < end;) {
    const std::size_t stop = std::min(before_end.find_first_of(kSeparators, at), end);
    lost.push_back({at, stop - at});
    at = before_end.find_first_not_of(kSeparators, stop);
  }
}

}  // namespace

std::size_t CountLetters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return !IsSeparator(c) && !ascii::IsDigit(c); }));
}

std::optional<notation::Range> UnknownPiece(int language, const std::string& text) {
  for (const notation::Range& piece : PlacesOfPieces(language, text)) {
    if (!IsSyllable(language, text.substr(piece.offset, piece.length))) {
      return piece;
    }
  }
  return std::nullopt;
}

std::vector<notation::Range> LettersLost(int language, const std::string& text) {
  std::vector<notation::Range> lost;
  std::size_t end = 0;  // of the piece before
  for (const notation::Range& piece : PlacesOfPieces(language, text)) {
    AppendLost(text, end, piece.offset, lost);
    end = piece.end();
  }
  AppendLost(text, end, text.size(), lost);
  return lost;
}

}  // namespace qeo::tool
