#include "tools/conversion/notations.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "tools/base/decimal.h"
#include "tools/base/usage_error.h"
#include "tools/conversion/languages.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

bool NeedsCodes(Target to) {
  return to == Target::kSyllables || to == Target::kCodes || to == Target::kMarks;
}

// A notation of one language alone.
template <typename Notation>
struct OwnNotation {
  Notation notation;
  int language;
  const char* name;
};

constexpr OwnNotation<Source> kOwnSources[] = {
    {Source::kPinyin, sp::LANGUAGE_MANDARIN, "Pinyin"},
    {Source::kJyutping, sp::LANGUAGE_CANTONESE, "Jyutping"},
    {Source::kArpabet, sp::LANGUAGE_AMERICAN_ENGLISH, "ARPAbet"},
};

constexpr OwnNotation<Target> kOwnTargets[] = {
    {Target::kMarks, sp::LANGUAGE_MANDARIN, "Pinyin with tone marks"},
    {Target::kArpabet, sp::LANGUAGE_AMERICAN_ENGLISH, "ARPAbet"},
};

constexpr Tones kTones[] = {
    {sp::LANGUAGE_MANDARIN, "tones", 1, 5, -1},
    {sp::LANGUAGE_CANTONESE, "tones", 1, 6, 7},
    {sp::LANGUAGE_AMERICAN_ENGLISH, "stresses", 0, 2, -1},
};

template <typename Notation, std::size_t kCount>
void CheckOwner(int language, Notation notation, const OwnNotation<Notation> (&owned)[kCount]) {
  for (const OwnNotation<Notation>& own : owned) {
    if (own.notation == notation && own.language != language) {
      throw UsageError(std::string(own.name) + " is a notation of " + LanguageName(own.language) +
                       ", not of " + LanguageName(language));
    }
  }
}

}  // namespace

const Tones& TonesOf(int language) {
  return *std::find_if(std::begin(kTones), std::end(kTones) - 1,
                       [language](const Tones& tones) { return tones.language == language; });
}

std::string DescribeTones(int language) {
  const Tones& tones = TonesOf(language);
  return LanguageName(language) + ' ' + tones.name + " are " + std::to_string(tones.first) +
         " to " + std::to_string(tones.last);
}

int ParseDefaultTone(int language, std::string_view tone) {
  if (language == sp::LANGUAGE_MANDARIN) {
    throw UsageError(
        "--default-tone does not apply to mandarin: a syllable without a tone has the neutral "
        "tone, 5");
  }
  if (language != sp::LANGUAGE_CANTONESE) {
    throw UsageError("--default-tone does not apply to " + LanguageName(language));
  }
  const Tones& tones = TonesOf(language);
  const std::optional<int> digit = ParseNumber<int>(tone);
  if (!digit || *digit < tones.first || *digit > tones.last) {
    throw UsageError("--default-tone: " + Quoted(tone) +
                     " is not a tone: " + DescribeTones(language));
  }
  return *digit;
}

Source DefaultSource(int language, bool strict) {
  for (const OwnNotation<Source>& own : kOwnSources) {
    if (own.language == language && !strict) return own.notation;
  }
  return SyllableLanguage(language) ? Source::kText : Source::kPronunciation;
}

void CheckSource(int language, Source from) {
  CheckOwner(language, from, kOwnSources);
  if (HasCodes(from) && !SyllableLanguage(language)) {
    throw UsageError(LanguageName(language) +
                     " has no syllable table: use --from arpabet, pronunciation or ids");
  }
}

void CheckConversion(const Conversion& conversion) {
  CheckSource(conversion.language, conversion.from);
  CheckOwner(conversion.language, conversion.to, kOwnTargets);
  if (!NeedsCodes(conversion.to)) return;
  if (!SyllableLanguage(conversion.language)) {
    throw UsageError(
        LanguageName(conversion.language) +
        " has no syllable table: use --to phones, toned-phones, ids, pronunciation or arpabet");
  }
  if (!HasCodes(conversion.from)) {
    throw UsageError(
        "phones do not determine their syllable (Mandarin \"yo\" and \"you\" sound alike): use "
        "--from pinyin, jyutping, text or codes");
  }
}

int ServingLanguage(const Conversion& conversion) {
  if (HasCodes(conversion.from)) {
    return SyllableLanguage(conversion.language).value_or(conversion.language);
  }
  return PronunciationLanguage(conversion.language);
}

}  // namespace qeo::tool
