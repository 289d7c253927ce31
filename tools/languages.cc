#include "tools/languages.h"

#include <vector>

#include "tools/numbers.h"

namespace qeo::tool {

std::optional<int> ParseLanguage(std::string_view text) {
  const std::optional<int> id = sp::LanguageOfName(text);
  return id ? id : ParseNumber<int>(text);
}

std::string LanguageName(int id) {
  for (const sp::LanguageNames& language : sp::Languages()) {
    if (id == language.id) {
      return std::string(language.name);
    }
  }
  return std::to_string(id);
}

std::optional<int> SyllableLanguage(int id) {
  sp::SyllableInfo first_row;
  if (sp::code2ph(id, 0, first_row) != 0) {
    return std::nullopt;
  }
  return first_row.language;
}

int PronunciationLanguage(int id) {
  std::vector<sp::SyllableInfo> syllables;
  sp::ph2ph(id, {0}, syllables);  // a closing byte alone: one syllable, in every language
  return syllables.front().language;
}

int PhoneLanguage(int id) { return sp::GetPhoneInfoById(id, 0)->language; }

std::string FallbackNote(int requested, int serving) {
  if (requested == serving) {
    return "";
  }
  return "note: language " + std::to_string(requested) + " is not known, " + LanguageName(serving) +
         " serves in its place";
}

}  // namespace qeo::tool
