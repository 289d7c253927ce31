#include "notation/notation_table.h"

#include "notation/arpabet.h"
#include "notation/jyutping.h"
#include "notation/pinyin.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace internal {
namespace {

constexpr std::int32_t kEvery = 0;
constexpr RuleSet kNoRules;

constexpr NotationRow kRows[] = {
    {{Notation::kPinyin, "pinyin", "Pinyin", sp::LANGUAGE_MANDARIN, kPinyinRules, true, true,
      false},
     ReadPinyin,
     nullptr,
     nullptr},
    {{Notation::kMarkedPinyin, "marks", "Pinyin with tone marks", sp::LANGUAGE_MANDARIN, kNoRules,
      true, false, true},
     ReadNothing,
     GapInMarks,
     AppendMarks},
    {{Notation::kJyutping, "jyutping", "Jyutping", sp::LANGUAGE_CANTONESE, kJyutpingRules, true,
      true, false},
     ReadJyutping,
     nullptr,
     nullptr},
    {{Notation::kArpabet, "arpabet", "ARPAbet", sp::LANGUAGE_AMERICAN_ENGLISH,
      kArpabetRules.With(Rule::kSecondStress), false, true, true},
     ReadArpabet,
     GapInTonedPhones,
     AppendArpabet},
    {{Notation::kText, "text", "romanised text", kEvery, kNoRules, true, true, true},
     ReadText,
     GapInText,
     AppendText},
    {{Notation::kPhones, "phones", "phones", kEvery, kNoRules, false, false, true},
     ReadNothing,
     GapInPhones,
     AppendPhones},
    {{Notation::kTonedPhones, "toned-phones", "toned phones", kEvery, kNoRules, false, false, true},
     ReadNothing,
     GapInTonedPhones,
     AppendTonedPhones},
    {{Notation::kCodes, "codes", "syllable codes", kEvery, kNoRules, true, true, true},
     ReadCodes,
     GapInCodes,
     AppendCode},
    {{Notation::kIds, "ids", "phone-id bytes", kEvery, kNoRules, false, true, true},
     ReadIds,
     GapInIds,
     AppendIds},
    {{Notation::kPronunciation, "pronunciation", "pronunciations", kEvery, kNoRules, false, true,
      true},
     ReadPronunciation,
     GapInPronunciation,
     AppendPronunciation},
};

// Each row is where its notation says, and has the functions that it says it has.
constexpr bool IsInOrder() {
  int index = 0;
  for (const NotationRow& row : kRows) {
    const bool is_consistent = row.facts.is_read == (row.read != ReadNothing) &&
                               row.facts.is_written == (row.find_gap != nullptr) &&
                               row.facts.is_written == (row.append != nullptr);
    if (static_cast<int>(row.facts.notation) != index++ || !is_consistent) return false;
  }
  return index == kNotationCount;
}
static_assert(IsInOrder());

}  // namespace

const NotationRow& RowOf(Notation notation) { return kRows[static_cast<std::size_t>(notation)]; }

}  // namespace internal

const NotationFacts& FactsOf(Notation notation) { return internal::RowOf(notation).facts; }

const std::array<Notation, kNotationCount>& AllNotations() {
  static constexpr std::array<Notation, kNotationCount> kAll = {
      Notation::kPinyin, Notation::kMarkedPinyin, Notation::kJyutping,    Notation::kArpabet,
      Notation::kText,   Notation::kPhones,       Notation::kTonedPhones, Notation::kCodes,
      Notation::kIds,    Notation::kPronunciation};
  return kAll;
}

std::optional<Notation> NotationOfName(std::string_view name) {
  for (const internal::NotationRow& row : internal::kRows) {
    if (row.facts.name == name) return row.facts.notation;
  }
  return std::nullopt;
}

// The first row of a language.
std::optional<Notation> OwnNotation(int language) {
  for (const internal::NotationRow& row : internal::kRows) {
    const bool is_own = row.facts.language == language && language != internal::kEvery;
    if (is_own) return row.facts.notation;
  }
  return std::nullopt;
}

std::int32_t ServingLanguage(Notation notation, int language) {
  const NotationFacts& facts = FactsOf(notation);
  if (facts.language != internal::kEvery) return facts.language;
  return sp::ServingLanguage(
      facts.has_codes ? sp::Conversion::kSyllables : sp::Conversion::kPronunciations, language);
}

}  // namespace qeo::notation
