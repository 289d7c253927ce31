#ifndef NOTATION_KEYBOARD_H_
#define NOTATION_KEYBOARD_H_

// Which letters are beside each other on a QWERTY keyboard: in the same row, or touching in the row
// above or below, whose keys are shifted by about half a key. Not installed.

#include <array>
#include <cstddef>
#include <string_view>

#include "notation/letter_set.h"

namespace qeo::notation::internal {

/// The letters whose keys are beside the key of a letter, from a to z.
inline constexpr std::array<std::string_view, 26> kKeysBeside = {
    "qwsz",    // a
    "vghn",    // b
    "xdfv",    // c
    "serfcx",  // d
    "wsdr",    // e
    "drtgvc",  // f
    "ftyhbv",  // g
    "gyujnb",  // h
    "ujko",    // i
    "huikmn",  // j
    "jiolm",   // k
    "kop",     // l
    "njk",     // m
    "bhjm",    // n
    "iklp",    // o
    "ol",      // p
    "wa",      // q
    "edft",    // r
    "awedxz",  // s
    "rfgy",    // t
    "yhji",    // u
    "cfgb",    // v
    "qase",    // w
    "zsdc",    // x
    "tghu",    // y
    "asx",     // z
};

/// The letters whose keys are beside the key of a small letter.
constexpr std::string_view KeysBeside(char letter) {
  return kKeysBeside[static_cast<std::size_t>(letter - 'a')];
}

/// Whether each key is beside the keys that are beside it.
constexpr bool AreKeysMutual() {
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    for (const char beside : KeysBeside(letter)) {
      if (beside == letter || !LetterSet(KeysBeside(beside)).Has(letter)) return false;
    }
  }
  return true;
}
static_assert(AreKeysMutual(), "a key is beside another that is not beside it");

}  // namespace qeo::notation::internal

#endif  // NOTATION_KEYBOARD_H_
