#include "tools/conversion/languages.h"

#include "tools/base/decimal.h"

namespace qeo::tool {

std::optional<int> ParseLanguage(std::string_view text) {
  const std::optional<int> id = sp::LanguageOfName(text);
  return id ? id : ParseNumber<int>(text);
}

std::string LanguageName(int id) {
  for (const sp::LanguageNames& language : sp::Languages()) {
    if (id == language.id) return std::string(language.name);
  }
  return std::to_string(id);
}

std::optional<int> SyllableLanguage(int id) {
  const int serving = sp::ServingLanguage(sp::Conversion::kSyllables, id);
  return sp::FindPhoneSet(serving)->pinyin_count > 0 ? std::optional<int>(serving) : std::nullopt;
}

int PhoneLanguage(int id) { return sp::ServingLanguage(sp::Conversion::kPhones, id); }

std::optional<std::string> FallbackNote(int requested, int serving) {
  if (requested == serving) return std::nullopt;
  return "note: language " + std::to_string(requested) + " is not known, " + LanguageName(serving) +
         " serves in its place";
}

}  // namespace qeo::tool
