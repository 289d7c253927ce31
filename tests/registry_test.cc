// The records, the registry that the builders fill, and the lookups of phones and features.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {

using namespace std::string_literals;

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

// Records

TEST(Records, Constants) {
  EXPECT_EQ(LANGUAGE_MANDARIN, 10000);
  EXPECT_EQ(LANGUAGE_CANTONESE, 10001);
  EXPECT_EQ(LANGUAGE_AMERICAN_ENGLISH, 20000);
  EXPECT_EQ(PHONE_TYPE_SILENCE, 0);
  EXPECT_EQ(PHONE_TYPE_INITIAL, 1);
  EXPECT_EQ(PHONE_TYPE_FINAL, 2);
}

TEST(Records, FieldsHaveTheirWidths) {
  EXPECT_TRUE((std::is_same_v<decltype(PhoneInfo::id), std::int32_t>));
  EXPECT_TRUE((std::is_same_v<decltype(PhoneInfo::language), std::int32_t>));
  EXPECT_TRUE((std::is_same_v<decltype(PhoneInfo::type), std::int32_t>));
  EXPECT_EQ(sizeof(PhoneInfo::name), 16U);
  EXPECT_EQ(sizeof(PhoneInfo::feature), 16U);
  EXPECT_TRUE((std::is_same_v<decltype(PinyinInfo::id), std::int32_t>));
  EXPECT_EQ(sizeof(PinyinInfo::pinyin), 16U);
  EXPECT_EQ(sizeof(PinyinInfo::initial), 16U);
  EXPECT_EQ(sizeof(PinyinInfo::final), 16U);
  EXPECT_TRUE((std::is_same_v<decltype(SpMapping::phone_count), std::uint64_t>));
  EXPECT_TRUE((std::is_same_v<decltype(SpMapping::pinyin_count), std::uint64_t>));
  EXPECT_TRUE((std::is_same_v<decltype(SpMapping::max_pinyin_length), std::uint64_t>));
  EXPECT_TRUE((std::is_same_v<decltype(SyllableInfo::language), std::int32_t>));
  EXPECT_TRUE((std::is_same_v<decltype(SyllableInfo::code), std::uint32_t>));
  EXPECT_TRUE((std::is_same_v<decltype(SyllableInfo::tone), std::int8_t>));
  EXPECT_TRUE((std::is_same_v<decltype(SyllableInfo::raw_tone), std::uint8_t>));
}

TEST(Records, FieldsStandInOrder) {
  EXPECT_EQ(offsetof(PhoneInfo, id), 0U);
  EXPECT_EQ(offsetof(PhoneInfo, language), 4U);
  EXPECT_EQ(offsetof(PhoneInfo, type), 8U);
  EXPECT_EQ(offsetof(PhoneInfo, name), 12U);
  EXPECT_EQ(offsetof(PhoneInfo, feature), 28U);
  EXPECT_EQ(offsetof(PinyinInfo, id), 0U);
  EXPECT_EQ(offsetof(PinyinInfo, pinyin), 4U);
  EXPECT_EQ(offsetof(PinyinInfo, initial), 20U);
  EXPECT_EQ(offsetof(PinyinInfo, final), 36U);
  EXPECT_LT(offsetof(PinyinInfo, final), offsetof(PinyinInfo, initial_phone));
  EXPECT_LT(offsetof(PinyinInfo, initial_phone), offsetof(PinyinInfo, final_phone));
  // the two tones are fields of their own, side by side
  const SyllableInfo syllable;
  EXPECT_EQ(reinterpret_cast<const char*>(&syllable.raw_tone),
            reinterpret_cast<const char*>(&syllable.tone) + 1);
}

TEST(Records, SyllableStartsEmpty) { EXPECT_EQ(Spell(SyllableInfo()), (Spelled{0, "", 0, 0, 0})); }

