// The Mandarin set: the rows that are off the rule, one by one, and the spelling rule against every
// other row. The tables as a whole are held against the golden rows in registry_test.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {
namespace {

bool OneOf(const std::string& text, const std::set<std::string>& set) {
  return set.count(text) != 0;
}

// The spelling of a final without an initial.
std::string SpellFinal(const std::string& final) {
  static const std::map<std::string, std::string> spellings = {
      {"i", "yi"},      {"in", "yin"},    {"ing", "ying"}, {"ia", "ya"},     {"ian", "yan"},
      {"iang", "yang"}, {"iao", "yao"},   {"ie", "ye"},    {"iong", "yong"}, {"iou", "you"},
      {"v", "yu"},      {"van", "yuan"},  {"ve", "yue"},   {"vn", "yun"},    {"u", "wu"},
      {"ua", "wa"},     {"uai", "wai"},   {"uan", "wan"},  {"uang", "wang"}, {"uei", "wei"},
      {"uen", "wen"},   {"ueng", "weng"}, {"uo", "wo"},
  };
  const auto found = spellings.find(final);
  return found == spellings.end() ? final : found->second;
}

// The spelling that an initial and a final have by rule.
std::string SpellByRule(const std::string& initial, const std::string& final) {
  if (initial.empty()) return SpellFinal(final);
  if (final == "iou") return initial + "iu";
  if (final == "uei") return initial + "ui";
  if (final == "uen") return initial + "un";
  if (final == "ii" && OneOf(initial, {"z", "c", "s"})) return initial + "i";
  if (final == "iii" && OneOf(initial, {"zh", "ch", "sh", "r"})) return initial + "i";
  if (final[0] == 'v' && OneOf(initial, {"j", "q", "x"})) return initial + "u" + final.substr(1);
  return initial + final;
}

const PinyinInfo& RowOf(const SpMapping& mapping, const std::string& spelling) {
  return *mapping.pinyin_map.at(spelling);
}

}  // namespace

TEST(MandarinPhones, TypesComeInThreeGroups) {
  const SpMapping mapping = kMandarin.mapping();
  ASSERT_EQ(mapping.phone_count, 61U);
  for (int id = 0; id < 61; ++id) {
    const int type = id == 0 ? 0 : id <= 21 ? 1 : 2;
    EXPECT_EQ(mapping.phone_list[id].type, type) << id;
  }
}

TEST(MandarinPhones, NoFeatures) {
  const SpMapping mapping = kMandarin.mapping();
  ASSERT_EQ(mapping.phone_count, 61U);
  const char zero[16] = {};
  for (int id = 0; id < 61; ++id) {
    EXPECT_EQ(std::memcmp(mapping.phone_list[id].feature, zero, sizeof zero), 0) << id;
  }
}

TEST(MandarinPhones, TwoIouRowsAndNoOtherNameTwice) {
  const SpMapping mapping = kMandarin.mapping();
  std::map<std::string, std::vector<int>> rows;
  for (std::uint64_t i = 0; i < mapping.phone_count; ++i) {
    rows[mapping.phone_list[i].name].push_back(mapping.phone_list[i].id);
  }
  EXPECT_EQ(rows.size(), 60U);
  EXPECT_EQ(rows["iou"], (std::vector<int>{35, 36}));
}

