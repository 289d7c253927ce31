// Pronunciation strings, to syllables and to phone-id sequences. Each row is held against both
// forms of pr2ph.

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

using Bytes = std::vector<unsigned char>;

// The bytes start as 7, 8: a call appends to what the caller put there, or drops it.
struct Pr2PhCase {
  int language;
  std::string text;
  int result;
  SpelledList syllables;
  Bytes phone_ids;
};

template <std::size_t N>
void ExpectBothForms(const Pr2PhCase (&cases)[N]) {
  for (const Pr2PhCase& c : cases) {
    SCOPED_TRACE(std::to_string(c.language) + ", " + testing::PrintToString(c.text));
    std::vector<SyllableInfo> syllables = {StaleSyllable(), StaleSyllable(), StaleSyllable()};
    EXPECT_EQ(pr2ph(c.language, c.text, syllables), c.result);
    EXPECT_EQ(Spell(syllables), c.syllables);
    Bytes phone_ids = {7, 8};
    EXPECT_EQ(pr2ph(c.language, c.text, phone_ids), c.result);
    EXPECT_EQ(phone_ids, c.phone_ids);
  }
}

}  // namespace

TEST(Pr2Ph, Syllables) {
  // language, text, result, a row for each syllable (language, phones, code, tone, raw_tone), bytes
  const Pr2PhCase cases[] = {
      {10000,
       "n i 3, h ao 3",
       0,
       {{10000, "n i", 0, 0, 3}, {10000, "h ao", 0, 0, 3}},
       {7, 8, 24, 35, 3, 28, 43, 3}},
      {20000,
       "hh ah 0, l ow 1",
       0,
       {{20000, "hh ah", 0, 0, 0}, {20000, "l ow", 0, 0, 1}},
       {7, 8, 33, 13, 0, 36, 23, 1}},
      {10001, "n ei 5", 0, {{10001, "n ei", 0, 0, 5}}, {7, 8, 17, 48, 5}},
      {10001, "ng 5", 0, {{10001, "ng", 0, 0, 5}}, {7, 8, 21, 5}},
      {10001, "uut 6", 0, {{10001, "uut", 0, 0, 6}}, {7, 8, 104, 6}},
      {20000, "aa 1", 0, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "zh 0", 0, {{20000, "zh", 0, 0, 0}}, {7, 8, 50, 0}},
      {10000, "zh uang 4", 0, {{10000, "zh uang", 0, 0, 4}}, {7, 8, 11, 68, 4}},
      // any phone in any number
      {20000, "aa ae uw 2", 0, {{20000, "aa ae uw", 0, 0, 2}}, {7, 8, 11, 12, 26, 2}},
      {20000,
       "s t r eh ng k th s 1",
       0,
       {{20000, "s t r eh ng k th s", 0, 0, 1}},
       {7, 8, 42, 44, 41, 19, 39, 35, 45, 42, 1}},
      {20000, "s 0", 0, {{20000, "s", 0, 0, 0}}, {7, 8, 42, 0}},
      {10000, "i n i n 1", 0, {{10000, "i n i n", 0, 0, 1}}, {7, 8, 35, 24, 35, 24, 1}},
      {10000, "sil 0", 0, {{10000, "sil", 0, 0, 0}}, {7, 8, 10, 0}},
      {10001, "sil 0", 0, {{10001, "sil", 0, 0, 0}}, {7, 8, 10, 0}},
      {20000, "sil 0", 0, {{20000, "sil", 0, 0, 0}}, {7, 8, 10, 0}},
      {10000, "sil sil n 0", 0, {{10000, "sil sil n", 0, 0, 0}}, {7, 8, 10, 10, 24, 0}},
  };
  ExpectBothForms(cases);
}

TEST(Pr2Ph, TheDigitIsTakenAsItIs) {
  const Pr2PhCase cases[] = {
      {10000, "a 0", 0, {{10000, "a", 0, 0, 0}}, {7, 8, 32, 0}},
      {10000, "a 9", 0, {{10000, "a", 0, 0, 9}}, {7, 8, 32, 9}},
      {10001, "aa 8", 0, {{10001, "aa", 0, 0, 8}}, {7, 8, 30, 8}},
      {20000, "aa 9", 0, {{20000, "aa", 0, 0, 9}}, {7, 8, 11, 9}},
  };
  ExpectBothForms(cases);
}

