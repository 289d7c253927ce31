// The Cantonese set: the telling rows one by one, and the spelling rule against every row. The
// tables as a whole are held against the golden rows in registry_test.

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {

TEST(CantonesePhones, TypesComeInThreeGroups) {
  const SpMapping mapping = kCantonese.mapping();
  ASSERT_EQ(mapping.phone_count, 95U);
  for (int id = 0; id < 95; ++id) {
    const int type = id == 0 ? 0 : id <= 19 ? 1 : 2;
    EXPECT_EQ(mapping.phone_list[id].type, type) << id;
  }
}

TEST(CantonesePhones, NoFeatures) {
  const SpMapping mapping = kCantonese.mapping();
  ASSERT_EQ(mapping.phone_count, 95U);
  const char zero[16] = {};
  for (int id = 0; id < 95; ++id) {
    EXPECT_EQ(std::memcmp(mapping.phone_list[id].feature, zero, sizeof zero), 0) << id;
  }
}

TEST(CantonesePhones, NoNameTwiceAndNoNullName) {
  const SpMapping mapping = kCantonese.mapping();
  EXPECT_EQ(mapping.phone_map.size(), 95U);
  for (const auto& [name, phone] : mapping.phone_map) {
    ASSERT_NE(phone, nullptr) << name;
    EXPECT_EQ(phone->name, name);
  }
}

TEST(CantonesePhones, TheInitialWAndFiveFinalsAreInNoSyllable) {
  const SpMapping mapping = kCantonese.mapping();
  std::set<const PhoneInfo*> used;
  for (std::uint64_t i = 0; i < mapping.pinyin_count; ++i) {
    used.insert(mapping.pinyin_list[i].initial_phone);
    used.insert(mapping.pinyin_list[i].final_phone);
  }
  std::vector<std::string> unused;
  for (std::uint64_t i = 0; i < mapping.phone_count; ++i) {
    if (used.count(mapping.phone_list + i) == 0) unused.emplace_back(mapping.phone_list[i].name);
  }
  EXPECT_EQ(unused, (std::vector<std::string>{"sil", "w", "eu", "em", "en", "ep", "et"}));
}

TEST(CantoneseSyllables, TellingRows) {
  struct {
    int row;
    const char* pinyin;
    const char* initial;
    const char* final;
    int initial_phone;
    int final_phone;
  } const cases[] = {
      // syllabic nasals
      {357, "m", "m", "", 3, kNoPhone},
      {405, "ng", "ng", "", 11, kNoPhone},
      // the longest initial that begins the syllable
      {406, "ngaa", "ng", "aa", 11, 20},
      {389, "naa", "n", "aa", 7, 20},
      {188, "gwaa", "gw", "aa", 13, 20},
      {144, "gaa", "g", "aa", 9, 20},
      {306, "kwaa", "kw", "aa", 14, 20},
      {618, "zyut", "z", "yut", 16, 75},
      // no initial
      {0, "aa", "", "aa", kNoPhone, 20},
      {124, "e", "", "e", kNoPhone, 37},
      {446, "o", "", "o", kNoPhone, 54},
      {555, "uk", "", "uk", kNoPhone, 66},
      {556, "ung", "", "ung", kNoPhone, 64},
      // w is part of the final
      {557, "waa", "", "uaa", kNoPhone, 76},
      {558, "waai", "", "uaai", kNoPhone, 77},
      {559, "waak", "", "uaak", kNoPhone, 78},
      {560, "waan", "", "uaan", kNoPhone, 79},
      {561, "waang", "", "uaang", kNoPhone, 80},
      {562, "waat", "", "uaat", kNoPhone, 81},
      {563, "wai", "", "uai", kNoPhone, 82},
      {564, "wan", "", "uan", kNoPhone, 83},
      {565, "wang", "", "uang", kNoPhone, 84},
      {566, "wat", "", "uat", kNoPhone, 85},
      {567, "wik", "", "uik", kNoPhone, 86},
      {568, "wing", "", "uing", kNoPhone, 87},
      {569, "wo", "", "uo", kNoPhone, 88},
      {570, "wok", "", "uok", kNoPhone, 89},
      {571, "wong", "", "uong", kNoPhone, 90},
      {572, "wu", "", "uu", kNoPhone, 91},
      {573, "wui", "", "uui", kNoPhone, 92},
      {574, "wun", "", "uun", kNoPhone, 93},
      {575, "wut", "", "uut", kNoPhone, 94},
  };
  const SpMapping mapping = kCantonese.mapping();
  const auto row = [&](int id) { return id == kNoPhone ? nullptr : mapping.phone_list + id; };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.pinyin);
    const PinyinInfo& syllable = mapping.pinyin_list[c.row];
    EXPECT_STREQ(syllable.pinyin, c.pinyin);
    EXPECT_STREQ(syllable.initial, c.initial);
    EXPECT_STREQ(syllable.final, c.final);
    EXPECT_EQ(syllable.initial_phone, row(c.initial_phone));
    EXPECT_EQ(syllable.final_phone, row(c.final_phone));
  }
}