TEST(Records, MappingStartsEmpty) {
  const SpMapping mapping;
  EXPECT_EQ(mapping.phone_list, nullptr);
  EXPECT_EQ(mapping.phone_count, 0U);
  EXPECT_TRUE(mapping.phone_map.empty());
  EXPECT_EQ(mapping.pinyin_list, nullptr);
  EXPECT_EQ(mapping.pinyin_count, 0U);
  EXPECT_TRUE(mapping.pinyin_map.empty());
  EXPECT_EQ(mapping.max_pinyin_length, 0U);
}

TEST(Records, CopyOfASyllableIsIndependent) {
  SyllableInfo original;
  original.language = 10001;
  original.phones = {GetPhoneInfoById(10001, 12)};
  original.code = 65535;
  original.tone = -3;
  original.raw_tone = 200;
  const SyllableInfo copy = original;
  original.phones.push_back(GetPhoneInfoById(10001, 20));
  original.code = 0;
  original.tone = 0;
  original.raw_tone = 0;
  EXPECT_EQ(Spell(copy), (Spelled{10001, "h", 65535, -3, 200}));
}

// Every language

class EveryLanguage : public testing::TestWithParam<Language> {};
INSTANTIATE_TEST_SUITE_P(Registry, EveryLanguage, testing::ValuesIn(kLanguages), LanguageName);

TEST_P(EveryLanguage, BuilderFillsItsEntryAlone) {
  std::map<int, SpMapping> table;
  GetParam().initialize(table);
  ASSERT_EQ(table.size(), 1U);
  EXPECT_EQ(table.begin()->first, GetParam().id);
}

TEST_P(EveryLanguage, PhonesAreTheGoldenRows) {
  const SpMapping mapping = GetParam().mapping();
  const std::vector<GoldenPhone> golden = GetParam().phones();
  ASSERT_EQ(golden.size(), static_cast<std::size_t>(GetParam().phone_count));
  ASSERT_EQ(mapping.phone_count, golden.size());
  for (std::size_t i = 0; i < golden.size(); ++i) {
    const PhoneInfo& phone = mapping.phone_list[i];
    SCOPED_TRACE(golden[i].name);
    EXPECT_EQ(golden[i].id, static_cast<int>(i));
    EXPECT_EQ(phone.id, golden[i].id);
    EXPECT_EQ(phone.language, GetParam().id);
    EXPECT_EQ(phone.type, golden[i].type);
    EXPECT_EQ(phone.name, golden[i].name);
    EXPECT_EQ(phone.feature, golden[i].feature);
  }
}

TEST_P(EveryLanguage, NamesAndFeaturesArePaddedWithNul) {
  const SpMapping mapping = GetParam().mapping();
  const auto padded = [](const char(&field)[16]) {
    return std::all_of(field + std::strlen(field), std::end(field), [](char c) { return c == 0; });
  };
  ASSERT_EQ(mapping.phone_count, static_cast<std::uint64_t>(GetParam().phone_count));
  for (std::uint64_t i = 0; i < mapping.phone_count; ++i) {
    EXPECT_TRUE(padded(mapping.phone_list[i].name)) << i;
    EXPECT_TRUE(padded(mapping.phone_list[i].feature)) << i;
  }
  ASSERT_EQ(mapping.pinyin_count, static_cast<std::uint64_t>(GetParam().syllable_count));
  for (std::uint64_t i = 0; i < mapping.pinyin_count; ++i) {
    EXPECT_TRUE(padded(mapping.pinyin_list[i].pinyin)) << i;
    EXPECT_TRUE(padded(mapping.pinyin_list[i].initial)) << i;
    EXPECT_TRUE(padded(mapping.pinyin_list[i].final)) << i;
  }
}

TEST_P(EveryLanguage, RowZeroIsSilence) {
  const PhoneInfo& phone = GetParam().mapping().phone_list[0];
  EXPECT_STREQ(phone.name, "sil");
  EXPECT_EQ(phone.type, PHONE_TYPE_SILENCE);
}

