#include "notation/readings.h"

#include <array>

#include "notation/letter_set.h"

namespace qeo::notation::internal {

Reading Readings::OfLetters(PackedSpelling letters, std::size_t count) const {
  const Reading reading = Unfused(letters, count);
  const bool ends_in_r = count > 1 && UnpackLetter(letters, count - 1) == 'r';
  if (reading.IsKnown() || !ends_in_r || !rules_.Has(Rule::kFusedErhua)) return reading;
  bool has_vowel = false;
  for (std::size_t i = 0; i < count; ++i) {
    has_vowel = has_vowel || kVowels.Has(UnpackLetter(letters, i));
  }
  Reading fused = Unfused(letters ^ PackLetter('r', count - 1), count - 1);
  fused.has_fused_r = true;
  return has_vowel && fused.IsKnown() ? fused : Reading();
}

Reading Readings::Unfused(PackedSpelling letters, std::size_t count) const {
  Reading reading;
  if (aliases_ != nullptr) {
    std::array<char, kMaxPackedLength> spelling = {};
    for (std::size_t i = 0; i < count; ++i) spelling[i] = UnpackLetter(letters, i);
    reading.spelling = Pack(aliases_->Find({spelling.data(), count}));
    reading.is_alias = reading.IsKnown();
  }
  if (!reading.is_alias) {
    reading.is_respelled = IsRespelled(letters);
    reading.spelling = reading.is_respelled ? letters ^ PackLetter('u' ^ 'v', 1) : letters;
  }
  const SyllableSet::Entry syllable = syllables_.Find(reading.spelling);
  if (!syllable.IsSyllable()) return {};
  reading.row = syllable.row;
  reading.rarity = syllable.rarity;
  return reading;
}

Reading Readings::OfPiece(const Word& word, Piece piece) const {
  if (piece.size() > kMaxPackedLength) return {};
  PackedSpelling letters = 0;
  for (std::size_t i = 0; i < piece.size(); ++i) {
    letters |= PackLetter(word[piece.begin + i].letter, i);
  }
  Reading reading;
  if (letters == Pack("r") && rules_.Has(Rule::kErhua)) {
    reading.spelling = Pack("er");
    reading.row = syllables_.Find(reading.spelling).row;
    reading.is_lone_r = true;
    return reading;
  }
  return OfLetters(letters, piece.size());
}

bool Readings::MayRewrite(const Word& word, Piece piece) const {
  if (aliases_ != nullptr) return true;
  for (std::size_t i = piece.begin; i < piece.end; ++i) {
    const char next = i + 1 < piece.end ? word[i + 1].letter : '\0';
    if (word[i].letter == 'r' || (word[i].letter == 'u' && next == 'e')) return true;
  }
  return false;
}

}  // namespace qeo::notation::internal
