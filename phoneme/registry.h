#ifndef PHONEME_REGISTRY_H_
#define PHONEME_REGISTRY_H_

// The one registry of languages: complete before `main`, read-only from then on, freed at exit.

#include <cstddef>
#include <map>
#include <vector>

#include "phoneme/name_index.h"
#include "phoneme/records.h"

namespace qeo::sp {

/// The languages by id, as their builders fill them.
class SpInfoTable {
 public:
  SpInfoTable();

  const std::map<int, SpMapping>& languages() const { return languages_; }

 private:
  std::map<int, SpMapping> languages_;
};

namespace internal {

/// A syllable's initial and final, those that it has.
struct RowPhones {
  const PhoneInfo* phones[2];
  std::size_t count;

  const PhoneInfo* const* begin() const { return phones; }
  const PhoneInfo* const* end() const { return phones + count; }
};

/// One registered language with what the conversions ask of it all the time.
struct Language {
  int id;
  signed char top_tone;               // tones fold into 1 to this
  const SpMapping* mapping;           // in the registry's SpInfoTable
  NameIndex phones;                   // phone_map
  NameIndex syllables;                // pinyin_map
  std::vector<RowPhones> row_phones;  // pinyin_list's, close together for the processor's cache
};

/// The one registry: every language, in start-up order.
class Registry {
 public:
  /// Built by its first user, before `main` at the latest; whoever asks in a static initialiser
  /// finds it complete. In the header, because a call for every syllable code cost time.
  static const Registry& Get() {
    static const Registry registry;
    return registry;
  }

  /// The language `id`, or `fallback`, which is registered, in its place.
  const Language& Find(int id, int fallback) const {
    const Language* stand_in = &languages_.front();
    for (const Language& language : languages_) {
      if (language.id == id) return language;
      if (language.id == fallback) stand_in = &language;
    }
    return *stand_in;
  }

 private:
  Registry();

  SpInfoTable global_sp_table_;
  std::vector<Language> languages_;
};

inline const Language& FindLanguage(int id, int fallback) {
  return Registry::Get().Find(id, fallback);
}

/// The language of an id for each Conversion: the one that is registered, or its stand-in.
inline const Language& SyllableLanguage(int id) { return FindLanguage(id, LANGUAGE_MANDARIN); }
inline const Language& PronunciationLanguage(int id) {
  return FindLanguage(id, LANGUAGE_AMERICAN_ENGLISH);
}

/// The phone lookups alone serve an unregistered language with one of its family.
inline const Language& PhoneLanguage(int id) {
  constexpr int kFirstEnglishVariant = 20000;
  constexpr int kLastEnglishVariant = 29999;
  const bool is_english = id >= kFirstEnglishVariant && id <= kLastEnglishVariant;
  return is_english ? PronunciationLanguage(id) : SyllableLanguage(id);
}

}  // namespace internal
}  // namespace qeo::sp

#endif  // PHONEME_REGISTRY_H_