TEST(MandarinSyllables, TellingRows) {
  struct {
    int row;
    const char* pinyin;
    const char* initial;
    const char* final;
    int initial_phone;
    int final_phone;
  } const cases[] = {
      {80, "E", "", "E", kNoPhone, kNoPhone},
      {122, "hm", "h", "m", 18, 10},  // the final is the consonant "m"
      {123, "hng", "h", "ng", 18, kNoPhone},
      {193, "m", "m", "", 10, kNoPhone},
      {213, "n", "n", "", 14, kNoPhone},
      {223, "ng", "", "ng", kNoPhone, kNoPhone},
      {373, "yo", "", "iou", kNoPhone, 35},
      // on the rule
      {0, "a", "", "a", kNoPhone, 22},
      {79, "e", "", "e", kNoPhone, 24},
      {84, "er", "", "er", kNoPhone, 39},
      {143, "jiu", "j", "iou", 19, 35},
      {144, "ju", "j", "v", 19, 29},
      {147, "jun", "j", "vn", 19, 44},
      {175, "li", "l", "i", 15, 25},
      {188, "lv", "l", "v", 15, 29},
      {190, "lve", "l", "ve", 15, 38},
      {191, "lun", "l", "uen", 15, 43},
      {224, "ni", "n", "i", 14, 25},
      {236, "nv", "n", "v", 14, 29},
      {238, "nve", "n", "ve", 14, 38},
      {279, "ri", "r", "iii", 7, 27},
      {305, "shi", "sh", "iii", 3, 27},
      {315, "si", "s", "ii", 6, 26},
      {348, "weng", "", "ueng", kNoPhone, 60},
      {375, "you", "", "iou", kNoPhone, 35},
      {376, "yu", "", "v", kNoPhone, 29},
      {416, "zuo", "z", "uo", 4, 51},
  };
  const SpMapping mapping = kMandarin.mapping();
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

TEST(MandarinSyllables, TwoIouRowsAndEverySyllableUsesTheFirst) {
  const SpMapping mapping = kMandarin.mapping();
  std::vector<std::string> spellings;
  for (std::uint64_t i = 0; i < mapping.pinyin_count; ++i) {
    const PinyinInfo& syllable = mapping.pinyin_list[i];
    EXPECT_NE(syllable.final_phone, mapping.phone_list + 36) << syllable.pinyin;
    if (syllable.final_phone == mapping.phone_list + 35) spellings.emplace_back(syllable.pinyin);
  }
  EXPECT_EQ(spellings, (std::vector<std::string>{"diu", "jiu", "liu", "miu", "niu", "qiu", "xiu",
                                                 "yo", "you"}));
}

TEST(MandarinSyllables, YoAndYouDifferInTheirRowsOnly) {
  const SpMapping mapping = kMandarin.mapping();
  EXPECT_EQ(RowOf(mapping, "yo").id, 373);
  EXPECT_EQ(RowOf(mapping, "you").id, 375);
  EXPECT_EQ(RowOf(mapping, "yo").final_phone, RowOf(mapping, "you").final_phone);
  EXPECT_EQ(RowOf(mapping, "yo").initial_phone, RowOf(mapping, "you").initial_phone);
}

TEST(MandarinSyllables, NullNamesEAndNgStandInThePhoneMap) {
  const SpMapping mapping = kMandarin.mapping();
  std::vector<std::string> null_names;
  for (const auto& [name, phone] : mapping.phone_map) {
    if (phone == nullptr) null_names.push_back(name);
  }
  EXPECT_EQ(null_names, (std::vector<std::string>{"E", "ng"}));
  EXPECT_EQ(mapping.phone_map.size(), 62U);
}

TEST(MandarinSyllables, EveryOtherRowFollowsTheSpellingRule) {
  const std::set<std::string> off_the_rule = {"E", "hm", "hng", "m", "n", "ng", "yo"};
  const SpMapping mapping = kMandarin.mapping();
  int checked = 0;
  for (std::uint64_t i = 0; i < mapping.pinyin_count; ++i) {
    const PinyinInfo& syllable = mapping.pinyin_list[i];
    if (OneOf(syllable.pinyin, off_the_rule)) continue;
    EXPECT_EQ(syllable.pinyin, SpellByRule(syllable.initial, syllable.final));
    EXPECT_EQ(syllable.initial_phone == nullptr, syllable.initial[0] == '\0') << syllable.pinyin;
    ASSERT_NE(syllable.final_phone, nullptr) << syllable.pinyin;
    EXPECT_EQ(syllable.final_phone->type, PHONE_TYPE_FINAL) << syllable.pinyin;
    ++checked;
  }
  EXPECT_EQ(checked, 410);
}

TEST(MandarinSyllables, AlphabeticalButForEAndTheSyllablesWithV) {
  const SpMapping mapping = kMandarin.mapping();
  std::vector<std::string> steps_back;
  for (std::uint64_t i = 1; i < mapping.pinyin_count; ++i) {
    const std::string spelling = mapping.pinyin_list[i].pinyin;
    if (spelling < mapping.pinyin_list[i - 1].pinyin) steps_back.push_back(spelling);
  }
  EXPECT_EQ(steps_back, (std::vector<std::string>{"E", "luan", "lun", "nuan", "nuo"}));
}

TEST(MandarinSyllables, LongestSpellings) {
  const SpMapping mapping = kMandarin.mapping();
  std::vector<std::string> longest;
  for (const auto& [spelling, row] : mapping.pinyin_map) {
    if (spelling.size() >= 6) longest.push_back(row->pinyin);
  }
  EXPECT_EQ(longest, (std::vector<std::string>{"chuang", "shuang", "zhuang"}));
  EXPECT_EQ(mapping.max_pinyin_length, 6U);
}

}  // namespace qeo::sp
