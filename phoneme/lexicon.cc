// The lexicon's phone classes and numbers. They read the tables themselves, row by row in id order,
// so they need no registry and work before it is built and after it is freed.

#include <cstring>

#include "phoneme/phone_set_record.h"
#include "phoneme/phoneme.h"

namespace qeo::sp {

using namespace internal;

namespace {

constexpr int kFirstEnglishNumber = 50;
constexpr int kUnknownEnglishNumber = 255;

constexpr int kClassSilence = 0;
constexpr int kClassUnknown = 1;
constexpr int kClassPhone = 2;

/// The first row called `name`, or null.
const PhoneInfo* FindRow(const PhoneSet& set, const char* name) {
  for (std::size_t i = 0; i < set.phone_count; ++i) {
    if (std::strcmp(set.phone_list[i].name, name) == 0) return &set.phone_list[i];
  }
  return nullptr;
}

/// The language `id` if it has syllables, else null.
const PhoneSet* FindSyllabicSet(int id) {
  for (const PhoneSet* set : kPhoneSets) {
    if (set->language == id && set->pinyin_count > 0) return set;
  }
  return nullptr;
}

}  // namespace

int LexiconEnPhoneTypeStr(const char* phone) {
  const PhoneInfo* row = FindRow(american_english_phone_set, phone);
  return row != nullptr ? row->type : PHONE_TYPE_SILENCE;
}

int LexiconEnPhoneId(const char* phone) {
  const PhoneInfo* row = FindRow(american_english_phone_set, phone);
  return row != nullptr ? kFirstEnglishNumber + row->id : kUnknownEnglishNumber;
}

int LexiconModulePhoneTypeStr(const char* phone, int language) {
  const PhoneSet* set = FindSyllabicSet(language);
  if (set == nullptr) return kClassSilence;
  if (std::strcmp(phone, "sil") == 0 || std::strcmp(phone, "ssil") == 0) return kClassSilence;
  return FindRow(*set, phone) != nullptr ? kClassPhone : kClassUnknown;
}

}  // namespace qeo::sp
