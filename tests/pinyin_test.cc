// py2ph, romanised text to syllables with phones, and the folding of tones that it applies.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {
namespace {

using namespace std::string_literals;

const std::string kNul(1, '\0');

struct ToneCase {
  int tone;
  int other;  // every language but Cantonese
  int cantonese;
};

// The folding rule by single steps: towards the range until the tone is in it.
int FoldStepByStep(int tone, int top) {
  if (tone >= 1 && tone <= top) return tone;
  while (tone >= top) tone -= top;
  while (tone <= -top) tone += top;
  return tone == 0 ? top : tone;
}

}  // namespace

TEST(ToneAdaptation, RowByRow) {
  // clang-format off
  const ToneCase cases[] = {
      // tone  other  Cantonese
      {-128,    -3,        -2},
      { -12,    -2,        -5},
      { -10,     5,        -3},
      {  -8,    -3,        -1},
      {  -7,    -2,         7},
      {  -6,    -1,        -6},
      {  -5,     5,        -5},
      {  -1,    -1,        -1},
      {   0,     5,         7},
      {   1,     1,         1},
      {   2,     2,         2},
      {   3,     3,         3},
      {   4,     4,         4},
      {   5,     5,         5},
      {   6,     1,         6},
      {   7,     2,         7},
      {   8,     3,         1},
      {   9,     4,         2},
      {  10,     5,         3},
      {  14,     4,         7},
      {  15,     5,         1},
      { 127,     2,         1},
  };
  // clang-format on
  for (const ToneCase& c : cases) {
    const auto tone = static_cast<signed char>(c.tone);
    EXPECT_EQ(ToneAdaptation(10000, tone), c.other) << c.tone;
    EXPECT_EQ(ToneAdaptation(10001, tone), c.cantonese) << c.tone;
    EXPECT_EQ(ToneAdaptation(20000, tone), c.other) << c.tone;
    for (const int language : UnregisteredIds()) {
      EXPECT_EQ(ToneAdaptation(language, tone), c.other) << c.tone << ' ' << language;
    }
  }
}

TEST(ToneAdaptation, NegativeTonesKeepTheirSign) {
  // clang-format off
  const ToneCase cases[] = {
      {-1, -1, -1},
      {-2, -2, -2},
      {-3, -3, -3},
      {-4, -4, -4},
      {-9, -4, -2},
      {-11, -1, -4},
      {-13, -3, -6},
      {-14, -4, 7},
      {-15, 5, -1},
      {-127, -2, -1},
  };
  // clang-format on
  for (const ToneCase& c : cases) {
    const auto tone = static_cast<signed char>(c.tone);
    EXPECT_EQ(ToneAdaptation(LANGUAGE_MANDARIN, tone), c.other) << c.tone;
    EXPECT_EQ(ToneAdaptation(LANGUAGE_CANTONESE, tone), c.cantonese) << c.tone;
  }
}

TEST(ToneAdaptation, AllTones) {
  for (int tone = -128; tone <= 127; ++tone) {
    const auto narrow = static_cast<signed char>(tone);
    EXPECT_EQ(ToneAdaptation(LANGUAGE_CANTONESE, narrow), FoldStepByStep(tone, 7)) << tone;
    EXPECT_EQ(ToneAdaptation(LANGUAGE_MANDARIN, narrow), FoldStepByStep(tone, 5)) << tone;
    EXPECT_EQ(ToneAdaptation(LANGUAGE_AMERICAN_ENGLISH, narrow), FoldStepByStep(tone, 5)) << tone;
    EXPECT_EQ(ToneAdaptation(12345, narrow), FoldStepByStep(tone, 5)) << tone;
  }
}

struct Py2PhCase {
  int language;
  std::string text;
  int result;
  SpelledList syllables;
};

template <std::size_t N>
void ExpectSyllables(const Py2PhCase (&cases)[N]) {
  for (const Py2PhCase& c : cases) {
    SCOPED_TRACE(std::to_string(c.language) + ", " + testing::PrintToString(c.text));
    std::vector<SyllableInfo> syllables = {StaleSyllable(), StaleSyllable(), StaleSyllable()};
    EXPECT_EQ(py2ph(c.language, c.text, syllables), c.result);
    EXPECT_EQ(Spell(syllables), c.syllables);
  }
}

