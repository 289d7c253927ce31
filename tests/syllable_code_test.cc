// Syllable codes: text to codes, codes to phones and codes to spellings, over all 65,536 codes.

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {
namespace {

using namespace std::string_literals;

const std::string kNul(1, '\0');

using Codes = std::vector<unsigned short>;

struct Py2CodeCase {
  int language;
  std::string text;
  int result;
  Codes codes;
};

template <std::size_t N>
void ExpectCodes(const Py2CodeCase (&cases)[N]) {
  for (const Py2CodeCase& c : cases) {
    SCOPED_TRACE(std::to_string(c.language) + ", " + testing::PrintToString(c.text));
    Codes codes = {999, 998, 997};
    EXPECT_EQ(py2code(c.language, c.text, codes), c.result);
    EXPECT_EQ(codes, c.codes);
  }
}

constexpr int kAllCodes = 65536;

}  // namespace

TEST(Py2Code, Syllables) {
  const Py2CodeCase cases[] = {
      {10000, "ni3hao3", 0, {2243, 1173}},
      {10000, "ma3", 0, {1943}},
      {10000, "NiHao", 0, {2245, 1175}},
      {10000, "nihao", 0, {2245, 1175}},
      {10000, "zhong1guo2ren2", 0, {3991, 1122, 2772}},
      {10000, "fangan", 0, {875, 25}},
      {10000, "xian", 0, {3535}},
      {10000, "Xi'an", 0, {3515, 25}},
      {10000, "xi`an", 0, {3515, 25}},
      {10000, "ni3\vhao3\f", 0, {2243, 1173}},
      {10000, "lv4", 0, {1884}},
      {10000, "yo1you1", 0, {3731, 3751}},  // the same phones, two codes
      {10000, "E1", 0, {791}},              // "e", never the row "E"
      {10000, "zuo5", 0, {4165}},           // the largest code
      {10001, "nei5hou2", 0, {4035, 2382}},
      {10001, "neihou", 0, {4037, 2387}},
      {10001, "m4goi1", 0, {3574, 1751}},
      {10001, "zyut7", 0, {6187}},  // the largest code
  };
  ExpectCodes(cases);
}

TEST(Py2Code, TonesAreFolded) {
  // clang-format off
  const Py2CodeCase cases[] = {
      {10000, "ma", 0, {1945}},
      {10000, "ma0", 0, {1945}},
      {10000, "ma1", 0, {1941}},
      {10000, "ma5", 0, {1945}},
      {10000, "ma6", 0, {1941}},
      {10000, "ma7", 0, {1942}},
      {10000, "ma8", 0, {1943}},
      {10000, "ma9", 0, {1944}},
      {10000, "a", 0, {5}},  // one byte, no tone
      {10001, "ngo", 0, {4237}},
      {10001, "ngo0", 0, {4237}},
      {10001, "ngo1", 0, {4231}},
      {10001, "ngo7", 0, {4237}},
      {10001, "ngo8", 0, {4231}},
      {10001, "ngo9", 0, {4232}},
      {10001, "e", 0, {1247}},
  };
  // clang-format on
  ExpectCodes(cases);
}

TEST(Py2Code, OneUnknownPieceFailsTheText) {
  const Py2CodeCase cases[] = {
      {10000, "ni3 xyz3", -1, {}},
      {10000, "xyz3 ni3", -1, {}},
      {10000, "ni3hao3ma1xyz3", -1, {}},
      {10000, "5", -1, {}},  // one byte: the digit is the spelling
      {10000, "0", -1, {}},
      {10000, "123", -1, {}},
      {10000, "3ni", -1, {}},
      {10000, "ni33", -1, {}},
      {10000, "ma35", -1, {}},
      {10000, "NI3", -1, {}},
      {10000, "zhuangs1", -1, {}},
      {10000, "ni- ", -1, {}},
      {10000, "lü3", -1, {}},
      {10000, "ni" + kNul + "3", -1, {}},  // not "ni3"
      {10000, "ni" + std::string(6, '\0') + "3", -1, {}},
      {10000, "\0ni3"s, -1, {}},
      {10001, "lv3", -1, {}},
      {10001, "Ni3hao", -1, {}},
      {20000, "a1", -1, {}},
      {20000, "ni3hao3", -1, {}},
  };
  ExpectCodes(cases);
}

TEST(Py2Code, NihaoWithOneDigitAtItsEndStaysUncutAndFails) {
  const Py2CodeCase cases[] = {
      {10000, "nihao3", -1, {}},
      {10000, "ma1nihao3", -1, {}},
      {10001, "neihou2", -1, {}},
  };
  ExpectCodes(cases);
}

TEST(Py2Code, APieceWithOtherBytesIsPassedOnWholeAndFails) {
  const Py2CodeCase cases[] = {
      {10000, "n-i3", -1, {}},
      {10000, "n-i ", -1, {}},
      {10000, "N-i", -1, {}},
      {10000, "n-i", 0, {2135}},  // no separator, no piece: "n" by longest match
  };
  ExpectCodes(cases);
}

TEST(Py2Code, WhatCannotBeCutIsDroppedWithoutFailure) {
  // clang-format off
  const Py2CodeCase cases[] = {
      {10000, "", 0, {}},
      {10000, " \t\r\n\v\f'`", 0, {}},
      {10000, "xyz", 0, {}},
      {10000, "X", 0, {}},
      {10000, "hello", 0, {1185}},
      {10000, "ni3 -", 0, {2243}},
      {10000, "ni\0"s, 0, {2245}},
      {10000, "nī", 0, {2135}},
      {10001, "nihao", 0, {}},
      {20000, "hello", 0, {}},
      {20000, "", 0, {}},
  };
  // clang-format on
  ExpectCodes(cases);
}

TEST(Py2Code, UnregisteredLanguagesAreServedByMandarin) {
  for (const int language : UnregisteredIds()) {
    const Py2CodeCase cases[] = {
        {language, "ni3hao3", 0, {2243, 1173}},
        {language, "ma", 0, {1945}},
        {language, "ma7", 0, {1942}},
        {language, "jyut6", -1, {}},
    };
    ExpectCodes(cases);
  }
}

// code2ph

struct Code2PhCase {
  int language = 0;
  int code = 0;
  int result = 0;
  Spelled syllable;
};

template <std::size_t N>
void ExpectExpansions(const Code2PhCase (&cases)[N]) {
  for (const Code2PhCase& c : cases) {
    SCOPED_TRACE(std::to_string(c.language) + ", " + std::to_string(c.code));
    SyllableInfo syllable;
    syllable.language = 77;
    EXPECT_EQ(code2ph(c.language, static_cast<unsigned short>(c.code), syllable), c.result);
    EXPECT_EQ(Spell(syllable), c.syllable);
  }
}

TEST(Code2Ph, RowByRow) {
  const Code2PhCase cases[] = {
      {10000, 2243, 0, {10000, "n i", 2243, 3, 0}},
      {10000, 0, 0, {10000, "a", 0, 0, 0}},
      {10000, 5, 0, {10000, "a", 5, 5, 0}},
      {10000, 4165, 0, {10000, "z uo", 4165, 5, 0}},
      {10000, 4169, 0, {10000, "z uo", 4169, 9, 0}},
      {10000, 2248, 0, {10000, "n i", 2248, 8, 0}},  // tones are not folded
      {10000, 1435, 0, {10000, "j iou", 1435, 5, 0}},
      // no initial, no final, neither
      {10000, 841, 0, {10000, "er", 841, 1, 0}},
      {10000, 1932, 0, {10000, "m", 1932, 2, 0}},
      {10000, 1235, 0, {10000, "h", 1235, 5, 0}},
      {10000, 801, 0, {10000, "", 801, 1, 0}},
      {10000, 2234, 0, {10000, "", 2234, 4, 0}},
      // the row is not in the table: code and tone are set, language and phones are not
      {10000, 4170, -1, {77, "", 4170, 0, 0}},
      {10000, 65535, -1, {77, "", 65535, 5, 0}},
      {10001, 2382, 0, {10001, "h ou", 2382, 2, 0}},
      {10001, 4170, 0, {10001, "ng am", 4170, 0, 0}},
      {10001, 6187, 0, {10001, "z yut", 6187, 7, 0}},
      {10001, 6190, -1, {77, "", 6190, 0, 0}},
      {20000, 0, -1, {77, "", 0, 0, 0}},
      {20000, 2243, -1, {77, "", 2243, 3, 0}},
  };
  ExpectExpansions(cases);
}

TEST(Code2Ph, UnregisteredLanguagesAreServedByMandarin) {
  for (const int language : UnregisteredIds()) {
    const Code2PhCase cases[] = {
        {language, 2243, 0, {10000, "n i", 2243, 3, 0}},
        {language, 4170, -1, {77, "", 4170, 0, 0}},
    };
    ExpectExpansions(cases);
  }
}

TEST(Code2Ph, PhonesAreAppendedNotEmptied) {
  SyllableInfo syllable;
  EXPECT_EQ(code2ph(10000, 2243, syllable), 0);
  EXPECT_EQ(code2ph(10000, 1173, syllable), 0);
  EXPECT_EQ(Spell(syllable), (Spelled{10000, "n i h ao", 1173, 3, 0}));
  EXPECT_EQ(code2ph(10001, 6197, syllable), -1);
  EXPECT_EQ(Spell(syllable), (Spelled{10000, "n i h ao", 6197, 7, 0}));
}

TEST(Code2Ph, RawToneIsNotTouched) {
  SyllableInfo syllable = StaleSyllable();
  EXPECT_EQ(code2ph(10000, 2243, syllable), 0);
  EXPECT_EQ(Spell(syllable), (Spelled{10000, "ay - n i", 2243, 3, 99}));
  syllable = StaleSyllable();
  EXPECT_EQ(code2ph(10000, 4172, syllable), -1);
  EXPECT_EQ(Spell(syllable), (Spelled{77, "ay -", 4172, 2, 99}));
}

// code2py

struct Code2PyCase {
  int language;
  int code;
  bool with_tone;
  const char* result;
};

template <std::size_t N>
void ExpectSpellings(const Code2PyCase (&cases)[N]) {
  for (const Code2PyCase& c : cases) {
    EXPECT_EQ(code2py(c.language, static_cast<unsigned short>(c.code), c.with_tone), c.result)
        << c.language << ", " << c.code << ", " << c.with_tone;
  }
}

TEST(Code2Py, RowByRow) {
  const Code2PyCase cases[] = {
      {10000, 2243, true, "ni3"},
      {10000, 2243, false, "ni"},
      {10000, 0, true, "a0"},  // the digit is written, 0 included
      {10000, 0, false, "a"},
      {10000, 801, true, "E1"},
      {10000, 1234, true, "hng4"},
      {10000, 4165, true, "zuo5"},
      {10000, 4169, true, "zuo9"},
      {10000, 2248, true, "ni8"},  // tones are not folded
      {10001, 2382, true, "hou2"},
      {10001, 6187, false, "zyut"},
      {10001, 1921, true, "gwaang1"},
      // the row is not in the table: row 0
      {10000, 4170, false, "a"},
      {10000, 4170, true, "a0"},
      {10000, 65535, false, "a"},
      {10000, 65535, true, "a5"},
      {10001, 6190, false, "aa"},
      {10001, 6193, true, "aa3"},
      {10001, 65535, true, "aa5"},
      // no syllables at all
      {20000, 0, true, ""},
      {20000, 0, false, ""},
      {20000, 2243, true, ""},
      {20000, 65535, false, ""},
  };
  ExpectSpellings(cases);
}

TEST(Code2Py, ToneDigitIsForcedOnTheFallbackPath) {
  for (const int language : UnregisteredIds()) {
    // clang-format off
    const Code2PyCase cases[] = {
        {language, 2243, true, "ni3"},
        {language, 2243, false, "ni3"},
        {language, 0, false, "a0"},
        {language, 65535, false, "a5"},
        {language, 6187, false, "a7"},
    };
    // clang-format on
    ExpectSpellings(cases);
  }
}

// All codes, against the golden rows

class EveryLanguage : public testing::TestWithParam<Language> {};
INSTANTIATE_TEST_SUITE_P(SyllableCodes, EveryLanguage, testing::ValuesIn(kLanguages), LanguageName);

// What code2ph and code2py answer for all codes of `language`, served by the language `served_by`.
void ExpectAllCodes(int language, const Language& served_by) {
  const std::vector<GoldenSyllable> rows = served_by.syllables();
  ASSERT_EQ(rows.size(), static_cast<std::size_t>(served_by.syllable_count));
  const bool tone_forced = language != served_by.id;
  SyllableInfo syllable;
  for (int code = 0; code < kAllCodes; ++code) {
    const auto narrow = static_cast<unsigned short>(code);
    const auto index = static_cast<std::size_t>(code / 10);
    const bool known = index < rows.size();
    const std::string digit(1, static_cast<char>('0' + code % 10));

    SyllableInfo expected = StaleSyllable();
    expected.code = static_cast<unsigned>(code);
    expected.tone = static_cast<signed char>(code % 10);
    if (known) {
      expected.language = served_by.id;
      for (const int id : {rows[index].initial_phone, rows[index].final_phone}) {
        if (id != kNoPhone) expected.phones.push_back(GetPhoneInfoById(served_by.id, id));
      }
    }
    syllable = StaleSyllable();
    ASSERT_EQ(code2ph(language, narrow, syllable), known ? 0 : -1) << code;
    ASSERT_EQ(Spell(syllable), Spell(expected)) << code;
    ASSERT_EQ(syllable.phones, expected.phones) << code;

    std::string spelling = rows.empty() ? "" : rows[known ? index : 0].spelling;
    const std::string toned = rows.empty() ? "" : spelling + digit;
    ASSERT_EQ(code2py(language, narrow, true), toned) << code;
    ASSERT_EQ(code2py(language, narrow, false), tone_forced ? toned : spelling) << code;
  }
}

TEST_P(EveryLanguage, AllCodes) { ExpectAllCodes(GetParam().id, GetParam()); }

TEST(AllCodes, OfUnregisteredLanguagesAreServedByMandarin) {
  for (const int language : {10002, 20001, 30000, 0, -1, std::numeric_limits<int>::min()}) {
    SCOPED_TRACE(language);
    ExpectAllCodes(language, kMandarin);
  }
}

class EveryChineseLanguage : public testing::TestWithParam<Language> {};
INSTANTIATE_TEST_SUITE_P(SyllableCodes, EveryChineseLanguage,
                         testing::Values(kMandarin, kCantonese), LanguageName);

TEST_P(EveryChineseLanguage, EveryCodeInRangeComesBackFromItsSpelling) {
  int count = 0;
  for (int code = 0; code < GetParam().syllable_count * 10; ++code) {
    const int tone = code % 10;
    const auto narrow = static_cast<unsigned short>(code);
    if (tone < 1 || tone > GetParam().top_tone) continue;
    if (GetParam().id == LANGUAGE_MANDARIN && code / 10 == 80) continue;  // "E", lower-cased
    Codes codes = {999};
    ASSERT_EQ(py2code(GetParam().id, code2py(GetParam().id, narrow, true), codes), 0);
    ASSERT_EQ(codes, Codes{narrow});
    ++count;
  }
  EXPECT_EQ(count, GetParam().id == LANGUAGE_MANDARIN ? 416 * 5 : 619 * 7);
}

// Syllables as they are looked up: all texts of one to four letters, and every syllable with one
// byte changed, left out or added. A digit keeps each text in one piece.
class SpellingTable {
 public:
  explicit SpellingTable(const Language& language) : language_(language.id) {
    for (const GoldenSyllable& row : language.syllables()) rows_[row.spelling] = row.id;
    rows_.erase("E");
  }

  void ExpectLookup(const std::string& spelling) {
    const auto row = rows_.find(spelling);
    const bool known = row != rows_.end();
    Codes codes = {999};
    ASSERT_EQ(py2code(language_, spelling + "4", codes), known ? 0 : -1)
        << testing::PrintToString(spelling);
    ASSERT_EQ(codes.size(), known ? 1U : 0U) << testing::PrintToString(spelling);
    if (!known) return;
    ASSERT_EQ(codes[0], row->second * 10 + 4) << testing::PrintToString(spelling);
    ++found_;
  }

  int found() const { return found_; }
  const std::map<std::string, int>& rows() const { return rows_; }

 private:
  int language_;
  std::map<std::string, int> rows_;
  int found_ = 0;
};

TEST_P(EveryChineseLanguage, AllTextsOfUpToFourLetters) {
  SpellingTable table(GetParam());
  std::vector<std::string> texts = {""};
  for (int length = 1; length <= 4; ++length) {
    std::vector<std::string> longer;
    for (const std::string& text : texts) {
      for (char letter = 'a'; letter <= 'z'; ++letter) longer.push_back(text + letter);
    }
    for (const std::string& text : longer) ASSERT_NO_FATAL_FAILURE(table.ExpectLookup(text));
    texts = std::move(longer);
  }
  int expected = 0;
  for (const auto& [spelling, row] : table.rows()) expected += spelling.size() <= 4 ? 1 : 0;
  EXPECT_EQ(table.found(), expected);
}

TEST_P(EveryChineseLanguage, NearMissesOfEverySyllable) {
  SpellingTable table(GetParam());
  const std::string bytes = "abcdefghijklmnopqrstuvwxyz\0\x01-_{\x7f\x80\xe9\xff"s;
  for (const auto& [spelling, row] : table.rows()) {
    for (std::size_t at = 0; at <= spelling.size(); ++at) {
      const std::string front = spelling.substr(0, at);
      for (const char byte : bytes) {
        ASSERT_NO_FATAL_FAILURE(table.ExpectLookup(front + byte + spelling.substr(at)));
        if (at == spelling.size()) continue;
        ASSERT_NO_FATAL_FAILURE(table.ExpectLookup(front + byte + spelling.substr(at + 1)));
      }
      if (at == spelling.size() || spelling.size() == 1) continue;
      ASSERT_NO_FATAL_FAILURE(table.ExpectLookup(front + spelling.substr(at + 1)));
    }
  }
  EXPECT_GT(table.found(), GetParam().syllable_count);  // each is at least its own neighbour
}

}  // namespace qeo::sp
