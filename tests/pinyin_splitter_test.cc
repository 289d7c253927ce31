// How text is cut into syllables, seen through pyw2py in both directions.

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {
namespace {

using namespace std::string_literals;

const std::string kNul(1, '\0');

using Pieces = std::vector<std::string>;

struct CuttingCase {
  std::string text;
  Pieces forward;
  Pieces backward;
};

Pieces Cut(int language, const std::string& text, bool backward) {
  Pieces pieces = {"stale", "content"};
  EXPECT_EQ(pyw2py(language, text, pieces, backward), 0);
  return pieces;
}

template <std::size_t N>
void ExpectCuts(int language, const CuttingCase (&cases)[N]) {
  for (const CuttingCase& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    EXPECT_EQ(Cut(language, c.text, false), c.forward);
    EXPECT_EQ(Cut(language, c.text, true), c.backward) << "backward";
  }
}

// `unit` written `count` times.
std::string Repeat(const std::string& unit, std::size_t count) {
  std::string text;
  text.reserve(unit.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += unit;
  return text;
}

}  // namespace

TEST(Cutting, AtDigits) {
  const CuttingCase cases[] = {
      {"ni3hao3", {"ni3", "hao3"}, {"ni3", "hao3"}},
      {"zhong1guo2ren2", {"zhong1", "guo2", "ren2"}, {"zhong1", "guo2", "ren2"}},
      {"lv3", {"lv3"}, {"lv3"}},  // u with diaeresis is written v
      {"nve4", {"nve4"}, {"nve4"}},
      {"a1", {"a1"}, {"a1"}},
      {"ni0", {"ni0"}, {"ni0"}},  // digits are not read here
      {"ni9", {"ni9"}, {"ni9"}},
      {"ni3hao", {"ni3", "hao"}, {"ni3", "hao"}},
      {"xi1an1", {"xi1", "an1"}, {"xi1", "an1"}},
      {"xian1", {"xian1"}, {"xian1"}},
      // a digit that has no letters before it is a piece of its own
      {"5", {"5"}, {"5"}},
      {"3ni", {"3", "ni"}, {"3", "ni"}},
      {"ni33", {"ni3", "3"}, {"ni3", "3"}},
      {"ni3 3", {"ni3", "3"}, {"ni3", "3"}},
      {"123", {"1", "2", "3"}, {"1", "2", "3"}},
      {"0123456789",
       {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"},
       {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}},
      // a piece with a digit that is not a syllable is passed on unchanged
      {"xyz3", {"xyz3"}, {"xyz3"}},
      {"ni3xyz3", {"ni3", "xyz3"}, {"ni3", "xyz3"}},
      {"b3", {"b3"}, {"b3"}},
      {"zhuangs1", {"zhuangs1"}, {"zhuangs1"}},  // seven letters
      {"zhuangzhuang1", {"zhuangzhuang1"}, {"zhuangzhuang1"}},
      {"hello3", {"hello3"}, {"hello3"}},
      // a piece with a digit is cut at it, the run after it by longest match
      {"ni3haoma", {"ni3", "hao", "ma"}, {"ni3", "ma", "hao"}},
      {"ni3hello", {"ni3", "he"}, {"ni3", "lo"}},
      {"ni3xyz", {"ni3"}, {"ni3"}},
  };
  ExpectCuts(LANGUAGE_MANDARIN, cases);
}

TEST(Cutting, NihaoWithOneDigitAtItsEndStaysUncut) {
  const CuttingCase cases[] = {
      {"nihao3", {"nihao3"}, {"nihao3"}},
      {"Nihao3", {"nihao3"}, {"nihao3"}},
      {"nihao3 ", {"nihao3"}, {"nihao3"}},
      {"nihao3ma1", {"nihao3", "ma1"}, {"nihao3", "ma1"}},
      {"nihao3ma", {"nihao3", "ma"}, {"nihao3", "ma"}},
      {"nihaoma3", {"nihaoma3"}, {"nihaoma3"}},
      {"ni hao3", {"ni", "hao3"}, {"ni", "hao3"}},
      {"fangan1", {"fangan1"}, {"fangan1"}},
  };
  ExpectCuts(LANGUAGE_MANDARIN, cases);
}

TEST(Cutting, AtCapitals) {
  const CuttingCase cases[] = {
      {"NiHao", {"ni", "hao"}, {"ni", "hao"}},
      {"Ni3hao", {"ni3", "hao"}, {"ni3", "hao"}},
      {"Ni3Hao3", {"ni3", "hao3"}, {"ni3", "hao3"}},
      {"niHao", {"ni", "hao"}, {"ni", "hao"}},
      {"XiAn", {"xi", "an"}, {"xi", "an"}},
      {"Xian", {"xian"}, {"xian"}},
      // every capital opens a piece
      {"NI3", {"n", "i3"}, {"n", "i3"}},
      {"HELLO", {"e", "o"}, {"e", "o"}},
      {"LV", {}, {}},
      {"ZHONG", {"o", "n"}, {"o", "n"}},
      {"nI", {"n"}, {"n"}},
      // a capital alone
      {"A", {"a"}, {"a"}},
      {"N", {"n"}, {"n"}},
      {"X", {}, {}},
      {"XA", {"a"}, {"a"}},
      {"E", {"e"}, {"e"}},  // never the row "E"
      {"E1", {"e1"}, {"e1"}},
      {"eE", {"e", "e"}, {"e", "e"}},
      // a run that is not a syllable is cut again
      {"Nihao", {"ni", "hao"}, {"hao", "ni"}},
      {"NihaoMa", {"ni", "hao", "ma"}, {"hao", "ni", "ma"}},
      {"Hello", {"he"}, {"lo"}},
      {"Xyz", {}, {}},
      {"XyzNi", {"ni"}, {"ni"}},
  };
  ExpectCuts(LANGUAGE_MANDARIN, cases);
}

TEST(Cutting, AtWhiteSpaceApostrophesAndGraveAccents) {
  const CuttingCase cases[] = {
      {"  ni hao  ", {"ni", "hao"}, {"ni", "hao"}},
      {"ni hao", {"ni", "hao"}, {"ni", "hao"}},
      {"ni   hao", {"ni", "hao"}, {"ni", "hao"}},
      {"ni\thao", {"ni", "hao"}, {"ni", "hao"}},
      {"ni\nhao", {"ni", "hao"}, {"ni", "hao"}},
      {"ni\rhao", {"ni", "hao"}, {"ni", "hao"}},
      {"ni\vhao", {"ni", "hao"}, {"ni", "hao"}},
      {"ni\fhao", {"ni", "hao"}, {"ni", "hao"}},
      {"\r\n ni3 \r\n", {"ni3"}, {"ni3"}},
      {"\v\fni\v\f", {"ni"}, {"ni"}},
      {"Xi'an", {"xi", "an"}, {"xi", "an"}},
      {"xi'an", {"xi", "an"}, {"xi", "an"}},
      {"xi`an", {"xi", "an"}, {"xi", "an"}},
      {"xian", {"xian"}, {"xian"}},
      {"'xian", {"xian"}, {"xian"}},
      {"fang'an", {"fang", "an"}, {"fang", "an"}},
      {"fan'gan", {"fan", "gan"}, {"fan", "gan"}},
      {"ni3'hao3", {"ni3", "hao3"}, {"ni3", "hao3"}},
      // other signs are not separators
      {"xi’an", {"xi"}, {"an"}},
      {"xi\"an", {"xi"}, {"an"}},
      {"ni,hao", {"ni"}, {"hao"}},
      {"ni-hao", {"ni"}, {"hao"}},
      {"ni_hao", {"ni"}, {"hao"}},
      {"ni.", {"ni"}, {}},
      // only separators
      {"", {}, {}},
      {" ", {}, {}},
      {" \t\r\n\v\f", {}, {}},
      {"'", {}, {}},
      {"'`'", {}, {}},
      // a space makes a piece out of each side, and both are checked
      {"nihao ", {"ni", "hao"}, {"hao", "ni"}},
      {" nihaoma", {"ni", "hao", "ma"}, {"ma", "hao", "ni"}},
      {"ni hello", {"ni", "he"}, {"ni", "lo"}},
      {"xyz ni", {"ni"}, {"ni"}},
      {"xi'anshi", {"xi", "an", "shi"}, {"xi", "shi", "an"}},
  };
  ExpectCuts(LANGUAGE_MANDARIN, cases);
}

TEST(Cutting, ByLongestMatch) {
  const CuttingCase cases[] = {
      {"nihao", {"ni", "hao"}, {"hao", "ni"}},
      {"fangan", {"fang", "an"}, {"gan", "fan"}},
      {"a", {"a"}, {"a"}},
      {"zhuang", {"zhuang"}, {"zhuang"}},
      {"zhuangzhuang", {"zhuang", "zhuang"}, {"zhuang", "zhuang"}},
      {"shuangchuang", {"shuang", "chuang"}, {"chuang", "shuang"}},
      {"lve", {"lve"}, {"lve"}},
      {"luan", {"luan"}, {"luan"}},
      {"nvren", {"nv", "ren"}, {"ren", "nv"}},
      {"xianshi", {"xian", "shi"}, {"shi", "xian"}},
      {"tiananmen", {"tian", "an", "men"}, {"men", "nan", "a", "ti"}},
      {"minganxing", {"ming", "an", "xing"}, {"xing", "gan", "min"}},
      {"danao", {"dan", "ao"}, {"nao", "da"}},
      {"eee", {"e", "e", "e"}, {"e", "e", "e"}},
      {"hng", {"hng"}, {"hng"}},
      {"hm", {"hm"}, {"hm"}},
      {"mm", {"m", "m"}, {"m", "m"}},
      {"ngng", {"ng", "ng"}, {"ng", "ng"}},
      // what follows the last match is dropped
      {"hello", {"he"}, {"lo"}},
      {"nihaoxyz", {"ni", "hao"}, {}},
      {"xyznihao", {}, {"hao", "ni"}},
      {"nixhao", {"ni"}, {"hao"}},
      {"b", {}, {}},
      {"zh", {}, {}},
      {"xyz", {}, {}},
      {"v", {}, {}},
  };
  ExpectCuts(LANGUAGE_MANDARIN, cases);
}

// Runs between separators keep their order; the syllables of each run come last one first.
TEST(Cutting, BackwardReversesTheOrderWithinARun) {
  const CuttingCase cases[] = {
      {"nihaoma", {"ni", "hao", "ma"}, {"ma", "hao", "ni"}},
      {"Nihao Beijing", {"ni", "hao", "bei", "jing"}, {"hao", "ni", "jing", "bei"}},
      {"NihaoBeijing", {"ni", "hao", "bei", "jing"}, {"hao", "ni", "jing", "bei"}},
      {"fangan'fangan", {"fang", "an", "fang", "an"}, {"gan", "fan", "gan", "fan"}},
      {"nihao ma fangan", {"ni", "hao", "ma", "fang", "an"}, {"hao", "ni", "ma", "gan", "fan"}},
      {"ni3haoma", {"ni3", "hao", "ma"}, {"ni3", "ma", "hao"}},
  };
  ExpectCuts(LANGUAGE_MANDARIN, cases);
}

// The check of a piece looks at its letters alone, and passes the piece on with all its bytes.
TEST(Cutting, APieceWhoseLettersAreASyllableIsPassedOnWhole) {
  const CuttingCase cases[] = {
      {"n-i3", {"n-i3"}, {"n-i3"}},
      {" n-i", {"n-i"}, {"n-i"}},
      {"n-i ", {"n-i"}, {"n-i"}},
      {"n-I", {"n-"}, {"n-"}},
      {"N-i", {"n-i"}, {"n-i"}},  // a capital opens a piece, at the front too
      {"n-i", {"n"}, {}},         // without a separator there is no piece, only a longest match
      {"ni- ", {"ni-"}, {"ni-"}},
      {"-ni ", {"-ni"}, {"-ni"}},
      {"ni-", {"ni"}, {}},
      {"-ni", {}, {"ni"}},
      {"Ni,Hao", {"ni,", "hao"}, {"ni,", "hao"}},
      {"ni3, hao3", {"ni3", "hao3"}, {"ni3", "hao3"}},
      {"ni, hao3.", {"ni,", "hao3"}, {"ni,", "hao3"}},
      {"(ni3)", {"(ni3"}, {"(ni3"}},
      {"n\0i3"s, {"n\0i3"s}, {"n\0i3"s}},
      {"ni" + kNul + "3", {"ni" + kNul + "3"}, {"ni" + kNul + "3"}},  // not "ni3"
      {"\0ni3"s, {"\0ni3"s}, {"\0ni3"s}},
      {" \0ni"s, {"\0ni"s}, {"\0ni"s}},
      {"\xffni3", {"\xffni3"}, {"\xffni3"}},
      {"nǐ3", {"nǐ3"}, {"nǐ3"}},
      // letters that are not a syllable: cut again, as far as that goes
      {" ni-hao", {"ni"}, {"hao"}},
      {" n-ihao", {"n"}, {"hao"}},
      {" ni-hao3", {"ni-hao3"}, {"ni-hao3"}},
      // no letters at all
      {"ni3 -", {"ni3"}, {"ni3"}},
      {"- ni3", {"ni3"}, {"ni3"}},
      {"ni3 - hao3", {"ni3", "hao3"}, {"ni3", "hao3"}},
      {"-3", {"-3"}, {"-3"}},
      {"ni3\0"s, {"ni3"}, {"ni3"}},
      {"ni3 \0"s, {"ni3"}, {"ni3"}},
      {" \0"s, {}, {}},
  };
  ExpectCuts(LANGUAGE_MANDARIN, cases);
}

TEST(Cutting, NulAndHighBytesAreNeitherLettersNorSeparators) {
  const CuttingCase cases[] = {
      {"ni\0"s, {"ni"}, {}},
      {"ni\0hao"s, {"ni"}, {"hao"}},
      {"\0ni"s, {}, {"ni"}},
      {"\0"s, {}, {}},
      {"nī", {"n"}, {}},  // UTF-8 tone marks end the match
      {"nǐhǎo", {"n"}, {"o"}},
      {"lü", {}, {}},
      {"lü3", {"lü3"}, {"lü3"}},
      {"nü3", {"nü3"}, {"nü3"}},
      {"你好", {}, {}},
      {"ni3你", {"ni3"}, {"ni3"}},
      {"ni 你", {"ni"}, {"ni"}},
      {"ni\xc2\xa0hao", {"ni"}, {"hao"}},  // no-break space
      {"ni\xa0hao", {"ni"}, {"hao"}},
      {"ni\x85hao", {"ni"}, {"hao"}},
      {"\xc0ni", {}, {"ni"}},  // a capital in other character sets
      {"ni\xff", {"ni"}, {}},
  };
  ExpectCuts(LANGUAGE_MANDARIN, cases);
}

TEST(Cutting, Cantonese) {
  const CuttingCase cases[] = {
      {"nei5hou2", {"nei5", "hou2"}, {"nei5", "hou2"}},
      {"neihou", {"nei", "hou"}, {"hou", "nei"}},
      {"jyutping", {"jyut", "ping"}, {"ping", "jyut"}},
      {"gwongdungwaa", {"gwong", "dung", "waa"}, {"gwaa"}},
      {"m4goi1", {"m4", "goi1"}, {"m4", "goi1"}},
      {"mgoi", {"m", "goi"}, {"goi", "m"}},
      {"nganaa", {"ngan", "aa"}, {"naa"}},
      {"gwaangkwaang", {"gwaang", "kwaang"}, {"kwaang", "gwaang"}},
      {"ngaang", {"ngaang"}, {"ngaang"}},
      {"wu", {"wu"}, {"wu"}},
      {"E", {"e"}, {"e"}},
      // Mandarin spellings that are not Jyutping
      {"nihao", {}, {"o"}},
      {"Ni3hao", {"ni3"}, {"ni3", "o"}},
      {"lv3", {"lv3"}, {"lv3"}},
      {"lv", {}, {}},
      {"", {}, {}},
  };
  ExpectCuts(LANGUAGE_CANTONESE, cases);
}

// A language without syllables: separators still cut, nothing else does.
TEST(Cutting, AmericanEnglish) {
  const CuttingCase cases[] = {
      {"hello", {}, {}},
      {"Hello World", {}, {}},
      {"ni hao", {}, {}},
      {"a1", {"a1"}, {"a1"}},
      {"A1b2", {"a1", "b2"}, {"a1", "b2"}},
      {"-1", {"-1"}, {"-1"}},
      {"- a1", {"a1"}, {"a1"}},
      {"a- b-", {}, {}},
      {"hh ah 0", {"0"}, {"0"}},
      {"", {}, {}},
  };
  ExpectCuts(LANGUAGE_AMERICAN_ENGLISH, cases);
}

TEST(Cutting, UnregisteredLanguagesAreCutAsMandarin) {
  for (const int language : UnregisteredIds()) {
    EXPECT_EQ(Cut(language, "fangan", false), (Pieces{"fang", "an"})) << language;
    EXPECT_EQ(Cut(language, "fangan", true), (Pieces{"gan", "fan"})) << language;
    EXPECT_EQ(Cut(language, "ni3xyz3", false), (Pieces{"ni3", "xyz3"})) << language;
    EXPECT_EQ(Cut(language, "neihou", false), (Pieces{"nei", "hou"})) << language;
    EXPECT_EQ(Cut(language, "jyut", false), Pieces{}) << language;
  }
}

// Each of the 256 bytes between "ni" and "hao".
TEST(Cutting, EveryByteBetweenTwoSyllables) {
  const std::map<char, Pieces> letters = {
      {'a', {"nia", "hao"}},     {'c', {"ni", "chao"}},     {'e', {"nie", "hao"}},
      {'m', {"ni", "m", "hao"}}, {'n', {"nin", "hao"}},     {'o', {"ni", "o", "hao"}},
      {'s', {"ni", "shao"}},     {'u', {"niu", "hao"}},     {'z', {"ni", "zhao"}},
      {'A', {"ni", "a", "hao"}}, {'C', {"ni", "chao"}},     {'E', {"ni", "e", "hao"}},
      {'M', {"ni", "m", "hao"}}, {'N', {"ni", "n", "hao"}}, {'O', {"ni", "o", "hao"}},
      {'S', {"ni", "shao"}},     {'Z', {"ni", "zhao"}},
  };
  const std::string separators = " \t\n\v\f\r`'";
  for (int value = 0; value < 256; ++value) {
    const char byte = static_cast<char>(value);
    Pieces expected = {"ni"};  // cut off there
    if (letters.count(byte) == 1) {
      expected = letters.at(byte);
    } else if (separators.find(byte) != std::string::npos) {
      expected = {"ni", "hao"};
    } else if (byte >= '0' && byte <= '9') {
      expected = {"ni"s + byte, "hao"};
    }
    EXPECT_EQ(Cut(LANGUAGE_MANDARIN, "ni"s + byte + "hao", false), expected) << value;
  }
}

TEST(Cutting, LongTexts) {
  constexpr std::size_t kCount = 200'000;
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, Repeat("zhuang", kCount), false), Pieces(kCount, "zhuang"));
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, Repeat("zhuang", kCount), true), Pieces(kCount, "zhuang"));
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, Repeat("ni3", kCount), false), Pieces(kCount, "ni3"));
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, Repeat("Ni", kCount), false), Pieces(kCount, "ni"));
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, Repeat("5", kCount), false), Pieces(kCount, "5"));
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, Repeat("x", kCount), false), Pieces{});
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, Repeat("x", kCount), true), Pieces{});
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, Repeat(" ", kCount), false), Pieces{});
}

