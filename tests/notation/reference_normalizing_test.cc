// The normalisers against their second, simple implementation: a table that both agree with,
// random texts under random rules, and every character of the basic plane.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "notation/notation.h"
#include "tests/notation/normalizing.h"
#include "tests/reference/compare.h"
#include "tests/reference/normalizing.h"

namespace qeo::notation {
namespace {

using sp::reference::Reading;

constexpr int kTexts = 8000;  // of each of the two kinds of Chinese
constexpr int kPronunciations = 4000;

AliasTable Aliases() {
  ParsedAliases parsed =
      AliasTable::Parse("ni\tnei\nai\tngai\nla\tlaa\na\taa\nlaa\tnaa\ngwu\tgu\n");
  EXPECT_EQ(parsed.table.size(), 6U);
  return parsed.table;
}

// Whether the reference models the text; then it must agree.
bool ExpectSame(const Normalized& result, const std::optional<Reading>& expected,
                const std::string& text) {
  if (!expected) return false;
  EXPECT_TRUE(sp::reference::Same(result, *expected))
      << sp::reference::Show(text) << "\nthe library: " << sp::reference::Show(result)
      << "\nthe reference: " << sp::reference::Show(*expected);
  return true;
}

struct Case {
  std::string text;
  std::string expected;  // the text as a literal, and the problems
};

template <typename Library, typename Reference>
void ExpectCases(const std::vector<Case>& cases, Library library, Reference reference) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(sp::reference::Show(library(c.text)), c.expected);
    const std::optional<Reading> reading = reference(c.text);
    ASSERT_TRUE(reading);
    EXPECT_EQ(sp::reference::Show(*reading), c.expected);
  }
}

}  // namespace

TEST(ReferenceNormalizing, Pinyin) {
  ExpectCases(
      {
          {"Nǐhǎo, Xī'ān", "\"ni3 hao3 xi1 an1\"s"},
          {"lu:4 LÜ4 lue4 xv1 yu:2", "\"lv4 lv4 lve4 xu1 yu2\"s"},
          {"ma0 ma3ma", "\"ma5 ma3ma5\"s"},
          {"dian3r5 nar4", "\"dian3 er5 na4 er5\"s"},
          {"yīdīngdiǎnr", "\"yi1 ding1 dian3 er5\"s"},
          {"pǔr5 xiàohuar5", "\"pu3 er5 xiao4 hua5 er5\"s"},
          {"ér5 pǔr3", "\"\"s, bad tone 0+4, bad tone 5+5"},
          {"Hénán Hén'án", "\"he2 nan2 hen2 an2\"s"},
          {"yidianr NiHao", "\"yi dian er ni hao\"s"},
          {"ｎｉ３ ni³", "\"ni3 ni3\"s"},
          {"wu3 ａ ji2", "\"wu3 ji2\"s, foreign text 4+3"},
          {"hao3 ａ\u0304", "\"hao3 a1\"s"},
          {"san1 P MP3恤", "\"san1\"s, foreign text 5+1, foreign text 7+6"},
          {"xx5 biáng", "\"\"s, unknown syllable 0+3, unknown syllable 4+6"},
          {"ni33 ni6 nǐ3", "\"ni3\"s, bad tone 3+1, bad tone 5+3, bad tone 9+4"},
          {"ni3\xff\xfe hao3", "\"ni3 hao3\"s, invalid UTF-8 3+2"},
      },
      [](const std::string& text) { return NormalizePinyin(text); },
      [](const std::string& text) { return sp::reference::NormalizePinyin(text, kPinyinRules); });
}

