#ifndef NOTATION_APOSTROPHE_H_
#define NOTATION_APOSTROPHE_H_

// Syllables that are hard to find within a word: those before which Pinyin has an apostrophe, for
// those who write it and those who miss it, and those without a vowel. Not installed.

#include "notation/characters.h"
#include "notation/syllable_set.h"

namespace qeo::notation::internal {

/// Whether an apostrophe sets a syllable off from what is before it in a word, whose end its first
/// letter could be: it begins with a, e or o, or is m, n or ng.
constexpr bool TakesApostrophe(PackedSpelling syllable) {
  const char first = UnpackLetter(syllable, 0);
  return first == 'a' || first == 'e' || first == kCircumflexE || first == 'o' ||
         syllable == Pack("m") || syllable == Pack("n") || syllable == Pack("ng");
}

/// Whether a syllable is one without an apostrophe before it in a word with tone marks: "fǎo" is
/// not fa and o, but "Xīān" cannot be one syllable, and nothing else ends in "er".
constexpr bool MayLackApostrophe(PackedSpelling syllable, bool has_mark, bool follows_mark) {
  return !TakesApostrophe(syllable) || (has_mark && follows_mark) ||
         (!has_mark && syllable == Pack("er"));
}

/// Whether a syllable has no vowel, and is thus what other syllables end in, or h and that.
constexpr bool IsNasal(PackedSpelling syllable) {
  return syllable == Pack("m") || syllable == Pack("n") || syllable == Pack("ng") ||
         syllable == Pack("hm") || syllable == Pack("hng");
}

}  // namespace qeo::notation::internal

#endif  // NOTATION_APOSTROPHE_H_