TEST_P(EveryLanguage, SyllablesAreTheGoldenRows) {
  const SpMapping mapping = GetParam().mapping();
  const std::vector<GoldenSyllable> golden = GetParam().syllables();
  ASSERT_EQ(golden.size(), static_cast<std::size_t>(GetParam().syllable_count));
  ASSERT_EQ(mapping.pinyin_count, golden.size());
  const auto row = [&](int id) { return id == kNoPhone ? nullptr : mapping.phone_list + id; };
  for (std::size_t i = 0; i < golden.size(); ++i) {
    const PinyinInfo& syllable = mapping.pinyin_list[i];
    SCOPED_TRACE(golden[i].spelling);
    EXPECT_EQ(golden[i].id, static_cast<int>(i));
    EXPECT_EQ(syllable.id, golden[i].id);
    EXPECT_EQ(syllable.pinyin, golden[i].spelling);
    EXPECT_EQ(syllable.initial, golden[i].initial);
    EXPECT_EQ(syllable.final, golden[i].final);
    EXPECT_EQ(syllable.initial_phone, row(golden[i].initial_phone));
    EXPECT_EQ(syllable.final_phone, row(golden[i].final_phone));
  }
}

TEST_P(EveryLanguage, ResolvedPhonesCarryTheirNames) {
  const SpMapping mapping = GetParam().mapping();
  ASSERT_EQ(mapping.pinyin_count, static_cast<std::uint64_t>(GetParam().syllable_count));
  for (std::uint64_t i = 0; i < mapping.pinyin_count; ++i) {
    const PinyinInfo& syllable = mapping.pinyin_list[i];
    if (syllable.initial_phone != nullptr) {
      EXPECT_STREQ(syllable.initial_phone->name, syllable.initial);
    }
    if (syllable.final_phone != nullptr) {
      EXPECT_STREQ(syllable.final_phone->name, syllable.final);
    }
  }
}

TEST_P(EveryLanguage, PhoneMapHoldsTheFirstRowOfEachName) {
  const SpMapping mapping = GetParam().mapping();
  std::map<std::string, const PhoneInfo*> expected;
  for (const GoldenPhone& phone : GetParam().phones()) {
    expected.emplace(phone.name, mapping.phone_list + phone.id);
  }
  if (GetParam().id == LANGUAGE_MANDARIN) {
    expected["E"] = nullptr;
    expected["ng"] = nullptr;
  }
  EXPECT_EQ(mapping.phone_map, expected);
}

TEST_P(EveryLanguage, PinyinMapHoldsEverySpelling) {
  const SpMapping mapping = GetParam().mapping();
  std::map<std::string, const PinyinInfo*> expected;
  std::uint64_t longest = 0;
  for (const GoldenSyllable& syllable : GetParam().syllables()) {
    EXPECT_TRUE(expected.emplace(syllable.spelling, mapping.pinyin_list + syllable.id).second)
        << syllable.spelling << " is there twice";
    longest = std::max<std::uint64_t>(longest, syllable.spelling.size());
  }
  EXPECT_EQ(mapping.pinyin_map, expected);
  EXPECT_EQ(mapping.max_pinyin_length, longest);
}

