// Syllable codes: from romanised text, to phones, to a spelling.

#include "phoneme/phoneme.h"
#include "phoneme/pinyin_splitter.h"
#include "phoneme/registry.h"
#include "phoneme/tone.h"
#include "xstr/xstr.h"

namespace qeo::sp {

using namespace internal;

int py2code(int language, const std::string& text, std::vector<unsigned short>& codes) {
  codes.clear();
  const Language& in_use = SyllableLanguage(language);
  bool all_known = true;
  SplitPinyin(in_use.syllables, text, false, [&](const SplitPiece& piece) {
    all_known = piece.row != NameIndex::kAbsent;
    if (!all_known) return false;
    codes.push_back(SyllableCode(piece.row, FoldTone(piece.raw_tone, in_use.top_tone)));
    return true;
  });
  if (!all_known) codes.clear();
  return all_known ? 0 : -1;
}

int code2ph(int language, unsigned short code, SyllableInfo& syllable) {
  const Language& in_use = SyllableLanguage(language);
  syllable.code = code;
  syllable.tone = static_cast<signed char>(code % kTonesPerRow);
  const std::size_t row = code / std::size_t{kTonesPerRow};
  if (row >= in_use.row_phones.size()) return -1;
  syllable.language = in_use.id;
  for (const PhoneInfo* phone : in_use.row_phones[row]) syllable.phones.push_back(phone);
  return 0;
}

std::string code2py(int language, unsigned short code, bool with_tone) {
  const Language& in_use = SyllableLanguage(language);
  const SpMapping& mapping = *in_use.mapping;
  if (mapping.pinyin_count == 0) return {};
  const std::size_t row = code / std::size_t{kTonesPerRow};
  std::string spelling = mapping.pinyin_list[row < mapping.pinyin_count ? row : 0].pinyin;
  // A language that serves an unregistered id always writes the tone.
  const bool stands_in = in_use.id != language;
  if (with_tone || stands_in) spelling += xstr::to_u8s(code % kTonesPerRow, 10);
  return spelling;
}

}  // namespace qeo::sp
