// The names of languages. They are part of the phone sets, so that no language is without them, and
// constant data, so that they can be asked at any time.

#include "phoneme/phone_sets.h"

#include <algorithm>

#include "phoneme/ascii.h"
#include "phoneme/phone_set_record.h"

namespace qeo::sp {

using namespace internal;

namespace {

char Folded(char c) { return c == '_' ? '-' : ascii::ToSmall(c); }

bool IsSameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [](char x, char y) { return Folded(x) == Folded(y); });
}

}  // namespace

std::vector<LanguageNames> Languages() {
  std::vector<LanguageNames> languages;
  for (const PhoneSet* set : kPhoneSets) {
    LanguageNames& names = languages.emplace_back();
    names.id = set->language;
    names.name = set->name;
    for (const std::string_view code : set->codes) {
      if (!code.empty()) names.codes.push_back(code);
    }
  }
  return languages;
}

std::optional<std::int32_t> LanguageOfName(std::string_view name) {
  if (name.empty()) return std::nullopt;  // as the places after the last code are
  for (const PhoneSet* set : kPhoneSets) {
    const bool is_code =
        std::any_of(std::begin(set->codes), std::end(set->codes),
                    [name](std::string_view code) { return IsSameName(name, code); });
    if (is_code || IsSameName(name, set->name)) return set->language;
  }
  return std::nullopt;
}

Tones TonesOf(int language) {
  for (const PhoneSet* set : kPhoneSets) {
    if (set->language == language) return set->tones;
  }
  return american_english_phone_set.tones;
}

std::string KnownLanguages() {
  std::string known;
  for (const LanguageNames& language : Languages()) {
    known.append(known.empty() ? "" : ", ").append(language.name);
    const char* separator = " (";
    for (const std::string_view code : language.codes) {
      known.append(separator).append(code);
      separator = ", ";
    }
    known += ')';
  }
  return known;
}

}  // namespace qeo::sp