TEST_P(EveryLanguage, BuilderCompletesAnEntryAndClearsNothing) {
  const PhoneInfo own_phone = {9, 9, 9, "own", ""};
  const PinyinInfo own_syllable = {9, "own", "", "", nullptr, nullptr};
  std::map<int, SpMapping> table;
  SpMapping& entry = table[GetParam().id];
  entry.phone_map["own"] = &own_phone;
  entry.phone_map["sil"] = &own_phone;  // no syllable uses "sil": the shared rows stay right
  entry.pinyin_map["own"] = &own_syllable;
  entry.pinyin_map["nei"] = &own_syllable;
  entry.max_pinyin_length = 9;
  table[5].phone_count = 3;  // an entry of another language

  GetParam().initialize(table);

  const SpMapping fresh = GetParam().mapping();
  EXPECT_EQ(entry.phone_list, fresh.phone_list);
  EXPECT_EQ(entry.phone_count, fresh.phone_count);
  EXPECT_EQ(entry.phone_map.size(), fresh.phone_map.size() + 1);
  EXPECT_EQ(entry.phone_map["own"], &own_phone);
  EXPECT_EQ(entry.phone_map["sil"], &own_phone);
  EXPECT_EQ(entry.pinyin_list, fresh.pinyin_list);
  EXPECT_EQ(entry.pinyin_count, fresh.pinyin_count);
  EXPECT_EQ(entry.pinyin_map.size(),
            fresh.pinyin_map.size() + (fresh.pinyin_map.count("nei") == 1 ? 1 : 2));
  EXPECT_EQ(entry.pinyin_map["own"], &own_syllable);
  EXPECT_EQ(entry.pinyin_map["nei"], &own_syllable);
  EXPECT_EQ(entry.max_pinyin_length, 9U);  // raised, never lowered
  EXPECT_EQ(table.size(), 2U);
  EXPECT_EQ(table[5].phone_count, 3U);
}

TEST_P(EveryLanguage, BuilderRaisesAShorterLength) {
  std::map<int, SpMapping> table;
  table[GetParam().id].max_pinyin_length = 2;
  GetParam().initialize(table);
  EXPECT_EQ(table[GetParam().id].max_pinyin_length, GetParam().syllable_count == 0 ? 2U : 6U);
}

TEST_P(EveryLanguage, EveryIdGivesItsRow) {
  const PhoneInfo* phone_list = GetParam().mapping().phone_list;
  for (int id = 0; id < GetParam().phone_count; ++id) {
    EXPECT_EQ(GetPhoneInfoById(GetParam().id, id), phone_list + id) << id;
  }
  for (const int id : {GetParam().phone_count, GetParam().phone_count + 1, 255, 65536, kMaxInt, -1,
                       -GetParam().phone_count, kMinInt}) {
    EXPECT_EQ(GetPhoneInfoById(GetParam().id, id), phone_list) << id;
  }
}

TEST_P(EveryLanguage, EveryNameGivesItsFirstRow) {
  const PhoneInfo* phone_list = GetParam().mapping().phone_list;
  std::map<std::string, int> first;
  for (const GoldenPhone& phone : GetParam().phones()) {
    const int id = first.emplace(phone.name, phone.id).first->second;
    EXPECT_EQ(GetPhoneInfoByDescription(GetParam().id, phone.name), phone_list + id) << phone.name;
  }
}

TEST_P(EveryLanguage, NamesNoRowCarriesGiveSilence) {
  const PhoneInfo* silence = GetParam().mapping().phone_list;
  // clang-format off
  const std::string names[] = {
      "", "nope", "SIL", "Sil", " sil", "sil ", "silsil", "si", "s il", "B", "AA", "aa1", "bb",
      "sil\0"s, "\0"s, "\0sil"s, "b\0"s, "e\0"s, "ü", "\xff", std::string(100, 'a'),
  };
  // clang-format on
  for (const std::string& name : names) {
    SCOPED_TRACE(testing::PrintToString(name));
    EXPECT_EQ(GetPhoneInfoByDescription(GetParam().id, name), silence);
    // a lookup does not enter the name
    EXPECT_EQ(GetPhoneInfoByDescription(GetParam().id, name), silence);
  }
}