TEST(Cutting, LongPieces) {
  constexpr std::size_t kCount = 1'000'000;
  // passed on whole: the letters are "ni", with anything between them
  const std::string known = "n" + Repeat("-", kCount) + "i3";
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, known, false), Pieces{known});
  // passed on whole: the letters are not a syllable, the digit keeps the piece uncut
  const std::string unknown = Repeat("ni", kCount) + "3";
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, unknown, false), Pieces{unknown});
  // seven letters, then many other bytes: no syllable, cut again
  const std::string again = " zhuangs" + Repeat("-", kCount);
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, again, false), Pieces{"zhuang"});
  EXPECT_EQ(Cut(LANGUAGE_MANDARIN, again, true), Pieces{});
}

TEST(Cutting, ReturnsZeroAndEmptiesTheListWhateverTheText) {
  for (const char* text : {"", " ", "xyz", "xyz3", "ni3", "\xff"}) {
    for (const bool backward : {false, true}) {
      Pieces pieces = {"stale", "stale", "stale", "stale"};
      EXPECT_EQ(pyw2py(LANGUAGE_MANDARIN, text, pieces, backward), 0) << text;
      for (const std::string& piece : pieces) EXPECT_NE(piece, "stale") << text;
    }
  }
}

}  // namespace qeo::sp
