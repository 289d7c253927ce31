#ifndef NOTATION_WORD_H_
#define NOTATION_WORD_H_

// A word of romanised Chinese as it is written: letters with their marks, and the digits after
// them. Not installed.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "notation/characters.h"
#include "notation/letter_set.h"
#include "notation/records.h"

namespace qeo::notation::internal {

/// A letter of a word.
struct Letter {
  explicit Letter(const Character& character)
      : offset(character.range.offset),
        length(static_cast<std::uint8_t>(character.range.length)),
        letter(character.ascii),
        tone(character.tone),
        is_capital(character.is_capital),
        is_full_width(character.is_full_width),
        has_diaeresis(character.has_diaeresis),
        has_mark(character.tone != kNoTone || character.has_diaeresis || character.is_variant),
        is_variant(character.is_variant) {}

  std::size_t offset;
  std::uint8_t length;
  char letter;  // small; 'v' for u with diaeresis, or 'u' where it is written so; kCircumflexE
  char tone;    // by its mark, or kNoTone
  bool is_capital;
  bool is_full_width;
  bool has_diaeresis;                 // or v is written for it
  bool has_full_width_colon = false;  // at its end, for the diaeresis
  bool has_mark;
  bool is_variant;

  Range range() const { return {offset, length}; }
};

/// The digits after a word. The first one is its tone.
struct Digits {
  std::size_t count = 0;
  Character first;
  std::size_t end = 0;  // in the text; of the word when there are none
};

/// Letters of a word, by index.
struct Piece {
  std::size_t begin;
  std::size_t end;

  std::size_t size() const { return end - begin; }
};

/// Letters in a row, and the digits after them.
struct Word {
  std::vector<Letter> letters;
  bool is_foreign = false;  // there are letters in between that are not in `letters`
  Digits digits;

  std::size_t size() const { return letters.size(); }
  const Letter& operator[](std::size_t index) const { return letters[index]; }

  bool HasToneMark(Piece piece) const;
  bool HasDigits(Piece piece) const { return piece.end == size() && digits.count > 0; }
  Range RangeOf(Piece piece) const;
  Range RangeWithDigits(Piece piece) const;
};

/// The tone marks on letters that may be one syllable.
class ToneMarks {
 public:
  void Add(const Letter& letter) {
    const bool is_vowel = kVowels.Has(letter.letter);
    has_vowel_ = has_vowel_ || is_vowel;
    if (letter.tone == kNoTone) return;
    ++count_;
    is_on_consonant_ = !is_vowel;
  }

  std::size_t count() const { return count_; }

  /// Whether one syllable can have them: one mark at most, on a vowel if it has any.
  bool AreOfOneSyllable() const { return count_ <= 1 && !(has_vowel_ && is_on_consonant_); }

 private:
  bool has_vowel_ = false;
  std::size_t count_ = 0;
  bool is_on_consonant_ = false;  // the last one; or on an e with circumflex, in no syllable
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_WORD_H_