TEST_P(EveryLanguage, EveryFeatureCharacter) {
  const std::vector<GoldenPhone> golden = GetParam().phones();
  ASSERT_EQ(golden.size(), static_cast<std::size_t>(GetParam().phone_count));
  for (const GoldenPhone& row : golden) {
    SCOPED_TRACE(row.name);
    const PhoneInfo* phone = GetPhoneInfoById(GetParam().id, row.id);
    for (int index = -20; index <= 40; ++index) {
      const bool inside = index >= 0 && index < static_cast<int>(row.feature.size());
      const char expected = inside ? row.feature[static_cast<std::size_t>(index)] : '\0';
      EXPECT_EQ(GetPhoneFeature(phone, index), expected) << index;
    }
    for (const int index : {255, 256, 257, 65536, 65537, kMaxInt, kMinInt, kMinInt + 1}) {
      EXPECT_EQ(GetPhoneFeature(phone, index), '\0') << index;
    }
  }
}

// Lookups, row by row

TEST(GetPhoneInfoById, ServesAnUnregisteredLanguageByItsRange) {
  struct {
    int language;
    int id;
    int served_by;
    const char* name;
  } const cases[] = {
      {10000, 0, 10000, "sil"},
      {10000, 8, 10000, "b"},
      {10000, 60, 10000, "ueng"},
      {10000, 61, 10000, "sil"},
      {10000, -1, 10000, "sil"},
      {10001, 94, 10001, "uut"},
      {10001, 95, 10001, "sil"},
      {10001, 15, 10001, "w"},
      {20000, 40, 20000, "zh"},
      {20000, 41, 20000, "sil"},
      {20000, kMaxInt, 20000, "sil"},
      {20000, kMinInt, 20000, "sil"},
      // 20000 to 29999: English
      {25000, 8, 20000, "er"},
      {20001, 8, 20000, "er"},
      {29999, 8, 20000, "er"},
      {29999, 41, 20000, "sil"},
      // every other id: Mandarin
      {12345, 8, 10000, "b"},
      {19999, 8, 10000, "b"},
      {30000, 8, 10000, "b"},
      {10002, 8, 10000, "b"},
      {9999, 8, 10000, "b"},
      {0, 8, 10000, "b"},
      {-5, 0, 10000, "sil"},
      {-5, 8, 10000, "b"},
      {-25000, 8, 10000, "b"},
      {kMaxInt, 8, 10000, "b"},
      {kMinInt, 8, 10000, "b"},
      {12345, 61, 10000, "sil"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.language) + ", " + std::to_string(c.id));
    const PhoneInfo* phone = GetPhoneInfoById(c.language, c.id);
    ASSERT_NE(phone, nullptr);
    EXPECT_EQ(phone->language, c.served_by);
    EXPECT_STREQ(phone->name, c.name);
  }
}

TEST(GetPhoneInfoByDescription, FindsExactNames) {
  struct {
    int language;
    const char* name;
    int served_by;
    int id;
  } const cases[] = {
      {10000, "zh", 10000, 1},
      {10000, "b", 10000, 8},
      {10000, "ueng", 10000, 60},
      {10000, "m", 10000, 10},
      {10000, "aa", 10000, 0},  // no Mandarin name
      {10000, "e", 10000, 24},  // not "E"
      {10001, "ng", 10001, 11},
      {10001, "m", 10001, 3},
      {10001, "uut", 10001, 94},
      {10001, "E", 10001, 0},  // no null names but in Mandarin
      {10001, "zh", 10001, 0},
      // rows that no syllable uses stay reachable
      {10001, "w", 10001, 15},
      {10001, "eu", 10001, 39},
      {10001, "em", 10001, 40},
      {10001, "en", 10001, 41},
      {10001, "ep", 10001, 43},
      {10001, "et", 10001, 44},
      {20000, "aa", 20000, 1},
      {20000, "AA", 20000, 0},  // upper case is another name
      {20000, "ax", 20000, 6},
      {20000, "zh", 20000, 40},  // the English "zh"
      {20000, "ng", 20000, 29},
      {20000, "E", 20000, 0},
      {20000, "iou", 20000, 0},
      // unregistered languages
      {20005, "zh", 20000, 40},
      {29999, "aa", 20000, 1},
      {30000, "zh", 10000, 1},
      {19999, "zh", 10000, 1},
      {-1, "zh", 10000, 1},
      {12345, "nope", 10000, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.language) + ", " + c.name);
    const PhoneInfo* phone = GetPhoneInfoByDescription(c.language, c.name);
    ASSERT_NE(phone, nullptr);
    EXPECT_EQ(phone->language, c.served_by);
    EXPECT_EQ(phone->id, c.id);
  }
}

