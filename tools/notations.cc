#include "tools/notations.h"

#include "tools/languages.h"

namespace qeo::tool {
namespace {

bool NeedsCodes(Target to) { return to == Target::kSyllables || to == Target::kCodes; }

}  // namespace

Source DefaultSource(int language) {
  return SyllableLanguage(language) ? Source::kText : Source::kPronunciation;
}

std::string ConversionProblem(const Conversion& conversion) {
  const bool has_codes = HasCodes(conversion.from);
  const bool needs_codes = NeedsCodes(conversion.to);
  if ((has_codes || needs_codes) && !SyllableLanguage(conversion.language)) {
    return LanguageName(conversion.language) +
           " has no syllable table: use --from pronunciation or ids, and --to phones, ids or "
           "pronunciation";
  }
  if (needs_codes && !has_codes) {
    return "phones do not tell their syllable (Mandarin \"yo\" and \"you\" sound alike): syllables "
           "and codes are made --from text or codes";
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
