#ifndef PHONEME_PHONE_SET_BUILDER_H_
#define PHONEME_PHONE_SET_BUILDER_H_

// What the builders of the languages share: checks of their tables at compile time, and the filling
// of an SpMapping from them.

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "phoneme/name_index.h"
#include "phoneme/records.h"

namespace qeo::sp::internal {

inline constexpr int kNone = -1;

/// Index of the first row whose id is not its index or whose language is not `language`, or kNone.
template <std::size_t kCount>
constexpr int FirstMisplacedRow(const PhoneInfo (&rows)[kCount], int language) {
  for (std::size_t i = 0; i < kCount; ++i) {
    if (rows[i].id != static_cast<int>(i) || rows[i].language != language)
      return static_cast<int>(i);
  }
  return kNone;
}

/// Index of the first row whose type has no place there, or kNone: silence is row 0 and no other.
template <std::size_t kCount>
constexpr int FirstRowOfWrongType(const PhoneInfo (&rows)[kCount]) {
  for (std::size_t i = 0; i < kCount; ++i) {
    const bool is_silence = rows[i].type == PHONE_TYPE_SILENCE;
    const bool is_sound = rows[i].type == PHONE_TYPE_INITIAL || rows[i].type == PHONE_TYPE_FINAL;
    if (i == 0 ? !is_silence : !is_sound) return static_cast<int>(i);
  }
  return kNone;
}

/// Index of the first row whose name a NameIndex cannot hold, or kNone.
template <std::size_t kCount>
constexpr int FirstRowOfWrongName(const PhoneInfo (&rows)[kCount]) {
  for (std::size_t i = 0; i < kCount; ++i) {
    const std::string_view name = rows[i].name;
    if (name.empty() || name.size() > NameIndex::kMaxNameLength) return static_cast<int>(i);
  }
  return kNone;
}

/// Points `mapping` at a phone table and maps each name to the first row that carries it.
template <std::size_t kCount>
void AddPhones(const PhoneInfo (&rows)[kCount], SpMapping& mapping) {
  mapping.phone_list = rows;
  mapping.phone_count = kCount;
  for (const PhoneInfo& row : rows) mapping.phone_map.try_emplace(row.name, &row);
}

/// The phone called `name`, null for "". The subscript enters a name that no row carries with a
/// null value, so that such a name is known and yet has no phone.
inline const PhoneInfo* ResolvePhone(const char* name, SpMapping& mapping) {
  if (*name == '\0') return nullptr;
  return mapping.phone_map[name];
}

/// Points `mapping` at a syllable table, after AddPhones, and resolves every syllable's phones.
template <std::size_t kCount>
void AddSyllables(PinyinInfo (&rows)[kCount], SpMapping& mapping) {
  mapping.pinyin_list = rows;
  mapping.pinyin_count = kCount;
  for (PinyinInfo& row : rows) {
    row.initial_phone = ResolvePhone(row.initial, mapping);
    row.final_phone = ResolvePhone(row.final, mapping);
    std::string spelling(row.pinyin);
    if (spelling.size() > mapping.max_pinyin_length) mapping.max_pinyin_length = spelling.size();
    mapping.pinyin_map.try_emplace(std::move(spelling), &row);
  }
}

}  // namespace qeo::sp::internal

#endif  // PHONEME_PHONE_SET_BUILDER_H_
