#ifndef NOTATION_LETTER_SET_H_
#define NOTATION_LETTER_SET_H_

// Sets of small letters. Not installed.

#include <cstdint>
#include <string_view>

namespace qeo::notation::internal {

/// A set of small letters, one bit each. Has takes a small letter, kCircumflexE or no letter.
class LetterSet {
 public:
  explicit constexpr LetterSet(std::string_view letters) {
    for (const char letter : letters) bits_ |= Bit(letter);
  }
  constexpr bool Has(char c) const { return c >= 'a' && (bits_ & Bit(c)) != 0; }

 private:
  static constexpr std::uint32_t Bit(char letter) { return std::uint32_t{1} << (letter - 'a'); }

  std::uint32_t bits_ = 0;
};

inline constexpr LetterSet kVowels("aeiouv");

}  // namespace qeo::notation::internal

#endif  // NOTATION_LETTER_SET_H_