// Mandarin syllables name the finals "E" and "ng", which no phone carries.
TEST(GetPhoneInfoByDescription, NullNamesEAndNg) {
  for (const int language : {10000, 10002, 30000, 0, -1}) {
    EXPECT_EQ(GetPhoneInfoByDescription(language, "E"), nullptr) << language;
    EXPECT_EQ(GetPhoneInfoByDescription(language, "ng"), nullptr) << language;
    EXPECT_STREQ(GetPhoneInfoByDescription(language, "NG")->name, "sil") << language;
    EXPECT_STREQ(GetPhoneInfoByDescription(language, "E\0"s)->name, "sil") << language;
  }
}

TEST(GetPhoneInfoByDescription, TwoIouRowsAndTheNameMeansTheFirst) {
  const PhoneInfo* first = GetPhoneInfoById(10000, 35);
  const PhoneInfo* second = GetPhoneInfoById(10000, 36);
  EXPECT_STREQ(first->name, "iou");
  EXPECT_STREQ(second->name, "iou");
  EXPECT_EQ(first->id, 35);
  EXPECT_EQ(second->id, 36);
  EXPECT_EQ(GetPhoneInfoByDescription(10000, "iou"), first);
}

TEST(GetPhoneInfo, EveryUnregisteredIdIsServed) {
  for (const int language : kUnregisteredEnglish) {
    EXPECT_EQ(GetPhoneInfoById(language, 8), GetPhoneInfoById(20000, 8)) << language;
    EXPECT_EQ(GetPhoneInfoByDescription(language, "er"), GetPhoneInfoById(20000, 8)) << language;
  }
  for (const int language : kUnregisteredOther) {
    EXPECT_EQ(GetPhoneInfoById(language, 8), GetPhoneInfoById(10000, 8)) << language;
    EXPECT_EQ(GetPhoneInfoByDescription(language, "er"), GetPhoneInfoById(10000, 39)) << language;
  }
}

TEST(GetPhoneFeature, RowByRow) {
  // clang-format off
  struct {
    const char* name;
    int index;
    char result;
  } const cases[] = {
      {"aa", 0, '+'},
      {"aa", 1, 'l'},
      {"aa", 7, '0'},
      {"aa", 8, 0},
      {"aa", 15, 0},
      {"aa", 16, 0},
      {"aa", -1, 0},
      {"aa", kMaxInt, 0},
      {"sil", 0, '-'},
      {"sil", 1, '0'},
      {"sil", 2, '0'},
      {"sil", 3, '0'},
      {"sil", 4, '0'},
      {"sil", 5, '0'},
      {"sil", 6, '0'},
      {"sil", 7, '-'},
      {"b", 5, 's'},
      {"b", 6, 'l'},
      {"b", 7, '+'},
      {"iy", 1, 'l'},
      {"iy", 2, '1'},
      {"iy", 3, '1'},
      {"iy", 4, '-'},
      {"er", 5, 'r'},
      {"ax", 1, 'a'},
      {"hh", 6, 'g'},
      {"zh", kMinInt, 0},
  };
  // clang-format on
  for (const auto& c : cases) {
    const PhoneInfo* phone = GetPhoneInfoByDescription(20000, c.name);
    EXPECT_EQ(GetPhoneFeature(phone, c.index), c.result) << c.name << ' ' << c.index;
  }
}

}  // namespace qeo::sp