TEST(Pr2Ph, BlanksAroundASyllableAndEmptySyllablesAreIgnored) {
  const SpelledList ni_hao = {{10000, "n i", 0, 0, 3}, {10000, "h ao", 0, 0, 3}};
  const Bytes ni_hao_bytes = {7, 8, 24, 35, 3, 28, 43, 3};
  const Pr2PhCase cases[] = {
      {10000, " n i 3 ,,\t h ao 3\n", 0, ni_hao, ni_hao_bytes},
      {10000, "n i 3,h ao 3", 0, ni_hao, ni_hao_bytes},
      {10000, ",n i 3,h ao 3,", 0, ni_hao, ni_hao_bytes},
      {10000, "\r\n\t n i 3\r\n,\t\th ao 3 \t\r\n", 0, ni_hao, ni_hao_bytes},
      {10000, "n i 3, ,\t,\r,\n, h ao 3,,,", 0, ni_hao, ni_hao_bytes},
      // nothing but these: the bytes stay as they were
      {10000, "", 0, {}, {7, 8}},
      {10000, ",", 0, {}, {7, 8}},
      {10000, ",,,", 0, {}, {7, 8}},
      {10000, " ", 0, {}, {7, 8}},
      {10000, " \t\r\n, ,", 0, {}, {7, 8}},
      {10001, "", 0, {}, {7, 8}},
      {20000, "", 0, {}, {7, 8}},
  };
  ExpectBothForms(cases);
}