TEST(ReferenceNormalizing, Jyutping) {
  const AliasTable aliases = Aliases();
  ExpectCases(
      {
          {"wan2gung1 Nei5", "\"wan2 gung1 nei5\"s"},
          {"ai3ni5", "\"ngai3 nei5\"s"},
          {"goni laam", "\"go nei laam\"s"},
          {"hou2，VQ6 ngo7", "\"hou2 ngo7\"s, foreign text 7+3"},
          {"hon0 sik8 néi5", "\"\"s, bad tone 0+4, bad tone 5+4, foreign text 10+5"},
      },
      [&](const std::string& text) { return NormalizeJyutping(text, kJyutpingRules, &aliases); },
      [&](const std::string& text) {
        return sp::reference::NormalizeJyutping(text, kJyutpingRules, &aliases);
      });
}

TEST(ReferenceNormalizing, Arpabet) {
  ExpectCases(
      {
          {"HH AH0 L OW1", "\"hh ax 0, l ow 1\"s"},
          {"EH1 K S T R AH", "\"eh k 1, s t r ah 0\"s"},
          {"T S UW0", "\"t 0, s uw 0\"s"},
          {"B1 QQ AA3", "\"b aa 0\"s, bad tone 1+1, unknown phone 3+2, bad tone 8+1"},
      },
      [](const std::string& text) { return ArpabetToPronunciation(text); },
      [](const std::string& text) {
        return std::optional(sp::reference::ArpabetToPronunciation(text, kArpabetRules));
      });
  ExpectCases(
      {
          {"hh ax 0, l ow 1", "\"HH AH0 L OW1\"s"},
          {"t 0, qq aa 3, k", "\"T AA\"s, unknown phone 5+2, bad tone 11+1, bad tone 14+1"},
      },
      [](const std::string& text) { return PronunciationToArpabet(text); },
      [](const std::string& text) {
        return std::optional(sp::reference::PronunciationToArpabet(text));
      });
}

TEST(ReferenceNormalizing, RandomPinyin) {
  const std::vector<std::string> fragments = {
      "ni",   "hao",    "Hao",    "dian",   "ma",     "xian", "er",   "r",     "lue", "nve",
      "zhàn", "nán",    "Hé",     "an",     "a",      "e",    "n",    "g",     "ng",  "l",
      "j",    "v",      "u",      "u:",     "yu:",    "nu:",  "qu:",  "xv",    ":",   "ü",
      "ǚ",    "ǎ",      "ā",      "r5",     "pǔr",    "r0",   "é",    "ò",     "ī",   "ń",
      "ê",    "\u0300", "\u0301", "\u0308", "ɑ",      "ɡ",    "ñ",    "P",     "PK",  "A",
      "E",    "R",      "L",      "V",      "恤",     "，",   "·",    "'",     " ",   "\t",
      "0",    "1",      "3",      "5",      "6",      "33",   "５",   "³",     "ｎ",  "ａ",
      "Ｎ",   "：",     "#",      "＃",     "\u200b", "\xe4", "\xff", "\u20dd"};
  RandomTexts random;
  int modelled = 0;
  for (int i = 0; i < kTexts && !testing::Test::HasFailure(); ++i) {
    const std::string text = random.Text(fragments);
    const RuleSet rules = random.Below(2) == 0 ? kPinyinRules : random.Rules();
    const std::optional<Reading> expected = sp::reference::NormalizePinyin(text, rules);
    modelled += ExpectSame(NormalizePinyin(text, rules), expected, text) ? 1 : 0;
  }
  EXPECT_GT(modelled, kTexts * 9 / 10);
}

TEST(ReferenceNormalizing, RandomJyutping) {
  const std::vector<std::string> fragments = {
      "nei", "hou", "Hou", "ngai", "ai",  "ni", "gwu", "a",  "la",     "laa",    "m",    "ng",
      "aa",  "o",   "i",   "go",   "lue", "r",  "u:",  ":",  "A",      "T",      "VQ",   "H",
      "恤",  "，",  "'",   " ",    " ",   "0",  "1",   "5",  "7",      "8",      "22",   "５",
      "ｎ",  "Ｎ",  "á",   "ü",    "ɡ",   "@",  "x",   "xx", "\u0301", "\u200b", "\xe5", "\xff"};
  const AliasTable aliases = Aliases();
  RandomTexts random;
  int modelled = 0;
  for (int i = 0; i < kTexts && !testing::Test::HasFailure(); ++i) {
    const std::string text = random.Text(fragments);
    const RuleSet rules = random.Below(2) == 0 ? kJyutpingRules : random.Rules();
    const AliasTable* const table = random.Below(2) == 0 ? &aliases : nullptr;
    const std::optional<Reading> expected = sp::reference::NormalizeJyutping(text, rules, table);
    modelled += ExpectSame(NormalizeJyutping(text, rules, table), expected, text) ? 1 : 0;
  }
  EXPECT_GT(modelled, kTexts * 9 / 10);
}

