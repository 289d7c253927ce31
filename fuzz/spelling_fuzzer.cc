// MarkedPinyin, Jyutping and PronunciationString: what is written reads back as the same syllables,
// from codes and from records alike; the first syllable that cannot be written is told.

#include <algorithm>

#include "fuzz/conversions.h"
#include "notation/notation.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using notation::Spacing;
using notation::Spelling;
using Codes = std::vector<unsigned short>;
using Syllables = std::vector<sp::SyllableInfo>;

constexpr std::size_t kMostSyllables = 200;

// Codes of the language, and now and then any number.
Codes TakeCodes(fuzzing::Input& input, int language) {
  const std::size_t row_count = sp::FindPhoneSet(language)->pinyin_count;
  const auto top_tone = static_cast<std::size_t>(sp::TopTone(language));
  Codes codes;
  while (!input.IsAtEnd() && codes.size() < kMostSyllables) {
    const std::size_t tone = input.Choose(256);
    const std::size_t high_byte = input.Choose(256);
    const std::size_t number = high_byte << 8U | input.Choose(256);
    const bool is_any = tone == 255;
    codes.push_back(static_cast<unsigned short>(
        is_any ? number : number % row_count * 10 + 1 + tone % top_tone));
  }
  return codes;
}

bool IsWritable(int language, unsigned short code) {
  sp::SyllableInfo syllable;
  return sp::code2ph(language, code, syllable) == 0 &&
         sp::ToneAdaptation(language, syllable.tone) == syllable.tone;
}

Syllables RecordsOf(int language, const Codes& codes) {
  Syllables syllables(codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) {
    // A code without a row is a record of the language all the same.
    if (sp::code2ph(language, codes[i], syllables[i]) != 0) syllables[i].language = language;
  }
  return syllables;
}

Codes Read(int language, const std::string& text) {
  Codes codes = fuzzing::StaleCodes();
  Expect(sp::py2code(language, text, codes) == 0, "the library reads it");
  return codes;
}

// NormalizePinyin has no notation for "ê", and leaves a word without marks to be cut.
bool IsReadBack(const Codes& codes, Spacing spacing) {
  const bool has_mark =
      std::any_of(codes.begin(), codes.end(), [](unsigned short code) { return code % 10 != 5; });
  const bool has_circumflex = std::any_of(codes.begin(), codes.end(), [](unsigned short code) {
    return sp::code2py(sp::LANGUAGE_MANDARIN, code, false) == "E";
  });
  return !has_circumflex && (has_mark || spacing == Spacing::kSpace);
}

void ExpectCodes(int language, const Codes& codes, Spacing spacing) {
  const bool is_mandarin = language == sp::LANGUAGE_MANDARIN;
  const auto write = [&](const auto& syllables) {
    return is_mandarin ? notation::MarkedPinyin(syllables, spacing)
                       : notation::Jyutping(syllables, spacing);
  };
  const Spelling spelling = write(codes);
  const Spelling of_records = write(RecordsOf(language, codes));
  Expect(spelling.text == of_records.text && spelling.unwritable == of_records.unwritable,
         "records are written as their codes");

  const auto unwritable = std::find_if_not(
      codes.begin(), codes.end(), [&](unsigned short code) { return IsWritable(language, code); });
  Expect(spelling.unwritable.has_value() == (unwritable != codes.end()), "all can be written");
  if (spelling.unwritable) {
    Expect(codes.begin() + static_cast<std::ptrdiff_t>(*spelling.unwritable) == unwritable,
           "the first that cannot be written is told");
    Expect(spelling.text.empty(), "nothing is written then");
    return;
  }
  if (!is_mandarin) {
    Expect(Read(language, spelling.text) == codes, "it reads back");
    Expect(Read(language, notation::NormalizeJyutping(spelling.text).text) == codes,
           "normalised it reads back");
  } else if (IsReadBack(codes, spacing)) {
    const notation::Normalized read = notation::NormalizePinyin(spelling.text);
    Expect(read.problems.empty(), "it is read without a problem");
    Expect(Read(language, read.text) == codes, "it reads back");
  }
}

bool IsPronounceable(const sp::SyllableInfo& syllable) {
  return !syllable.phones.empty() && std::find(syllable.phones.begin(), syllable.phones.end(),
                                               nullptr) == syllable.phones.end();
}

bool IsSameByName(const sp::SyllableInfo& a, const sp::SyllableInfo& b) {
  const auto has_same_name = [](const sp::PhoneInfo* x, const sp::PhoneInfo* y) {
    return std::string_view(x->name) == y->name;
  };
  return a.raw_tone == b.raw_tone && std::equal(a.phones.begin(), a.phones.end(), b.phones.begin(),
                                                b.phones.end(), has_same_name);
}

// Of records that pr2ph or ph2ph made, whose digit is `raw_tone`.
void ExpectPronunciation(const Syllables& syllables) {
  const Spelling spelling = notation::PronunciationString(syllables);
  const auto unwritable = std::find_if_not(syllables.begin(), syllables.end(), IsPronounceable);
  Expect(spelling.unwritable.has_value() == (unwritable != syllables.end()), "all can be written");
  if (spelling.unwritable) {
    Expect(syllables.begin() + static_cast<std::ptrdiff_t>(*spelling.unwritable) == unwritable,
           "the first that cannot be written is told");
    return;
  }
  if (syllables.empty()) return;
  Syllables read = fuzzing::StaleSyllables();
  Expect(sp::pr2ph(syllables[0].language, spelling.text, read) == 0, "pr2ph reads it");
  Expect(std::equal(read.begin(), read.end(), syllables.begin(), syllables.end(), IsSameByName),
         "it reads back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const std::size_t chosen = input.Choose(4);
  if (chosen < 2) {
    const int language = chosen == 0 ? sp::LANGUAGE_MANDARIN : sp::LANGUAGE_CANTONESE;
    const Spacing spacing = input.ChooseBool() ? Spacing::kSpace : Spacing::kWord;
    ExpectCodes(language, TakeCodes(input, language), spacing);
    return 0;
  }
  const int language = fuzzing::ChooseLanguage(input);
  const std::string text = input.Rest();
  Syllables syllables;
  if (chosen == 2) {
    sp::pr2ph(language, text, syllables);
  } else {
    sp::ph2ph(language, {text.begin(), text.end()}, syllables);
  }
  ExpectPronunciation(syllables);
  return 0;
}
