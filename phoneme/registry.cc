// The start of the registry, and what it is asked for: phone sets, stand-ins, single phones.

#include "phoneme/registry.h"

#include <string>
#include <utility>
#include <vector>

#include "phoneme/phone_set_record.h"
#include "phoneme/phoneme.h"

namespace qeo::sp {

using namespace internal;

namespace {

template <typename Row>
NameIndex IndexOf(const std::map<std::string, const Row*>& rows) {
  std::vector<NameIndex::Name> names;
  names.reserve(rows.size());
  for (const auto& [name, row] : rows) {
    names.push_back({name, row == nullptr ? NameIndex::kNoRow : row->id});
  }
  return NameIndex(names);
}

std::vector<RowPhones> RowPhonesOf(const SpMapping& mapping) {
  std::vector<RowPhones> rows(mapping.pinyin_count);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const PinyinInfo& syllable = mapping.pinyin_list[i];
    for (const PhoneInfo* phone : {syllable.initial_phone, syllable.final_phone}) {
      if (phone != nullptr) rows[i].phones[rows[i].count++] = phone;
    }
  }
  return rows;
}

// Builds the registry before main, unless a static initialiser of the program has used it before.
[[maybe_unused]] const Registry& built_before_main = Registry::Get();

}  // namespace

SpInfoTable::SpInfoTable() {
  for (const PhoneSet* set : kPhoneSets) set->initialize(languages_);
}

Registry::Registry() {
  for (const PhoneSet* set : kPhoneSets) {
    const SpMapping& mapping = global_sp_table_.languages().at(set->language);
    languages_.push_back({set->language, set->top_tone, &mapping, IndexOf(mapping.phone_map),
                          IndexOf(mapping.pinyin_map), RowPhonesOf(mapping)});
  }
}

const PhoneInfo* GetPhoneInfoById(int language, int id) {
  const SpMapping& mapping = *PhoneLanguage(language).mapping;
  const bool in_table = id >= 0 && static_cast<std::uint64_t>(id) < mapping.phone_count;
  return mapping.phone_list + (in_table ? id : 0);
}

const PhoneInfo* GetPhoneInfoByDescription(int language, const std::string& name) {
  const SpMapping& mapping = *PhoneLanguage(language).mapping;
  const auto found = mapping.phone_map.find(name);
  return found != mapping.phone_map.end() ? found->second : mapping.phone_list;
}

const SpMapping* FindPhoneSet(int language) {
  const Language& found = SyllableLanguage(language);
  return found.id == language ? found.mapping : nullptr;
}

std::int32_t ServingLanguage(Conversion conversion, int language) {
  if (conversion == Conversion::kPhones) return PhoneLanguage(language).id;
  if (conversion == Conversion::kPronunciations) return PronunciationLanguage(language).id;
  return SyllableLanguage(language).id;
}

char GetPhoneFeature(const PhoneInfo* phone, int index) {
  constexpr int kFeatureSize = sizeof phone->feature;
  if (index < 0 || index >= kFeatureSize || phone->feature[0] == '\0') return '\0';
  return phone->feature[index];
}

}  // namespace qeo::sp
