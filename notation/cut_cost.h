#ifndef NOTATION_CUT_COST_H_
#define NOTATION_CUT_COST_H_

// Which of two cuts of a word into equally many syllables is better: numbers of a language. Not
// installed.

#include <cstddef>
#include <cstdint>

#include "notation/rarities.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {

/// What the syllables of a cut cost together; the least is best. Two numbers, so that the first
/// outweighs any sum of the second, and neither can overflow.
struct CutCost {
  std::size_t apostrophes = 0;  // that the language's orthography would write, and are not there
  std::size_t rarity = 0;       // in sixteenths of a bit

  constexpr bool operator<(const CutCost& other) const {
    return apostrophes != other.apostrophes ? apostrophes < other.apostrophes
                                            : rarity < other.rarity;
  }

  constexpr CutCost& operator+=(const CutCost& other) {
    apostrophes += other.apostrophes;
    rarity += other.rarity;
    return *this;
  }
};

/// How a language's words are cut.
struct CutNumbers {
  const std::uint8_t* rarities = nullptr;  // by row
  CutCost penalty;                         // of a syllable within a word that TakesApostrophe
  bool nasals_stand_alone = false;         // IsNasal is a syllable only as a whole word
};

/// Those of a Chinese language; of Mandarin for any other. Cantonese has no apostrophes, and m and
/// ng are among its commonest syllables.
inline CutNumbers CutNumbersOf(int language) {
  constexpr int kTwoBits = 2 * kRarityBit;
  if (language == sp::LANGUAGE_CANTONESE) return {kCantoneseRarities, {0, kTwoBits}, false};
  return {kMandarinRarities, {1, 0}, true};
}

}  // namespace qeo::notation::internal

#endif  // NOTATION_CUT_COST_H_
