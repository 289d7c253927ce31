#ifndef PHONEME_TONE_H_
#define PHONEME_TONE_H_

// Tones and the syllable code that carries them.

#include <cstdint>

#include "phoneme/phone_sets.h"

namespace qeo::sp::internal {

/// Folds a tone into 1 to `top`: out of range, it is its remainder, and remainder 0 is the top. A
/// negative tone keeps its sign.
constexpr signed char FoldTone(signed char tone, signed char top) {
  if (tone >= 1 && tone <= top) return tone;
  const int remainder = tone % top;
  return static_cast<signed char>(remainder == 0 ? top : remainder);
}

constexpr std::uint16_t SyllableCode(int row, int tone) {
  return static_cast<std::uint16_t>(row * kTonesPerRow + tone);
}

}  // namespace qeo::sp::internal

#endif  // PHONEME_TONE_H_
