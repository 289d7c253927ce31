// Romanised text to syllables, to their spellings and to their places.

#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"
#include "phoneme/pinyin_splitter.h"
#include "phoneme/registry.h"
#include "phoneme/tone.h"

namespace qeo::sp {

using namespace internal;

signed char ToneAdaptation(int language, signed char tone) {
  return FoldTone(tone, SyllableLanguage(language).top_tone);
}

int TopTone(int language) { return SyllableLanguage(language).top_tone; }

int py2ph(int language, const std::string& text, std::vector<SyllableInfo>& syllables) {
  syllables.clear();
  const Language& in_use = SyllableLanguage(language);
  bool all_known = true;
  SplitPinyin(in_use.syllables, text, false, [&](const SplitPiece& piece) {
    all_known = piece.row != NameIndex::kAbsent;
    if (!all_known) return false;
    SyllableInfo& syllable = syllables.emplace_back();
    syllable.language = in_use.id;
    syllable.tone = FoldTone(piece.raw_tone, in_use.top_tone);
    syllable.code = SyllableCode(piece.row, syllable.tone);
    const RowPhones& phones = in_use.row_phones[static_cast<std::size_t>(piece.row)];
    syllable.phones.assign(phones.begin(), phones.end());
    return true;
  });
  if (!all_known) syllables.clear();
  return all_known ? 0 : -1;
}

int pyw2py(int language, const std::string& word, std::vector<std::string>& syllables,
           bool backward) {
  syllables.clear();
  const Language& in_use = SyllableLanguage(language);
  SplitPinyin(in_use.syllables, word, backward, [&](const SplitPiece& piece) {
    std::string& syllable = syllables.emplace_back(piece.text);
    syllable.front() = ascii::ToSmall(syllable.front());
    return true;
  });
  return 0;
}

void FindPieces(int language, std::string_view text, std::vector<TextPiece>& pieces,
                bool backward) {
  pieces.clear();
  SplitPinyin(SyllableLanguage(language).syllables, text, backward, [&](const SplitPiece& piece) {
    const auto offset = static_cast<std::size_t>(piece.text.data() - text.data());
    const std::int8_t tone = piece.row == NameIndex::kAbsent ? std::int8_t{0} : piece.raw_tone;
    pieces.push_back({offset, piece.text.size(), piece.row, tone});
    return true;
  });
}

}  // namespace qeo::sp
