// Phone-id sequences: bytes to syllables, and what a single byte is.

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {
namespace {

using Bytes = std::vector<unsigned char>;

struct Ph2PhCase {
  int language;
  Bytes phone_ids;
  int result;
  SpelledList syllables;
};

template <std::size_t N>
void ExpectSyllables(const Ph2PhCase (&cases)[N]) {
  for (const Ph2PhCase& c : cases) {
    SCOPED_TRACE(std::to_string(c.language) + ", " + testing::PrintToString(c.phone_ids));
    std::vector<SyllableInfo> syllables = {StaleSyllable(), StaleSyllable(), StaleSyllable()};
    EXPECT_EQ(ph2ph(c.language, c.phone_ids, syllables), c.result);
    EXPECT_EQ(Spell(syllables), c.syllables);
  }
}

}  // namespace

TEST(Ph2Ph, RowByRow) {
  // language, bytes, result, then a row for each syllable: language, phones, code, tone, raw_tone
  const Ph2PhCase cases[] = {
      {10000, {20, 35, 3}, 0, {{10000, "m i", 0, 0, 3}}},
      {10000, {24, 35, 3, 28, 43, 3}, 0, {{10000, "n i", 0, 0, 3}, {10000, "h ao", 0, 0, 3}}},
      {10000, {24, 35, 0}, 0, {{10000, "n i", 0, 0, 0}}},  // the digit is not folded
      {10000, {24, 35, 9}, 0, {{10000, "n i", 0, 0, 9}}},
      {10000, {70, 1}, 0, {{10000, "ueng", 0, 0, 1}}},
      {10001, {114, 6}, -1, {}},
      {10001, {104, 6}, 0, {{10001, "uut", 0, 0, 6}}},
      {10001, {17, 64, 5}, 0, {{10001, "n o", 0, 0, 5}}},
      {20000, {33, 13, 0, 36, 23, 1}, 0, {{20000, "hh ah", 0, 0, 0}, {20000, "l ow", 0, 0, 1}}},
      {20000, {50, 2}, 0, {{20000, "zh", 0, 0, 2}}},
      // any phone may be anywhere, silence included
      {10000, {10, 0}, 0, {{10000, "sil", 0, 0, 0}}},
      {10000, {10, 10, 35, 24, 10, 1}, 0, {{10000, "sil sil i n sil", 0, 0, 1}}},
      {20000, {11, 12, 26, 2}, 0, {{20000, "aa ae uw", 0, 0, 2}}},
      // a closing byte without phones is a syllable without phones
      {10000, {20, 3, 4}, 0, {{10000, "m", 0, 0, 3}, {10000, "", 0, 0, 4}}},
      {10000, {7}, 0, {{10000, "", 0, 0, 7}}},
      {10000, {0, 0}, 0, {{10000, "", 0, 0, 0}, {10000, "", 0, 0, 0}}},
      {10000, {9, 24, 35, 3}, 0, {{10000, "", 0, 0, 9}, {10000, "n i", 0, 0, 3}}},
      // what follows the last closing byte is dropped
      {10000, {20, 35}, 0, {}},
      {10000, {20}, 0, {}},
      {10000, {24, 35, 3, 28, 43}, 0, {{10000, "n i", 0, 0, 3}}},
      {10000, {}, 0, {}},
      {20000, {}, 0, {}},
      // a byte that names no phone fails the sequence at any place
      {10000, {71, 3}, -1, {}},
      {10000, {24, 35, 3, 71}, -1, {}},
      {10000, {24, 35, 3, 28, 43, 3, 255}, -1, {}},
      {10001, {71, 3}, 0, {{10001, "u", 0, 0, 3}}},
      {10001, {105, 3}, -1, {}},
      {20000, {51, 3}, -1, {}},
      {20000, {71, 3}, -1, {}},
  };
  ExpectSyllables(cases);
}

TEST(Ph2Ph, TwoIouRowsAreTwoBytes) {
  std::vector<SyllableInfo> syllables;
  ASSERT_EQ(ph2ph(LANGUAGE_MANDARIN, {45, 1, 46, 2}, syllables), 0);
  EXPECT_EQ(Spell(syllables), (SpelledList{{10000, "iou", 0, 0, 1}, {10000, "iou", 0, 0, 2}}));
  EXPECT_EQ(syllables[0].phones[0]->id, 35);
  EXPECT_EQ(syllables[1].phones[0]->id, 36);
}

TEST(Ph2Ph, UnregisteredLanguagesAreServedByAmericanEnglish) {
  for (const int language : UnregisteredIds()) {
    const Ph2PhCase cases[] = {
        {language, {24, 35, 3}, 0, {{20000, "oy k", 0, 0, 3}}},
        {language, {50, 9}, 0, {{20000, "zh", 0, 0, 9}}},
        {language, {51, 9}, -1, {}},
        {language, {}, 0, {}},
    };
    ExpectSyllables(cases);
  }
}

// Syllables of many phones, each with a short one and an empty one after it.
TEST(Ph2Ph, LongSyllables) {
  for (const int count : {7, 8, 9, 15, 16, 17, 18, 31, 32, 33, 34, 47, 48, 49, 1000}) {
    SCOPED_TRACE(count);
    Bytes phone_ids;
    std::string names;
    for (int i = 0; i < count; ++i) {
      phone_ids.push_back(i % 2 == 0 ? 24 : 35);
      names += i % 2 == 0 ? "n " : "i ";
    }
    names.pop_back();  // the last blank
    const Bytes unfinished = phone_ids;
    phone_ids.insert(phone_ids.end(), {4, 32, 1, 2});
    std::vector<SyllableInfo> syllables;
    EXPECT_EQ(ph2ph(LANGUAGE_MANDARIN, phone_ids, syllables), 0);
    EXPECT_EQ(Spell(syllables),
              (SpelledList{{10000, names, 0, 0, 4}, {10000, "a", 0, 0, 1}, {10000, "", 0, 0, 2}}));
    EXPECT_EQ(ph2ph(LANGUAGE_MANDARIN, unfinished, syllables), 0);
    EXPECT_TRUE(syllables.empty());
  }
}

TEST(Ph2Ph, ManySyllables) {
  constexpr std::size_t kCount = 100'000;
  Bytes phone_ids;
  for (std::size_t i = 0; i < kCount; ++i) phone_ids.insert(phone_ids.end(), {24, 35, 3});
  std::vector<SyllableInfo> syllables;
  EXPECT_EQ(ph2ph(LANGUAGE_MANDARIN, phone_ids, syllables), 0);
  ASSERT_EQ(syllables.size(), kCount);
  for (const SyllableInfo& syllable : syllables) {
    ASSERT_EQ(Spell(syllable), (Spelled{10000, "n i", 0, 0, 3}));
  }
  phone_ids.push_back(255);
  EXPECT_EQ(ph2ph(LANGUAGE_MANDARIN, phone_ids, syllables), -1);
  EXPECT_TRUE(syllables.empty());
}

// All bytes

// What ph2ph answers for each byte alone and with a closing byte after it.
void ExpectAllBytes(int language, const Language& served_by) {
  const std::vector<GoldenPhone> phones = served_by.phones();
  ASSERT_EQ(phones.size(), static_cast<std::size_t>(served_by.phone_count));
  for (int value = 0; value < 256; ++value) {
    SCOPED_TRACE(value);
    const auto byte = static_cast<unsigned char>(value);
    SpelledList alone;
    SpelledList closed;
    const bool known = value < 10 + served_by.phone_count;
    if (value < 10) {
      alone = {{served_by.id, "", 0, 0, value}};
      closed = {{served_by.id, "", 0, 0, value}, {served_by.id, "", 0, 0, 4}};
    } else if (known) {
      closed = {{served_by.id, phones[static_cast<std::size_t>(value - 10)].name, 0, 0, 4}};
    }
    std::vector<SyllableInfo> syllables = {StaleSyllable()};
    EXPECT_EQ(ph2ph(language, {byte}, syllables), known ? 0 : -1);
    EXPECT_EQ(Spell(syllables), alone);
    EXPECT_EQ(ph2ph(language, {byte, 4}, syllables), known ? 0 : -1);
    EXPECT_EQ(Spell(syllables), closed);
    if (known && value >= 10) {
      EXPECT_EQ(syllables[0].phones[0], GetPhoneInfoById(served_by.id, value - 10));
    }
  }
}

class EveryLanguage : public testing::TestWithParam<Language> {};
INSTANTIATE_TEST_SUITE_P(Ph2Ph, EveryLanguage, testing::ValuesIn(kLanguages), LanguageName);

TEST_P(EveryLanguage, AllBytes) { ExpectAllBytes(GetParam().id, GetParam()); }

TEST(AllBytes, OfUnregisteredLanguagesAreServedByAmericanEnglish) {
  for (const int language : UnregisteredIds()) {
    SCOPED_TRACE(language);
    ExpectAllBytes(language, kAmericanEnglish);
  }
}

TEST(Ph2Tp, AllBytesWhateverTheLanguage) {
  std::vector<int> languages = UnregisteredIds();
  languages.insert(languages.end(), {10000, 10001, 20000});
  for (const int language : languages) {
    for (int value = 0; value < 256; ++value) {
      EXPECT_EQ(ph2tp(language, static_cast<unsigned char>(value)), value <= 9 ? 1 : 2)
          << language << ' ' << value;
    }
  }
}

}  // namespace qeo::sp