TEST(Py2Ph, Syllables) {
  // language, text, result, then a row for each syllable: language, phones, code, tone, raw_tone
  const Py2PhCase cases[] = {
      {10000, "ni3hao3", 0, {{10000, "n i", 2243, 3, 0}, {10000, "h ao", 1173, 3, 0}}},
      {10000, "NiHao", 0, {{10000, "n i", 2245, 5, 0}, {10000, "h ao", 1175, 5, 0}}},
      {10000, "Ni3hao", 0, {{10000, "n i", 2243, 3, 0}, {10000, "h ao", 1175, 5, 0}}},
      {10000, "nihao", 0, {{10000, "n i", 2245, 5, 0}, {10000, "h ao", 1175, 5, 0}}},
      {10000, " ni3\thao3\r\n", 0, {{10000, "n i", 2243, 3, 0}, {10000, "h ao", 1173, 3, 0}}},
      {10000, "ni3\vhao3\f", 0, {{10000, "n i", 2243, 3, 0}, {10000, "h ao", 1173, 3, 0}}},
      {10000, "Xi'an", 0, {{10000, "x i", 3515, 5, 0}, {10000, "an", 25, 5, 0}}},
      {10000, "xi`an", 0, {{10000, "x i", 3515, 5, 0}, {10000, "an", 25, 5, 0}}},
      {10000, "xian", 0, {{10000, "x ian", 3535, 5, 0}}},
      {10000, "fangan", 0, {{10000, "f ang", 875, 5, 0}, {10000, "an", 25, 5, 0}}},
      {10000, "jiu3", 0, {{10000, "j iou", 1433, 3, 0}}},
      {10000, "lv4", 0, {{10000, "l v", 1884, 4, 0}}},
      {10000, "ju1", 0, {{10000, "j v", 1441, 1, 0}}},
      {10000, "shi4", 0, {{10000, "sh iii", 3054, 4, 0}}},
      {10000, "si4", 0, {{10000, "s ii", 3154, 4, 0}}},
      {10000, "zuo4", 0, {{10000, "z uo", 4164, 4, 0}}},
      {10001, "nei5hou2", 0, {{10001, "n ei", 4035, 5, 0}, {10001, "h ou", 2382, 2, 0}}},
      {10001, "m4goi1", 0, {{10001, "m", 3574, 4, 0}, {10001, "g oi", 1751, 1, 0}}},
      {10001, "wu4", 0, {{10001, "uu", 5724, 4, 0}}},
      {10001, "gwaa3", 0, {{10001, "gw aa", 1883, 3, 0}}},
      {10001, "ng5", 0, {{10001, "ng", 4055, 5, 0}}},
      {10001, "zyut6", 0, {{10001, "z yut", 6186, 6, 0}}},
  };
  ExpectSyllables(cases);
}

TEST(Py2Ph, OnePhoneOrNone) {
  const Py2PhCase cases[] = {
      {10000, "a", 0, {{10000, "a", 5, 5, 0}}},
      {10000, "er2", 0, {{10000, "er", 842, 2, 0}}},
      {10000, "m2", 0, {{10000, "m", 1932, 2, 0}}},
      {10000, "n4", 0, {{10000, "n", 2134, 4, 0}}},
      {10000, "hng5", 0, {{10000, "h", 1235, 5, 0}}},  // its final has no phone
      {10000, "hm5", 0, {{10000, "h m", 1225, 5, 0}}},
      {10000, "ng4", 0, {{10000, "", 2234, 4, 0}}},
      {10000, "E1", 0, {{10000, "e", 791, 1, 0}}},  // "e", never the row "E"
      {10001, "aa", 0, {{10001, "aa", 7, 7, 0}}},
      {10001, "m", 0, {{10001, "m", 3577, 7, 0}}},
  };
  ExpectSyllables(cases);
}

