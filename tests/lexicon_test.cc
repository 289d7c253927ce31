// The lexicon's phone types, phone numbers and phone classes.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {

TEST(LexiconEn, TypeAndNumberOfEveryName) {
  // clang-format off
  struct {
    const char* name;
    int type;
    int number;
  } const cases[] = {
      {"sil", 0, 50},
      {"aa",  2, 51},
      {"ae",  2, 52},
      {"ah",  2, 53},
      {"ao",  2, 54},
      {"aw",  2, 55},
      {"ax",  2, 56},
      {"ay",  2, 57},
      {"er",  2, 58},
      {"eh",  2, 59},
      {"ey",  2, 60},
      {"ih",  2, 61},
      {"iy",  2, 62},
      {"ow",  2, 63},
      {"oy",  2, 64},
      {"uh",  2, 65},
      {"uw",  2, 66},
      {"b",   1, 67},
      {"ch",  1, 68},
      {"d",   1, 69},
      {"dh",  1, 70},
      {"f",   1, 71},
      {"g",   1, 72},
      {"hh",  1, 73},
      {"jh",  1, 74},
      {"k",   1, 75},
      {"l",   1, 76},
      {"m",   1, 77},
      {"n",   1, 78},
      {"ng",  1, 79},
      {"p",   1, 80},
      {"r",   1, 81},
      {"s",   1, 82},
      {"sh",  1, 83},
      {"t",   1, 84},
      {"th",  1, 85},
      {"v",   1, 86},
      {"w",   1, 87},
      {"y",   1, 88},
      {"z",   1, 89},
      {"zh",  1, 90},
  };
  // clang-format on
  EXPECT_EQ(std::size(cases), 41U);
  for (const auto& c : cases) {
    EXPECT_EQ(LexiconEnPhoneTypeStr(c.name), c.type) << c.name;
    EXPECT_EQ(LexiconEnPhoneId(c.name), c.number) << c.name;
  }
}

// The type is also that of silence; the number is not used for anything else.
TEST(LexiconEn, UnknownNamesHaveTypeZeroAndNumber255) {
  // clang-format off
  const std::string names[] = {
      "", "AA", "Sil", "SIL", "ssil", "x", "i", "iou", "E", "aa ", " aa", "aa1", "a", "aaa", "aa,",
      "si", "sill", "zhh", "h", "j", "c", "-", "0", "ü", "\xff", std::string(100, 'a'),
  };
  // clang-format on
  for (const std::string& name : names) {
    SCOPED_TRACE(testing::PrintToString(name));
    EXPECT_EQ(LexiconEnPhoneTypeStr(name.c_str()), 0);
    EXPECT_EQ(LexiconEnPhoneId(name.c_str()), 255);
  }
}

TEST(LexiconModule, Classes) {
  // clang-format off
  struct {
    const char* name;
    int language;
    int result;
  } const cases[] = {
      {"sil", 10000, 0},
      {"ssil", 10000, 0},  // known by name alone
      {"b", 10000, 2},  // the class of an initial is 2, not its type
      {"zh", 10000, 2},
      {"iou", 10000, 2},
      {"ueng", 10000, 2},
      {"ng", 10000, 1},  // no row carries these two
      {"E", 10000, 1},
      {"aa", 10000, 1},
      {"", 10000, 1},
      {"SIL", 10000, 1},
      {"sssil", 10000, 1},
      {"sil ", 10000, 1},
      {"ssill", 10000, 1},
      {"B", 10000, 1},
      {"ni", 10000, 1},
      {"ü", 10000, 1},
      {"sil", 10001, 0},
      {"ssil", 10001, 0},
      {"ng", 10001, 2},
      {"gw", 10001, 2},
      {"w", 10001, 2},  // in no syllable, but a row
      {"eu", 10001, 2},
      {"uut", 10001, 2},
      {"zh", 10001, 1},
      {"iou", 10001, 1},
      {"", 10001, 1},
      {"E", 10001, 1},
  };
  // clang-format on
  for (const auto& c : cases) {
    EXPECT_EQ(LexiconModulePhoneTypeStr(c.name, c.language), c.result)
        << c.language << ' ' << c.name;
  }
}

TEST(LexiconModule, EveryOtherLanguageGivesZero) {
  std::vector<int> languages = UnregisteredIds();
  languages.push_back(LANGUAGE_AMERICAN_ENGLISH);
  for (const int language : languages) {
    for (const char* name : {"sil", "ssil", "aa", "b", "zh", "E", "", "nope"}) {
      EXPECT_EQ(LexiconModulePhoneTypeStr(name, language), 0) << language << ' ' << name;
    }
  }
}

class EveryLanguage : public testing::TestWithParam<Language> {};
INSTANTIATE_TEST_SUITE_P(Lexicon, EveryLanguage, testing::ValuesIn(kLanguages), LanguageName);

TEST_P(EveryLanguage, EveryName) {
  const std::vector<GoldenPhone> golden = GetParam().phones();
  ASSERT_EQ(golden.size(), static_cast<std::size_t>(GetParam().phone_count));
  const bool english = GetParam().id == LANGUAGE_AMERICAN_ENGLISH;
  for (const GoldenPhone& row : golden) {
    SCOPED_TRACE(row.name);
    const int chinese_class = row.name == "sil" ? 0 : 2;
    EXPECT_EQ(LexiconModulePhoneTypeStr(row.name.c_str(), GetParam().id),
              english ? 0 : chinese_class);
    if (english) {
      EXPECT_EQ(LexiconEnPhoneTypeStr(row.name.c_str()), row.type);
      EXPECT_EQ(LexiconEnPhoneId(row.name.c_str()), 50 + row.id);
    }
  }
}

}  // namespace qeo::sp
