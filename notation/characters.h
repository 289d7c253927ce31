#ifndef NOTATION_CHARACTERS_H_
#define NOTATION_CHARACTERS_H_

// UTF-8 text as the characters that romanisations are made of, whatever its normalisation form: a
// letter and the marks on it are one character, composed or not. Not installed.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "notation/records.h"

namespace qeo::notation::internal {

enum class CharacterKind : std::uint8_t {
  kLetter,         // a Latin letter of a romanisation
  kDigit,          //
  kSeparator,      // what the library takes for one: white space, "'" and "`"
  kColon,          // punctuation, but for "u:"
  kPunctuation,    //
  kForeignLetter,  // another Latin letter, or one with other marks: its word is foreign
  kForeign,        // anything else
  kInvalid,        // a byte that is not UTF-8
};

/// The letter e with circumflex, a sound of its own.
inline constexpr char kCircumflexE = 'E';

/// The tone of what has no tone mark.
inline constexpr char kNoTone = '\0';

/// What a character is, at any place in a text.
struct CharacterClass {
  CharacterKind kind = CharacterKind::kForeign;
  char ascii = '\0';           // letter: small, 'v' for u with diaeresis, kCircumflexE; digit
  char tone = kNoTone;         // letter: '1' to '4' by its mark
  bool is_capital = false;     // letter
  bool is_full_width = false;  // or raised, lowered or otherwise equivalent to what it stands for
  bool has_diaeresis = false;  // letter
  bool is_variant = false;     // letter: U+0251, U+0261, or with circumflex
};

/// One character of a text.
struct Character : CharacterClass {
  Range range;
};

/// Makes what ReadCharacter looks up, unless it is made. Called before a text is read, so that
/// reading any text makes it, also an empty one.
void MakeCharacterTable();

/// Reads the character that begins at `offset`, which is less than the length of `text`.
Character ReadCharacter(std::string_view text, std::size_t offset);

}  // namespace qeo::notation::internal

#endif  // NOTATION_CHARACTERS_H_