TEST(Py2Ph, TonesAreFolded) {
  const Py2PhCase cases[] = {
      {10000, "ni", 0, {{10000, "n i", 2245, 5, 0}}},
      {10000, "ni0", 0, {{10000, "n i", 2245, 5, 0}}},
      {10000, "ni1", 0, {{10000, "n i", 2241, 1, 0}}},
      {10000, "ni5", 0, {{10000, "n i", 2245, 5, 0}}},
      {10000, "ni6", 0, {{10000, "n i", 2241, 1, 0}}},
      {10000, "ni7", 0, {{10000, "n i", 2242, 2, 0}}},
      {10000, "ni8", 0, {{10000, "n i", 2243, 3, 0}}},
      {10000, "ni9", 0, {{10000, "n i", 2244, 4, 0}}},
      {10001, "ngo", 0, {{10001, "ng o", 4237, 7, 0}}},
      {10001, "ngo0", 0, {{10001, "ng o", 4237, 7, 0}}},
      {10001, "ngo1", 0, {{10001, "ng o", 4231, 1, 0}}},
      {10001, "ngo6", 0, {{10001, "ng o", 4236, 6, 0}}},
      {10001, "ngo7", 0, {{10001, "ng o", 4237, 7, 0}}},
      {10001, "ngo8", 0, {{10001, "ng o", 4231, 1, 0}}},
      {10001, "ngo9", 0, {{10001, "ng o", 4232, 2, 0}}},
  };
  ExpectSyllables(cases);
}

TEST(Py2Ph, OneUnknownPieceFailsTheText) {
  const Py2PhCase cases[] = {
      {10000, "ni3 xyz3", -1, {}},
      {10000, "xyz3 ni3", -1, {}},
      {10000, "ni3hao3xyz3ma1", -1, {}},
      {10000, "ni33", -1, {}},  // the second digit is a piece of its own
      {10000, "3ni", -1, {}},
      {10000, "5", -1, {}},  // one byte: no tone is taken off
      {10000, "12", -1, {}},
      {10000, "NI3", -1, {}},
      {10000, "zhuangs1", -1, {}},
      {10000, "jyut6", -1, {}},
      {10000, "-3", -1, {}},
      {10000, "ni- ", -1, {}},
      {10000, "Ni,Hao", -1, {}},
      {10000, "lü3", -1, {}},
      {10000, "nü3", -1, {}},
      {10000, "\xffni3", -1, {}},
      // NUL bytes are bytes: none of these is "ni3"
      {10000, "ni" + kNul + "3", -1, {}},
      {10000, "ni" + std::string(6, '\0') + "3", -1, {}},
      {10000, "\0ni3"s, -1, {}},
      {10000, "n\0i3"s, -1, {}},
      {10001, "ni3", -1, {}},
      {10001, "Ni3hao", -1, {}},
      {10001, "lv3", -1, {}},
      {20000, "a1", -1, {}},
      {20000, "ni3", -1, {}},
      {20000, "5", -1, {}},
  };
  ExpectSyllables(cases);
}

TEST(Py2Ph, NihaoWithOneDigitAtItsEndStaysUncutAndFails) {
  const Py2PhCase cases[] = {
      {10000, "nihao3", -1, {}},
      {10000, "Nihao3", -1, {}},
      {10000, "ni3 nihao3", -1, {}},
      {10001, "neihou2", -1, {}},
  };
  ExpectSyllables(cases);
}

TEST(Py2Ph, APieceWithOtherBytesIsPassedOnWholeAndFails) {
  const Py2PhCase cases[] = {
      {10000, "n-i3", -1, {}},
      {10000, "n-i ", -1, {}},
      {10000, "N-i", -1, {}},
      {10000, " n-i", -1, {}},
      {10000,
       "n-i",
       0,
       {{10000, "n", 2135, 5, 0}}},  // no separator, no piece: "n" by longest match
  };
  ExpectSyllables(cases);
}

