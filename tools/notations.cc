#include "tools/notations.h"

#include "tools/languages.h"

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

template <typename Notation, std::size_t kCount>
std::string OwnershipProblem(int language, Notation notation,
                             const OwnNotation<Notation> (&owned)[kCount]) {
  for (const OwnNotation<Notation>& own : owned) {
    if (own.notation == notation && own.language != language) {
      return std::string(own.name) + " is a notation of " + LanguageName(own.language) +
             ", not of " + LanguageName(language);
    }
  }
  return "";
}

}  // namespace

Source DefaultSource(int language, bool strict) {
  for (const OwnNotation<Source>& own : kOwnSources) {
    if (own.language == language && !strict) {
      return own.notation;
    }
  }
  return SyllableLanguage(language) ? Source::kText : Source::kPronunciation;
}

std::string SourceProblem(int language, Source from) {
  std::string problem = OwnershipProblem(language, from, kOwnSources);
  if (problem.empty() && HasCodes(from) && !SyllableLanguage(language)) {
    return LanguageName(language) +
           " has no syllable table: use --from arpabet, pronunciation or ids";
  }
  return problem;
}

std::string ConversionProblem(const Conversion& conversion) {
  std::string problem = SourceProblem(conversion.language, conversion.from);
  if (problem.empty()) {
    problem = OwnershipProblem(conversion.language, conversion.to, kOwnTargets);
  }
  if (!problem.empty() || !NeedsCodes(conversion.to)) {
    return problem;
  }
  if (!SyllableLanguage(conversion.language)) {
    return LanguageName(conversion.language) +
           " has no syllable table: use --to phones, toned-phones, ids, pronunciation or arpabet";
  }
  if (!HasCodes(conversion.from)) {
    return "phones do not tell their syllable (Mandarin \"yo\" and \"you\" sound alike): syllables "
           "and codes are made --from pinyin, jyutping, text or codes";
  }
  return "";
}

int ServingLanguage(const Conversion& conversion) {
  if (HasCodes(conversion.from)) {
    return SyllableLanguage(conversion.language).value_or(conversion.language);
  }
  return PronunciationLanguage(conversion.language);
}

}  // namespace qeo::tool
