#ifndef NOTATION_TEXT_READER_H_
#define NOTATION_TEXT_READER_H_

// Reads the characters and words of romanised Chinese by the rules in use. Not installed.

#include <cstddef>
#include <string_view>
#include <vector>

#include "notation/characters.h"
#include "notation/records.h"
#include "notation/word.h"

namespace qeo::notation::internal {

class TextReader {
 public:
  TextReader(std::string_view text, RuleSet rules) : text_(text), rules_(rules) {}

  /// A character, taken for foreign when it needs a rule that is off.
  Character ReadCharacter(std::size_t offset) const;

  /// Reads the word that begins at `at` and the digits after it. Returns the range of both.
  Range ReadWord(std::size_t at, Word& word) const;

 private:
  void AddLetter(const Character& character, std::vector<Letter>& letters) const;
  bool AddColon(const Character& colon, std::vector<Letter>& letters) const;
  void ReadDigits(std::size_t at, Digits& digits) const;

  std::string_view text_;
  RuleSet rules_;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_TEXT_READER_H_
