#include "tools/conversion/library_reading.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::tool {
namespace {

constexpr std::string_view kSeparators = "\t\n\v\f\r '`";

std::vector<sp::TextPiece> PiecesOf(int language, std::string_view text) {
  std::vector<sp::TextPiece> pieces;
  sp::FindPieces(language, text, pieces);
  return pieces;
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

std::vector<notation::Range> PlacesOfPieces(int language, std::string_view text) {
  std::vector<notation::Range> places;
  for (const sp::TextPiece& piece : PiecesOf(language, text)) {
    places.push_back({piece.offset, piece.length});
  }
  return places;
}

std::size_t CountLetters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return kSeparators.find(c) == kSeparators.npos && !ascii::IsDigit(c);
  }));
}

std::optional<notation::Range> UnknownPiece(int language, std::string_view text) {
  for (const sp::TextPiece& piece : PiecesOf(language, text)) {
    if (piece.row < 0) return notation::Range{piece.offset, piece.length};
  }
  return std::nullopt;
}

std::vector<notation::Range> LettersLost(int language, std::string_view text) {
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
