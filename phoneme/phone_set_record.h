#ifndef PHONEME_PHONE_SET_RECORD_H_
#define PHONEME_PHONE_SET_RECORD_H_

// What a language's own source gives the rest of the library. The records are constant data, ready
// before any initialiser runs.

#include <cstddef>
#include <map>
#include <string_view>

#include "phoneme/records.h"

namespace qeo::sp::internal {

inline constexpr std::size_t kMostCodes = 5;  // of a language, see phoneme/phone_sets.h

struct PhoneSet {
  int language;
  std::string_view name;
  std::string_view codes[kMostCodes];  // empty ones follow the last
  signed char top_tone;                // tones fold into 1 to this
  Tones tones;                         // those that models have phones for
  const PhoneInfo* phone_list;         // the table, in id order
  std::size_t phone_count;
  std::size_t pinyin_count;  // 0 for a language without syllables
  void (*initialize)(std::map<int, SpMapping>& table);
};

extern const PhoneSet mandarin_phone_set;
extern const PhoneSet cantonese_phone_set;
extern const PhoneSet american_english_phone_set;

/// All languages, in start-up order.
inline constexpr const PhoneSet* kPhoneSets[] = {
    &mandarin_phone_set,
    &cantonese_phone_set,
    &american_english_phone_set,
};

}  // namespace qeo::sp::internal

#endif  // PHONEME_PHONE_SET_RECORD_H_