// Texts that are of ASCII but for letters of full width.
TEST(ReferenceNormalizing, RandomLetters) {
  const std::vector<std::string> fragments = {"ni", "a",  "Ni3", "r",   " ",  " ",  "-", ".", "5",
                                              "ａ", "ｒ", " ａ", "ａ ", "ｍ", "Ａ", ":", "ü", "，"};
  RandomTexts random;
  int foreign = 0;
  for (int i = 0; i < kTexts && !testing::Test::HasFailure(); ++i) {
    const std::string text = random.Text(fragments);
    const RuleSet rules = random.Below(2) == 0 ? kPinyinRules : random.Rules();
    const Normalized result = NormalizePinyin(text, rules);
    ExpectSame(result, sp::reference::NormalizePinyin(text, rules), text);
    ExpectSound(sp::LANGUAGE_MANDARIN, text, result);
    const bool is_foreign = std::any_of(
        result.problems.begin(), result.problems.end(), [&text](const Problem& problem) {
          return text.compare(problem.range.offset, problem.range.length, "ａ") == 0;
        });
    foreign += is_foreign ? 1 : 0;
  }
  EXPECT_GT(foreign, 100);
}

TEST(ReferenceNormalizing, RandomPronunciations) {
  const std::vector<std::string> fragments = {
      "HH ", "hh ", "AH ", "AH0 ", "ah0", "AH1 ", "ow2 ", "OW ", "K ", "s ",   "T ",   "r ",
      "ng ", "ax ", "SIL", "qq ",  " ",   "\t",   "0",    "1",   "3",  " 0, ", " 1, ", " 4, ",
      ",",   "ow ", "y ",  "l ",   "sh ", "aa",   "B ",   "M ",  "v ", "\xff", "ä",    "12"};
  RandomTexts random;
  for (int i = 0; i < kPronunciations && !testing::Test::HasFailure(); ++i) {
    const std::string text = random.Text(fragments);
    const RuleSet rules = random.Rules();
    ExpectSame(ArpabetToPronunciation(text, rules),
               sp::reference::ArpabetToPronunciation(text, rules), text);
    ExpectSame(PronunciationToArpabet(text), sp::reference::PronunciationToArpabet(text), text);
  }
}

// Letter, mark, digit, separator or foreign: after a letter, before a digit. None is lost.
TEST(ReferenceNormalizing, EveryCharacterOfTheBasicPlane) {
  for (unsigned c = 0; c < 0x10000 && !testing::Test::HasFailure(); ++c) {
    std::string text = "lu";
    if (c < 0x80) {
      text += static_cast<char>(c);
    } else {  // surrogates too: they are invalid
      if (c >= 0x800) text += static_cast<char>(0xe0 | c >> 12U);
      text += static_cast<char>(c < 0x800 ? 0xc0 | c >> 6U : 0x80 | (c >> 6U & 0x3fU));
      text += static_cast<char>(0x80 | (c & 0x3fU));
    }
    text += "4";
    const Normalized result = NormalizePinyin(text);
    EXPECT_TRUE(ExpectSame(result, sp::reference::NormalizePinyin(text, kPinyinRules), text));
    ExpectSound(sp::LANGUAGE_MANDARIN, text, result);
  }
}

}  // namespace qeo::notation
