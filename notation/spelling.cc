// Writes syllables as people do. The marks of a Mandarin syllable are set once, when the first text
// is written; after that a conversion only joins.

#include "notation/spelling.h"

#include <utf8proc.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>

#include "notation/apostrophe.h"
#include "notation/bounded_vector.h"
#include "notation/syllable_set.h"
#include "notation/syllable_table.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using internal::kTonesPerRow;

// The combining mark of each tone, 1 to 5.
constexpr std::array<std::string_view, 5> kMarks = {"\u0304", "\u0301", "\u030C", "\u0300", ""};

std::string Compose(const std::string& text) {
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.c_str());
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> composed(utf8proc_NFC(bytes),
                                                                         &std::free);
  if (composed == nullptr) throw std::bad_alloc();
  return reinterpret_cast<const char*>(composed.get());
}

// The place of the tone mark in a syllable.
std::size_t MarkedLetter(std::string_view spelling) {
  const std::size_t open_vowel = spelling.find_first_of("aeE");
  if (open_vowel != std::string_view::npos) return open_vowel;
  const std::size_t ou = spelling.find("ou");
  if (ou != std::string_view::npos) return ou;
  const std::size_t last_vowel = spelling.find_last_of("iouv");
  if (last_vowel != std::string_view::npos) return last_vowel;
  return spelling.find_first_of("mn");
}

std::string WithMark(std::string_view spelling, std::string_view mark) {
  const std::size_t marked = MarkedLetter(spelling);
  std::string text;
  for (std::size_t i = 0; i < spelling.size(); ++i) {
    switch (spelling[i]) {
      case 'v':
        text += "u\u0308";
        break;
      case 'E':
        text += "e\u0302";
        break;
      default:
        text += spelling[i];
    }
    if (i == marked) text += mark;
  }
  return Compose(text);
}

using internal::BoundedVector;
using internal::kMaxRows;
using internal::ShortText;

struct MarkedSyllable {
  std::array<ShortText, kMarks.size()> by_tone;  // 1 to 5
  bool takes_apostrophe = false;
};

using MarkedSyllables = BoundedVector<MarkedSyllable, kMaxRows>;

MarkedSyllables MakeMarkedSyllables() {
  MarkedSyllables syllables;
  for (const std::string& spelling : internal::SyllableSpellings(sp::LANGUAGE_MANDARIN)) {
    MarkedSyllable& syllable = syllables.push_back({});
    syllable.takes_apostrophe = internal::TakesApostrophe(internal::Pack(spelling));
    for (std::size_t i = 0; i < kMarks.size(); ++i) {
      syllable.by_tone[i] = ShortText(WithMark(spelling, kMarks[i]));
    }
  }
  return syllables;
}

bool AppendMarked(unsigned code, Spacing spacing, std::string& text) {
  static const MarkedSyllables syllables = MakeMarkedSyllables();
  const std::size_t row = code / kTonesPerRow;
  const unsigned tone = code % kTonesPerRow;
  if (row >= syllables.size() || !internal::IsTone(sp::LANGUAGE_MANDARIN, tone)) return false;
  if (!text.empty() && spacing == Spacing::kSpace) text += ' ';
  if (!text.empty() && spacing == Spacing::kWord && syllables[row].takes_apostrophe) text += '\'';
  text += syllables[row].by_tone[tone - 1].view();
  return true;
}

bool AppendJyutping(unsigned code, Spacing spacing, std::string& text) {
  using internal::MakeSpellingTable;
  using internal::SpellingTable;
  static const SpellingTable spellings = MakeSpellingTable(sp::LANGUAGE_CANTONESE);
  const std::size_t row = code / kTonesPerRow;
  const unsigned tone = code % kTonesPerRow;
  if (row >= spellings.size() || !internal::IsTone(sp::LANGUAGE_CANTONESE, tone)) return false;
  if (!text.empty() && spacing == Spacing::kSpace) text += ' ';
  text += spellings[row].view();
  text += static_cast<char>('0' + tone);
  return true;
}

bool AppendPronunciation(const sp::SyllableInfo& syllable, int language, std::string& text) {
  const int digit = syllable.tone != 0 ? syllable.tone : syllable.raw_tone;
  if (syllable.phones.empty() || digit < 0 || digit > 9) return false;
  if (!text.empty()) text += ", ";
  for (const sp::PhoneInfo* phone : syllable.phones) {
    if (phone == nullptr || phone->language != language) return false;
    text += phone->name;
    text += ' ';
  }
  text += static_cast<char>('0' + digit);
  return true;
}

// Writes all syllables with `append`, which returns false for one that cannot be written.
template <typename Syllable, typename Append>
Spelling Write(const std::vector<Syllable>& syllables, Append append) {
  Spelling spelling;
  for (std::size_t i = 0; i < syllables.size(); ++i) {
    if (!append(syllables[i], spelling.text)) return {"", i};
  }
  return spelling;
}

constexpr unsigned kCodeBits = 0xFFFF;

}  // namespace

Spelling MarkedPinyin(const std::vector<unsigned short>& codes, Spacing spacing) {
  return Write(codes, [spacing](unsigned short code, std::string& text) {
    return AppendMarked(code, spacing, text);
  });
}

Spelling MarkedPinyin(const std::vector<sp::SyllableInfo>& syllables, Spacing spacing) {
  return Write(syllables, [spacing](const sp::SyllableInfo& syllable, std::string& text) {
    return syllable.language == sp::LANGUAGE_MANDARIN &&
           AppendMarked(syllable.code & kCodeBits, spacing, text);
  });
}

Spelling Jyutping(const std::vector<unsigned short>& codes, Spacing spacing) {
  return Write(codes, [spacing](unsigned short code, std::string& text) {
    return AppendJyutping(code, spacing, text);
  });
}

Spelling Jyutping(const std::vector<sp::SyllableInfo>& syllables, Spacing spacing) {
  return Write(syllables, [spacing](const sp::SyllableInfo& syllable, std::string& text) {
    return syllable.language == sp::LANGUAGE_CANTONESE &&
           AppendJyutping(syllable.code & kCodeBits, spacing, text);
  });
}

Spelling PronunciationString(const std::vector<sp::SyllableInfo>& syllables) {
  int language = 0;
  return Write(syllables, [&language](const sp::SyllableInfo& syllable, std::string& text) {
    if (text.empty() && !syllable.phones.empty() && syllable.phones[0] != nullptr) {
      language = syllable.phones[0]->language;
    }
    return AppendPronunciation(syllable, language, text);
  });
}

}  // namespace qeo::notation
