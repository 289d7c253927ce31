#ifndef NOTATION_APOSTROPHE_H_
#define NOTATION_APOSTROPHE_H_

// Syllables that are hard to find within a word: those before which Pinyin writes an apostrophe,
// for writing it and for reading words that lack it, and those without a vowel. Not installed.

#include "notation/characters.h"
#include "notation/syllable_set.h"

namespace qeo::notation::internal {

/// Whether Pinyin writes an apostrophe before a syllable within a word, because its first letter
/// could end the syllable before it: it begins with a, e or o, or is m, n or ng.
constexpr bool TakesApostrophe(PackedSpelling syllable) {
  const char first = UnpackLetter(syllable, 0);
  return first == 'a' || first == 'e' || first == kCircumflexE || first == 'o' ||
         syllable == Pack("m") || syllable == Pack("n") || syllable == Pack("ng");
}

/// Whether a word with tone marks may lack the apostrophe before a syllable: "fǎo" is not fa and o,
/// but "Xīān" cannot be one syllable, and no other syllable ends in "er".
constexpr bool MayLackApostrophe(PackedSpelling syllable, bool has_mark, bool follows_mark) {
  return !TakesApostrophe(syllable) || (has_mark && follows_mark) ||
         (!has_mark && syllable == Pack("er"));
}

/// Whether a syllable has no vowel: it is a nasal, or h and a nasal.
constexpr bool IsNasal(PackedSpelling syllable) {
  return syllable == Pack("m") || syllable == Pack("n") || syllable == Pack("ng") ||
         syllable == Pack("hm") || syllable == Pack("hng");
}

}  // namespace qeo::notation::internal

#endif  // NOTATION_APOSTROPHE_H_
