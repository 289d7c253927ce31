#ifndef NOTATION_RARITIES_H_
#define NOTATION_RARITIES_H_

// How rare each syllable is: its information in sixteenths of a bit, by its row in the syllable
// table. Rarities add up where probabilities multiply, and a byte a row keeps the tables of both
// languages in 1 kB. scripts/rarities makes them from data/*.tsv and says how. Not installed.

#include <cstdint>

namespace qeo::notation::internal {

/// One bit of information.
inline constexpr int kRarityBit = 16;

inline constexpr std::uint8_t kMandarinRarities[] = {
#include "notation/mandarin_rarities.inc"
};

inline constexpr std::uint8_t kCantoneseRarities[] = {
#include "notation/cantonese_rarities.inc"
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_RARITIES_H_
