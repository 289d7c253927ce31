#ifndef NOTATION_APOSTROPHE_H_
#define NOTATION_APOSTROPHE_H_

// Where Pinyin has an apostrophe, for those who write it and those who miss it. Not installed.

#include "notation/characters.h"
#include "notation/syllable_set.h"

namespace qeo::notation::internal {

/// Whether an apostrophe sets a syllable off from what stands in front of it in a word, whose end
/// its first letter could be: it begins with a, e or o, or is a nasal alone.
constexpr bool TakesApostrophe(PackedSpelling syllable) {
  const char first = UnpackLetter(syllable, 0);
  return first == 'a' || first == 'e' || first == kCircumflexE || first == 'o' ||
         syllable == Pack("m") || syllable == Pack("n") || syllable == Pack("ng");
}

}  // namespace qeo::notation::internal

#endif  // NOTATION_APOSTROPHE_H_