TEST(Py2Ph, WhatCannotBeCutIsDroppedWithoutFailure) {
  const Py2PhCase cases[] = {
      {10000, "", 0, {}},
      {10000, "  \t\r\n\v\f'`", 0, {}},
      {10000, "xyz", 0, {}},
      {10000, "X", 0, {}},
      {10000, "你好", 0, {}},
      {10000, "\0"s, 0, {}},
      {10000, "hello", 0, {{10000, "h e", 1185, 5, 0}}},
      {10000, "ni3hello", 0, {{10000, "n i", 2243, 3, 0}, {10000, "h e", 1185, 5, 0}}},
      {10000, "ni3xyz", 0, {{10000, "n i", 2243, 3, 0}}},
      {10000, "ni3 -", 0, {{10000, "n i", 2243, 3, 0}}},
      {10000, "ni\0"s, 0, {{10000, "n i", 2245, 5, 0}}},
      {10000, "nī", 0, {{10000, "n", 2135, 5, 0}}},
      {10001, "nihao", 0, {}},
      {20000, "hello", 0, {}},
      {20000, "Hello World", 0, {}},
      {20000, "", 0, {}},
  };
  ExpectSyllables(cases);
}

TEST(Py2Ph, UnregisteredLanguagesAreServedByMandarin) {
  for (const int language : UnregisteredIds()) {
    const Py2PhCase cases[] = {
        {language, "ni3", 0, {{10000, "n i", 2243, 3, 0}}},
        {language, "ni", 0, {{10000, "n i", 2245, 5, 0}}},
        {language, "ni7", 0, {{10000, "n i", 2242, 2, 0}}},
        {language, "jyut6", -1, {}},
        {language, "", 0, {}},
    };
    ExpectSyllables(cases);
  }
}

// Every syllable of a language

class EveryChineseLanguage : public testing::TestWithParam<Language> {};
INSTANTIATE_TEST_SUITE_P(Py2Ph, EveryChineseLanguage, testing::Values(kMandarin, kCantonese),
                         LanguageName);

// The tone that each digit means; the last entry is for no digit.
constexpr int kMandarinTones[] = {5, 1, 2, 3, 4, 5, 1, 2, 3, 4, 5};
constexpr int kCantoneseTones[] = {7, 1, 2, 3, 4, 5, 6, 7, 1, 2, 7};

TEST_P(EveryChineseLanguage, EverySyllableWithEveryDigit) {
  const int id = GetParam().id;
  const auto& tones = id == LANGUAGE_CANTONESE ? kCantoneseTones : kMandarinTones;
  const std::vector<GoldenSyllable> golden = GetParam().syllables();
  ASSERT_EQ(golden.size(), static_cast<std::size_t>(GetParam().syllable_count));
  for (const GoldenSyllable& row : golden) {
    if (row.spelling == "E") continue;  // lower-cased before it is looked up
    std::vector<const PhoneInfo*> phones;
    if (row.initial_phone != kNoPhone) phones.push_back(GetPhoneInfoById(id, row.initial_phone));
    if (row.final_phone != kNoPhone) phones.push_back(GetPhoneInfoById(id, row.final_phone));
    for (int digit = 0; digit <= 10; ++digit) {
      const std::string text = row.spelling + (digit == 10 ? "" : std::to_string(digit));
      SCOPED_TRACE(text);
      std::vector<SyllableInfo> syllables = {StaleSyllable()};
      ASSERT_EQ(py2ph(id, text, syllables), 0);
      ASSERT_EQ(syllables.size(), 1U);
      EXPECT_EQ(syllables[0].language, id);
      EXPECT_EQ(syllables[0].phones, phones);
      EXPECT_EQ(syllables[0].tone, tones[digit]);
      EXPECT_EQ(syllables[0].code, static_cast<unsigned>(row.id * 10 + tones[digit]));
      EXPECT_EQ(syllables[0].raw_tone, 0);
    }
  }
}

TEST_P(EveryChineseLanguage, AllSyllablesInOneText) {
  std::string text;
  int count = 0;
  for (const GoldenSyllable& row : GetParam().syllables()) {
    if (row.spelling == "E") continue;
    text += row.spelling + "4";
    ++count;
  }
  std::vector<SyllableInfo> syllables = {StaleSyllable()};
  EXPECT_EQ(py2ph(GetParam().id, text, syllables), 0);
  EXPECT_EQ(static_cast<int>(syllables.size()), count);
  EXPECT_EQ(py2ph(GetParam().id, text + "xyz4", syllables), -1);
  EXPECT_TRUE(syllables.empty());
}

}  // namespace qeo::sp