TEST(CantoneseSyllables, TheSyllablesWithoutAnInitial) {
  const SpMapping mapping = kCantonese.mapping();
  std::vector<std::string> spellings;
  for (std::uint64_t i = 0; i < mapping.pinyin_count; ++i) {
    const PinyinInfo& syllable = mapping.pinyin_list[i];
    if (syllable.initial[0] == '\0' && syllable.pinyin[0] != 'w') {
      spellings.emplace_back(syllable.pinyin);
    }
  }
  EXPECT_EQ(spellings,
            (std::vector<std::string>{"aa", "aai", "aan", "aat", "aau", "ak", "am", "ang", "au",
                                      "e", "o", "oi", "on", "ong", "ou", "uk", "ung"}));
}

TEST(CantoneseSyllables, EveryRowIsItsInitialAndFinal) {
  const SpMapping mapping = kCantonese.mapping();
  ASSERT_EQ(mapping.pinyin_count, 619U);
  for (std::uint64_t i = 0; i < mapping.pinyin_count; ++i) {
    const PinyinInfo& syllable = mapping.pinyin_list[i];
    std::string spelling = std::string(syllable.initial) + syllable.final;
    if (syllable.pinyin[0] == 'w') spelling[0] = 'w';  // stored as a final with u
    EXPECT_EQ(syllable.pinyin, spelling);
    if (syllable.initial_phone != nullptr) {
      EXPECT_EQ(syllable.initial_phone->type, PHONE_TYPE_INITIAL);
    }
    if (syllable.final_phone != nullptr) {
      EXPECT_EQ(syllable.final_phone->type, PHONE_TYPE_FINAL);
    }
  }
}

TEST(CantoneseSyllables, AlphabeticalButForTheYuSyllablesOfGAndK) {
  const SpMapping mapping = kCantonese.mapping();
  std::vector<std::string> steps_back;
  for (std::uint64_t i = 1; i < mapping.pinyin_count; ++i) {
    const std::string spelling = mapping.pinyin_list[i].pinyin;
    if (spelling < mapping.pinyin_list[i - 1].pinyin) steps_back.push_back(spelling);
  }
  EXPECT_EQ(steps_back, (std::vector<std::string>{"gwaa", "kwaa"}));
}

TEST(CantoneseSyllables, LongestSpellings) {
  const SpMapping mapping = kCantonese.mapping();
  std::vector<std::string> longest;
  for (const auto& [spelling, row] : mapping.pinyin_map) {
    if (spelling.size() >= 6) longest.push_back(row->pinyin);
  }
  EXPECT_EQ(longest, (std::vector<std::string>{"gwaang", "kwaang", "ngaang"}));
  EXPECT_EQ(mapping.max_pinyin_length, 6U);
}

}  // namespace qeo::sp