TEST(Pr2Ph, OutputIsKeptAfterASyllableOfOnePiece) {
  const Pr2PhCase cases[] = {
      {20000, "aa", -1, {}, {7, 8}},
      {20000, "3", -1, {}, {7, 8}},
      {20000, "aa3", -1, {}, {7, 8}},
      {20000, "zz", -1, {}, {7, 8}},
      {20000, "aa 1, bb", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "aa 1, aa", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "aa 1,1", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "aa 1,, 1 ,", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      // what follows is not looked at
      {20000, "aa 1, bb, zz 1", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "aa 1, bb, aa 2", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      // no space, no second piece, however long
      {20000, "aa 1, sixchr", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "aa 1, sevench", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "aa 1, eightchr", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "aa 1, ninechars", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "aa 1, ninechars \t, zz 1", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {20000, "aa 1,twentycharactersofone", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
      {10000, "n\ti\t3", -1, {}, {7, 8}},
      {10000, "\v", -1, {}, {7, 8}},
      {10000, "\0"s, -1, {}, {7, 8}},
      {10000, "n i 3, n-i-3", -1, {{10000, "n i", 0, 0, 3}}, {7, 8, 24, 35, 3}},
      {10000, "n i 3, 你", -1, {{10000, "n i", 0, 0, 3}}, {7, 8, 24, 35, 3}},
  };
  ExpectBothForms(cases);
}

TEST(Pr2Ph, OutputIsEmptiedAfterAnUnknownPhone) {
  const Pr2PhCase cases[] = {
      {20000, "zz 1", -1, {}, {}},
      {20000, "aa 1, bb 2", -1, {}, {}},
      {20000, "aa 1, aa bb 2", -1, {}, {}},
      {20000, "aa 1, bb 2, aa", -1, {}, {}},
      {20000, "AA 1", -1, {}, {}},
      {20000, "Sil 0", -1, {}, {}},
      {20000, "i 1", -1, {}, {}},
      {20000, "E 1", -1, {}, {}},
      {10000, "aa 1", -1, {}, {}},
      {10001, "zh 1", -1, {}, {}},
      {10001, "E 1", -1, {}, {}},
      {10000, "3 3", -1, {}, {}},
      {10000, "ni 3", -1, {}, {}},
      {10000, "n i 3; h ao 3", -1, {}, {}},
      {10000, "n i 3 h ao 3", -1, {}, {}},  // "3" is not a phone
      {10000, "n  i 3", -1, {}, {}},        // an empty piece is not a phone
      {10000, "n i  3", -1, {}, {}},
      {10000, "n\ti 3", -1, {}, {}},  // a tab inside a syllable is part of a piece
      {10000, "\vn i 3", -1, {}, {}},
      {10000, "ssil 0", -1, {}, {}},
      {10000, "iouiouio 3", -1, {}, {}},
      {10000, "iouiouiou 3", -1, {}, {}},
      {10000, "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa 3", -1, {}, {}},
      // NUL and high bytes are bytes of the name
      {10000, "n\0 i 3"s, -1, {}, {}},
      {10000, "\0n i 3"s, -1, {}, {}},
      {10000, "n\0\0\0\0\0\0\0 i 3"s, -1, {}, {}},
      {10000, "\0 3"s, -1, {}, {}},
      {10000, "n ü 3", -1, {}, {}},
      {10000, "\xff 3", -1, {}, {}},
  };
  ExpectBothForms(cases);
}

TEST(Pr2Ph, OutputIsEmptiedAfterALastPieceThatIsNotOneDigit) {
  const Pr2PhCase cases[] = {
      {20000, "aa 12", -1, {}, {}},
      {20000, "aa 10", -1, {}, {}},
      {20000, "aa 00", -1, {}, {}},
      {20000, "aa x", -1, {}, {}},
      {20000, "aa a", -1, {}, {}},
      {20000, "aa b", -1, {}, {}},
      {20000, "aa aa", -1, {}, {}},
      {20000, "aa -", -1, {}, {}},
      {20000, "aa -1", -1, {}, {}},
      {20000, "aa /", -1, {}, {}},  // next to the digits
      {20000, "aa :", -1, {}, {}},
      {20000, "aa 1, aa 12", -1, {}, {}},
      {20000, "aa 1, aa 1234567", -1, {}, {}},
      {20000, "aa 1, aa 12345678", -1, {}, {}},
      {20000, "aa 1, aa 123456789", -1, {}, {}},
      {20000, "aa 1, aa 1234567890123456, aa 1", -1, {}, {}},
      {20000, "aa 1, l ow", -1, {}, {}},
      {20000, "aa 1, aa x, aa", -1, {}, {}},
      {20000, "aa 1\v", -1, {}, {}},  // not trimmed
      {20000, "aa 1\f", -1, {}, {}},
      {20000, "aa 1'", -1, {}, {}},
      {20000, "aa 1\0"s, -1, {}, {}},
      {20000, "aa \0"s, -1, {}, {}},
      {20000, "aa " + kNul + "1", -1, {}, {}},
      {20000, "aa \xb1", -1, {}, {}},
      {20000, "aa \xc2\xb9", -1, {}, {}},      // superscript one
      {20000, "aa \xef\xbc\x91", -1, {}, {}},  // full-width one
      {20000, "aa \xd9\xa1", -1, {}, {}},      // Arabic-Indic one
  };
  ExpectBothForms(cases);
}

// An unknown phone and a bad digit in the same syllable, and a syllable of one piece after both.
TEST(Pr2Ph, StopsAtTheFirstBadSyllable) {
  const Pr2PhCase cases[] = {
      {20000, "zz x", -1, {}, {}},
      {20000, "aa 1, zz x, aa", -1, {}, {}},
      {20000, "aa 1, aa, zz x", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
  };
  ExpectBothForms(cases);
}

TEST(Pr2Ph, UnregisteredLanguagesAreServedByAmericanEnglish) {
  for (const int language : UnregisteredIds()) {
    const Pr2PhCase cases[] = {
        {language, "aa 1", 0, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
        {language, "n i 3", -1, {}, {}},  // "n" is an English phone, "i" is not
        {language, "aa 1, bb", -1, {{20000, "aa", 0, 0, 1}}, {7, 8, 11, 1}},
        {language, "", 0, {}, {7, 8}},
    };
    ExpectBothForms(cases);
  }
}

TEST(Pr2Ph, NullNamesEAndNgAreNullPhonesInSyllablesAndUnknownInBytes) {
  const Pr2PhCase cases[] = {
      {10000, "E 1", 0, {{10000, "-", 0, 0, 1}}, {}},
      {10000, "ng 2", 0, {{10000, "-", 0, 0, 2}}, {}},
      {10000, "h ng 2", 0, {{10000, "h -", 0, 0, 2}}, {}},
      {10000, "E ng E 2", 0, {{10000, "- - -", 0, 0, 2}}, {}},
      {10000, "n i 3, ng 2", 0, {{10000, "n i", 0, 0, 3}, {10000, "-", 0, 0, 2}}, {}},
  };
  for (const Pr2PhCase& c : cases) {
    SCOPED_TRACE(c.text);
    std::vector<SyllableInfo> syllables = {StaleSyllable()};
    EXPECT_EQ(pr2ph(c.language, c.text, syllables), c.result);
    EXPECT_EQ(Spell(syllables), c.syllables);
    Bytes phone_ids = {7, 8};
    EXPECT_EQ(pr2ph(c.language, c.text, phone_ids), -1);
    EXPECT_EQ(phone_ids, c.phone_ids);
  }
}

TEST(Pr2Ph, TwoIouRowsAndTheNameMeansTheFirst) {
  std::vector<SyllableInfo> syllables;
  ASSERT_EQ(pr2ph(LANGUAGE_MANDARIN, "j iou 3", syllables), 0);
  ASSERT_EQ(syllables.size(), 1U);
  EXPECT_EQ(syllables[0].phones[1]->id, 35);
  Bytes phone_ids;
  ASSERT_EQ(pr2ph(LANGUAGE_MANDARIN, "j iou 3", phone_ids), 0);
  EXPECT_EQ(phone_ids, (Bytes{29, 45, 3}));
}

TEST(Pr2Ph, BytesAreAppendedNotEmptied) {
  Bytes phone_ids;
  EXPECT_EQ(pr2ph(LANGUAGE_AMERICAN_ENGLISH, "aa 1", phone_ids), 0);
  EXPECT_EQ(pr2ph(LANGUAGE_AMERICAN_ENGLISH, "zh 2", phone_ids), 0);
  EXPECT_EQ(phone_ids, (Bytes{11, 1, 50, 2}));
  EXPECT_EQ(pr2ph(LANGUAGE_AMERICAN_ENGLISH, "aa 3, aa", phone_ids), -1);
  EXPECT_EQ(phone_ids, (Bytes{11, 1, 50, 2, 11, 3}));
  EXPECT_EQ(pr2ph(LANGUAGE_AMERICAN_ENGLISH, "zz 2", phone_ids), -1);
  EXPECT_EQ(phone_ids, Bytes());
}

// Syllables of many phones, each with a short one after it.
TEST(Pr2Ph, LongSyllables) {
  for (const int count : {7, 8, 9, 15, 16, 17, 18, 31, 32, 33, 34, 47, 48, 49, 1000}) {
    SCOPED_TRACE(count);
    std::string names;
    Bytes expected;
    for (int i = 0; i < count; ++i) {
      names += i % 2 == 0 ? "zh " : "b ";
      expected.push_back(i % 2 == 0 ? 50 : 27);
    }
    expected.insert(expected.end(), {4, 11, 1});
    const std::string text = names + "4, aa 1";
    names.pop_back();  // the last blank
    std::vector<SyllableInfo> syllables;
    EXPECT_EQ(pr2ph(LANGUAGE_AMERICAN_ENGLISH, text, syllables), 0);
    EXPECT_EQ(Spell(syllables), (SpelledList{{20000, names, 0, 0, 4}, {20000, "aa", 0, 0, 1}}));
    Bytes phone_ids;
    EXPECT_EQ(pr2ph(LANGUAGE_AMERICAN_ENGLISH, text, phone_ids), 0);
    EXPECT_EQ(phone_ids, expected);
  }
}

TEST(Pr2Ph, LongTexts) {
  constexpr std::size_t kCount = 100'000;
  std::string text;
  std::string one_syllable;
  for (std::size_t i = 0; i < kCount; ++i) {
    text += "n i 3, ";
    one_syllable += "n ";
  }
  std::vector<SyllableInfo> syllables;
  EXPECT_EQ(pr2ph(LANGUAGE_MANDARIN, text, syllables), 0);
  EXPECT_EQ(Spell(syllables), SpelledList(kCount, {10000, "n i", 0, 0, 3}));
  Bytes phone_ids;
  EXPECT_EQ(pr2ph(LANGUAGE_MANDARIN, one_syllable + "3", phone_ids), 0);
  Bytes expected(kCount, 24);
  expected.push_back(3);
  EXPECT_EQ(phone_ids, expected);
  EXPECT_EQ(pr2ph(LANGUAGE_MANDARIN, text + "n zz 3", syllables), -1);
  EXPECT_TRUE(syllables.empty());
}

class EveryLanguage : public testing::TestWithParam<Language> {};
INSTANTIATE_TEST_SUITE_P(Pr2Ph, EveryLanguage, testing::ValuesIn(kLanguages), LanguageName);

TEST_P(EveryLanguage, EveryPhoneWithEveryDigit) {
  const int language = GetParam().id;
  const std::vector<GoldenPhone> golden = GetParam().phones();
  ASSERT_EQ(golden.size(), static_cast<std::size_t>(GetParam().phone_count));
  for (const GoldenPhone& row : golden) {
    const int id = row.name == "iou" ? 35 : row.id;
    for (int digit = 0; digit <= 9; ++digit) {
      const std::string text = row.name + " " + std::to_string(digit);
      SCOPED_TRACE(text);
      std::vector<SyllableInfo> syllables = {StaleSyllable()};
      ASSERT_EQ(pr2ph(language, text, syllables), 0);
      EXPECT_EQ(Spell(syllables), (SpelledList{{language, row.name, 0, 0, digit}}));
      EXPECT_EQ(syllables[0].phones[0], GetPhoneInfoById(language, id));
      Bytes phone_ids;
      ASSERT_EQ(pr2ph(language, text, phone_ids), 0);
      EXPECT_EQ(phone_ids,
                (Bytes{static_cast<unsigned char>(id + 10), static_cast<unsigned char>(digit)}));
    }
  }
}

TEST_P(EveryLanguage, EveryByteAsALastPiece) {
  for (int value = 0; value < 256; ++value) {
    SCOPED_TRACE(value);
    const char byte = static_cast<char>(value);
    const bool digit = byte >= '0' && byte <= '9';
    const bool blank = byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
    std::vector<SyllableInfo> syllables = {StaleSyllable()};
    Bytes phone_ids = {7, 8};
    const std::string text = std::string("sil ") + byte;
    EXPECT_EQ(pr2ph(GetParam().id, text, syllables), digit ? 0 : -1);
    EXPECT_EQ(pr2ph(GetParam().id, text, phone_ids), digit ? 0 : -1);
    if (digit) {
      EXPECT_EQ(Spell(syllables), (SpelledList{{GetParam().id, "sil", 0, 0, value - '0'}}));
      EXPECT_EQ(phone_ids, (Bytes{7, 8, 10, static_cast<unsigned char>(value - '0')}));
    } else {
      EXPECT_TRUE(syllables.empty());
      // "sil " and "sil ," are trimmed to one piece, which keeps the output
      EXPECT_EQ(phone_ids, (blank || byte == ',') ? (Bytes{7, 8}) : Bytes());
    }
  }
}

TEST_P(EveryLanguage, BytesReadBackAsTheSameSyllables) {
  std::string text;
  for (const GoldenPhone& row : GetParam().phones()) {
    if (!text.empty()) text += ", ";
    text += row.name + " sil " + row.name + " " + std::to_string(row.id % 10);
  }
  std::vector<SyllableInfo> parsed;
  Bytes phone_ids;
  std::vector<SyllableInfo> read_back;
  ASSERT_EQ(pr2ph(GetParam().id, text, parsed), 0);
  ASSERT_EQ(pr2ph(GetParam().id, text, phone_ids), 0);
  ASSERT_EQ(ph2ph(GetParam().id, phone_ids, read_back), 0);
  EXPECT_EQ(parsed.size(), static_cast<std::size_t>(GetParam().phone_count));
  EXPECT_EQ(Spell(read_back), Spell(parsed));
}

}  // namespace qeo::sp
