// Reads words character by character.

#include "notation/text_reader.h"

#include "notation/letter_set.h"

namespace qeo::notation::internal {
namespace {

constexpr std::size_t kUsualLetters = 16;               // room that hardly a word outgrows
constexpr LetterSet kInitialsOfDiaeresis("lnjqxy");     // u with diaeresis can follow them
constexpr LetterSet kInitialsWithoutDiaeresis("jqxy");  // and is written u after these

// Whether u with diaeresis is written u as the last of these letters.
bool EndsDotless(const std::vector<Letter>& letters) {
  return letters.size() > 1 && kInitialsWithoutDiaeresis.Has(letters[letters.size() - 2].letter);
}

}  // namespace

Character TextReader::ReadCharacter(std::size_t offset) const {
  Character character = internal::ReadCharacter(text_, offset);
  const bool is_barred =
      (character.is_full_width && !rules_.Has(Rule::kFullWidth)) ||
      (character.has_diaeresis && !rules_.Has(Rule::kDiaeresis)) ||
      ((character.is_variant || character.tone != kNoTone) && !rules_.Has(Rule::kToneMark));
  if (!is_barred) return character;
  if (character.kind == CharacterKind::kLetter) character.kind = CharacterKind::kForeignLetter;
  if (character.kind == CharacterKind::kDigit) character.kind = CharacterKind::kForeign;
  if (character.kind == CharacterKind::kColon) character.kind = CharacterKind::kPunctuation;
  return character;
}

Range TextReader::ReadWord(std::size_t at, Word& word) const {
  const std::size_t begin = at;
  word.letters.clear();
  word.letters.reserve(kUsualLetters);
  word.is_foreign = false;
  while (at < text_.size()) {
    const Character character = ReadCharacter(at);
    if (character.kind == CharacterKind::kLetter) {
      AddLetter(character, word.letters);
    } else if (character.kind == CharacterKind::kForeignLetter) {
      word.is_foreign = true;
    } else if (!AddColon(character, word.letters)) {
      break;
    }
    at = character.range.end();
  }
  ReadDigits(at, word.digits);
  return {begin, word.digits.end - begin};
}

void TextReader::ReadDigits(std::size_t at, Digits& digits) const {
  digits = {0, {}, at};
  while (digits.end < text_.size()) {
    const Character character = ReadCharacter(digits.end);
    if (character.kind != CharacterKind::kDigit) break;
    if (digits.count++ == 0) digits.first = character;
    digits.end = character.range.end();
  }
}

void TextReader::AddLetter(const Character& character, std::vector<Letter>& letters) const {
  letters.emplace_back(character);
  Letter& letter = letters.back();
  if (letter.letter == 'v' && rules_.Has(Rule::kDiaeresis) && EndsDotless(letters)) {
    letter.letter = 'u';
    letter.has_diaeresis = true;
  }
}

// Makes "u:" one letter where u with diaeresis is possible and the colon directly follows the u.
bool TextReader::AddColon(const Character& colon, std::vector<Letter>& letters) const {
  if (colon.kind != CharacterKind::kColon || !rules_.Has(Rule::kDiaeresis)) return false;
  if (letters.size() < 2) return false;
  Letter& letter = letters.back();
  const Letter& initial = letters[letters.size() - 2];
  const bool is_in_row =
      initial.range().end() == letter.offset && letter.range().end() == colon.range.offset;
  const bool is_plain_u = letter.letter == 'u' && letter.tone == kNoTone && !letter.has_diaeresis;
  if (!is_plain_u || !is_in_row || !kInitialsOfDiaeresis.Has(initial.letter)) {
    return false;
  }
  letter.letter = EndsDotless(letters) ? 'u' : 'v';
  letter.has_diaeresis = true;
  letter.has_full_width_colon = colon.is_full_width;
  letter.has_mark = true;
  letter.length = static_cast<std::uint8_t>(letter.length + colon.range.length);
  return true;
}

}  // namespace qeo::notation::internal
