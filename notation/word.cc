#include "notation/word.h"

#include <algorithm>

namespace qeo::notation::internal {

bool Word::HasToneMark(Piece piece) const {
  return std::any_of(letters.begin() + static_cast<std::ptrdiff_t>(piece.begin),
                     letters.begin() + static_cast<std::ptrdiff_t>(piece.end),
                     [](const Letter& letter) { return letter.tone != kNoTone; });
}

Range Word::RangeOf(Piece piece) const {
  const std::size_t offset = letters[piece.begin].offset;
  return {offset, letters[piece.end - 1].range().end() - offset};
}

Range Word::RangeWithDigits(Piece piece) const {
  Range range = RangeOf(piece);
  if (HasDigits(piece)) range.length = digits.end - range.offset;
  return range;
}

}  // namespace qeo::notation::internal
