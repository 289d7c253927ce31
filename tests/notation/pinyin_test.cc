// Pinyin as it is written, to the library's notation: each rule on and off, every kind of problem,
// the offsets, real dictionaries, and what must hold for any bytes at all.

#include "notation/pinyin.h"

#include <gtest/gtest.h>
#include <utf8proc.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "notation/spelling.h"
#include "phoneme/phoneme.h"
#include "tests/notation/normalizing.h"
#include "tests/testing.h"

namespace qeo::notation {
namespace {

using sp::LANGUAGE_MANDARIN;

struct Case {
  std::string input;
  std::string text;
  std::string applied;   // as Show writes it
  std::string problems;  // likewise
};

void ExpectCases(const std::vector<Case>& cases, RuleSet rules = kPinyinRules) {
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.input));
    const Normalized result = NormalizePinyin(c.input, rules);
    EXPECT_EQ(result.text, c.text);
    EXPECT_EQ(Show(result.applied), c.applied);
    EXPECT_EQ(Show(result.problems), c.problems);
    ExpectSound(LANGUAGE_MANDARIN, c.input, result);
  }
}

std::vector<unsigned short> Codes(const std::string& text) {
  std::vector<unsigned short> codes = {999};
  EXPECT_EQ(sp::py2code(LANGUAGE_MANDARIN, text, codes), 0) << text;
  return codes;
}

}  // namespace

TEST(NormalizePinyin, WhatTheLibraryReadsStaysAsItIs) {
  ExpectCases({
      {"", "", "", ""},
      {"ni3 hao3", "ni3 hao3", "", ""},
      {"ni3hao3", "ni3hao3", "", ""},
      {"nihao", "nihao", "", ""},
      {"yipinguo", "yipinguo", "", ""},
      {"lv4 ng2 m2 hng5 er2", "lv4 ng2 m2 hng5 er2", "", ""},
      {"  ni3\t\n hao3 ", "ni3 hao3", "", ""},
      {"xi1'an1 xi1`an1", "xi1 an1 xi1 an1", "", ""},
      {" ' ", "", "", ""},
      // a word without tones is not judged: who cuts it reports what is lost
      {"hello", "hello", "", ""},
      {"xx", "xx", "", ""},
  });
}

TEST(NormalizePinyin, Capitals) {
  ExpectCases({
      {"Ni3 hao3", "ni3 hao3", "", ""},
      {"Ni3Hao3", "ni3hao3", "", ""},
      {"NiHao", "ni hao", "", ""},
      {"XiAn", "xi an", "", ""},
      {"Xi'An", "xi an", "", ""},
      {"A1 la1 bo2", "a1 la1 bo2", "", ""},
      {"E2 guo2", "e2 guo2", "", ""},
      {"BěiJīng", "bei3 jing1", "tone-mark 1+2, tone-mark 5+2", ""},
  });
}

TEST(NormalizePinyin, FullWidth) {
  ExpectCases({
      {"ｎｉ３ｈａｏ３", "ni3hao3", "full-width 0+21", ""},
      {"Ｎｉ3", "ni3", "full-width 0+6", ""},
      {"ni３", "ni3", "full-width 2+3", ""},
      {"ni³ hao³", "ni3 hao3", "full-width 2+2, full-width 8+2", ""},
      {"ni₃", "ni3", "full-width 2+3", ""},
      {"ma０", "ma5", "full-width 2+3, neutral-tone 2+3", ""},
      {"ｌｕ：４", "lv4", "full-width 0+9, diaeresis 3+6, full-width 9+3", ""},
      {"ａ̄", "a1", "full-width 0+5, tone-mark 0+5", ""},
      {"\u212aa1", "ka1", "full-width 0+3", ""},  // the Kelvin sign
      {"ma1\u1fefla1\u037e", "ma1 la1", "punctuation 3+3, punctuation 9+2", ""},
      {"Ｐ", "", "abbreviation 0+3", "foreign text 0+3"},
  });
  ExpectCases(
      {
          {"ｎｉ３", "", "", "foreign text 0+9"},
          {"ni3", "ni3", "", ""},
          {"ni³", "ni", "", "foreign text 2+2"},
          {"\u212aa1", "", "", "foreign text 0+5"},
          {"lu：4", "lu", "punctuation 2+3", "foreign text 5+1"},
          {"ni3，", "ni3", "punctuation 3+3", ""},
      },
      kPinyinRules.Without(Rule::kFullWidth));
}

TEST(NormalizePinyin, Punctuation) {
  ExpectCases({
      {"Sai4 · ao4", "sai4 ao4", "punctuation 5+2", ""},
      {"ni3，hao3。", "ni3 hao3", "punctuation 3+3, punctuation 10+3", ""},
      {"ni3, hao3!?", "ni3 hao3", "punctuation 3+1, punctuation 9+2", ""},
      {"[ni3]　(hao3)", "ni3 hao3", "punctuation 0+1, punctuation 4+5, punctuation 13+1", ""},
      {"ni3·hao3・a5･", "ni3 hao3 a5", "punctuation 3+2, punctuation 9+3, punctuation 14+3", ""},
      {"ni3∙hao3⋅", "ni3 hao3", "punctuation 3+3, punctuation 10+3", ""},
      {"xi1’an1", "xi1 an1", "punctuation 3+3", ""},
      {"xi1ʼan1", "xi1 an1", "punctuation 3+2", ""},
      {"xi1\u02bban1", "xi1 an1", "punctuation 3+2", ""},  // the apostrophe turned
      {"ni3-hao3_a5", "ni3 hao3 a5", "punctuation 3+1, punctuation 8+1", ""},
      {"ni3\u2028hao3\u2029a1", "ni3 hao3 a1", "punctuation 3+3, punctuation 10+3", ""},
      {"ni3\u00a0hao3\u200b", "ni3 hao3", "punctuation 3+2, punctuation 9+3", ""},
      {"\ufeffni3", "ni3", "punctuation 0+3", ""},
      {"mu4: lu4:", "mu4 lu4", "punctuation 3+1, punctuation 8+1", ""},
      {"mùlù: yī", "mu4 lu4 yi1", "tone-mark 1+2, tone-mark 4+2, punctuation 6+1, tone-mark 9+2",
       ""},
      {"shu: 1", "shu", "punctuation 3+1", "foreign text 5+1"},
      {"hau:3", "hau", "punctuation 3+1", "foreign text 4+1"},
  });
  ExpectCases(
      {
          {"ni3，hao3", "ni3 hao3", "", "foreign text 3+3"},
          {"ni3'hao3", "ni3 hao3", "", ""},
          {"ma1\u1fefla1", "ma1 la1", "", "foreign text 3+3"},
          {"lu:4:", "lv4", "diaeresis 1+2", "foreign text 4+1"},
      },
      kPinyinRules.Without(Rule::kPunctuation));
}

TEST(NormalizePinyin, Diaeresis) {
  ExpectCases({
      {"lu:4", "lv4", "diaeresis 1+2", ""},
      {"LU:4 Nu:3", "lv4 nv3", "diaeresis 1+2, diaeresis 6+2", ""},
      {"lu:e4", "lve4", "diaeresis 1+2", ""},
      {"lü4 Lü4 LÜ4", "lv4 lv4 lv4", "diaeresis 1+2, diaeresis 6+2, diaeresis 11+2", ""},
      {"lu\u03084", "lv4", "diaeresis 1+3", ""},
      {"lue4 nue4", "lve4 nve4", "diaeresis 1+1, diaeresis 6+1", ""},
      {"lüe4", "lve4", "diaeresis 1+2", ""},
      {"nü'er", "nv er", "diaeresis 1+2", ""},
      {"nühai", "nvhai", "diaeresis 1+2", ""},
      {"celue", "ce lve", "diaeresis 3+1", ""},
      {"lu:", "lv", "diaeresis 1+2", ""},
      // a colon of full width is named, in its place
      {"lu：4 NU：3", "lv4 nv3", "diaeresis 1+4, full-width 2+3, diaeresis 8+4, full-width 9+3",
       ""},
      {"yu：4", "yu4", "diaeresis 1+4, full-width 2+3", ""},
      // after j, q, x and y the dots are not written
      {"jü4 qu:3 xv1 yü2", "ju4 qu3 xu1 yu2",
       "diaeresis 1+2, diaeresis 6+2, diaeresis 11+1, diaeresis 15+2", ""},
      {"lǚ nǜ lüè", "lv3 nv4 lve4",
       "diaeresis 1+2, tone-mark 1+2, diaeresis 5+2, tone-mark 5+2, diaeresis 9+2, tone-mark 11+2",
       ""},
      {"lv̌ luè", "lv3 lve4", "tone-mark 1+3, diaeresis 6+1, tone-mark 7+2", ""},
      {"lu:è", "lve4", "diaeresis 1+2, tone-mark 3+2", ""},
      // a colon with something else before it
      {"jñu:4", "", "punctuation 4+1", "foreign text 0+4, foreign text 5+1"},
      {"luñ:e4", "e4", "punctuation 4+1", "foreign text 0+4"},
      // dots where none can be
      {"ë4", "", "", "foreign text 0+3"},
      {"shü1", "", "", "unknown syllable 0+5"},
  });
  ExpectCases(
      {
          {"lu:4", "lu", "punctuation 2+1", "foreign text 3+1"},
          {"lü4", "", "", "foreign text 0+4"},
          {"lue4 jv4", "", "", "unknown syllable 0+4, unknown syllable 5+3"},
          {"celue", "celue", "", ""},
      },
      kPinyinRules.Without(Rule::kDiaeresis));
}

TEST(NormalizePinyin, ToneMarks) {
  ExpectCases({
      {"ā á ǎ à a", "a1 a2 a3 a4 a5",
       "tone-mark 0+2, tone-mark 3+2, tone-mark 6+2, tone-mark 9+2, tone-mark 12+1", ""},
      {"a\u0304 a\u0301 a\u030c a\u0300", "a1 a2 a3 a4",
       "tone-mark 0+3, tone-mark 4+3, tone-mark 8+3, tone-mark 12+3", ""},
      // the breve is written for the caron
      {"nĭ hăo", "ni3 hao3", "tone-mark 1+2, tone-mark 5+2", ""},
      // marks in either order
      {"lu\u0308\u030c lu\u030c\u0308 lṻ", "lv3 lv3 lv1",
       "diaeresis 1+5, tone-mark 1+5, diaeresis 8+5, tone-mark 8+5, diaeresis 15+3, "
       "tone-mark 15+3",
       ""},
      {"ḿ m\u0300 ń ň ǹ ńg ňg hm\u0300 hǹg", "m2 m4 n2 n3 n4 ng2 ng3 hm4 hng4",
       "tone-mark 0+3, tone-mark 4+3, tone-mark 8+2, tone-mark 11+2, tone-mark 14+2, "
       "tone-mark 17+2, tone-mark 21+2, tone-mark 26+3, tone-mark 31+2",
       ""},
      {"ɡē ɑ̄", "ge1 a1", "tone-mark 0+2, tone-mark 2+2, tone-mark 5+4", ""},
      {"ɡe1", "ge1", "tone-mark 0+2", ""},
      {"Ā Ēn", "a1 en1", "tone-mark 0+2, tone-mark 3+2", ""},
      {"BĚIJĪNG", "bei3 jing1", "tone-mark 1+2, tone-mark 5+2", ""},
      {"nǐ hao3 ma", "ni3 hao3 ma5", "tone-mark 1+2, tone-mark 9+2", ""},
      // a mark that follows digits
      {"ni3 nǐhǎo", "ni3 ni3 hao3", "tone-mark 5+2, tone-mark 8+2", ""},
      {"ni3nǐhǎo", "ni3ni3 hao3", "tone-mark 4+2, tone-mark 7+2", ""},
      // a mark on the wrong vowel is still in its syllable
      {"haǒ", "hao3", "tone-mark 2+2", ""},
  });
  ExpectCases(
      {
          {"nǐ hao", "hao", "", "foreign text 0+3"},
          {"ɡe1 ê", "", "", "foreign text 0+4, foreign text 5+2"},
          {"lü4", "lv4", "diaeresis 1+2", ""},
      },
      kPinyinRules.Without(Rule::kToneMark));
}

TEST(NormalizePinyin, MarkedWordsAreCut) {
  struct {
    const char* input;
    const char* text;
  } const cases[] = {
      {"nǐhǎo", "ni3 hao3"},
      {"Běijīng", "bei3 jing1"},
      {"xī'ān", "xi1 an1"},
      {"xīān", "xi1 an1"},
      {"xiān", "xian1"},
      {"yīdīngdiǎnr", "yi1 ding1 dian3 er5"},
      {"yīdīngdiǎn er", "yi1 ding1 dian3 er5"},
      {"péngyou", "peng2 you5"},
      {"nǚér", "nv3 er2"},
      {"tiānānmén", "tian1 an1 men2"},
      // of cuts into as many syllables, the one that needs no apostrophe
      {"Hénán", "he2 nan2"},
      {"Hén'án", "hen2 an2"},
      {"dàngāo", "dan4 gao1"},
      {"sānge", "san1 ge5"},
      {"fāng'àn", "fang1 an4"},
      // then the one whose first syllable is the longest
      {"shānguān", "shan1 guan1"},
      {"yīngguó", "ying1 guo2"},
      // m and n carry a mark only where there is no vowel
      {"xī'ń", "xi1 n2"},
      {"tāḿ", "ta1 m2"},
      {"nǚer", "nv3 er5"},
      {"mhǎo", "m5 hao3"},
      // erhua, and what only looks like it
      {"diēr", "die1 er5"},
      {"yuèr", "yue4 er5"},
      {"dìer", "di4 er5"},
      {"huār", "hua1 er5"},
      {"nǚrén", "nv3 ren2"},
      {"yīhuìr", "yi1 hui4 er5"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.input);
    const Normalized result = NormalizePinyin(c.input);
    EXPECT_EQ(result.text, c.text);
    EXPECT_EQ(Show(result.problems), "");
    ExpectSound(LANGUAGE_MANDARIN, c.input, result);
  }
}

TEST(NormalizePinyin, NeutralTone) {
  ExpectCases({
      {"ma1 ma0", "ma1 ma5", "neutral-tone 6+1", ""},
      {"ma1 ma", "ma1 ma5", "neutral-tone 4+2", ""},
      {"ma1ma", "ma1ma5", "neutral-tone 3+2", ""},
      {"BeiJing1", "bei5 jing1", "neutral-tone 0+3", ""},
      {"xi an1", "xi5 an1", "neutral-tone 0+2", ""},
      {"ma", "ma", "", ""},  // no text with digits
      {"hellO MP3", "hell", "abbreviation 4+1, abbreviation 6+3",
       "foreign text 4+1, foreign text 6+3"},
  });
  ExpectCases(
      {
          {"ma1 ma0", "ma1 ma0", "", ""},
          {"ma1 ma", "ma1 ma", "", ""},
          {"BeiJing1", "bei jing1", "", ""},
          {"mā ma", "ma1 ma5", "tone-mark 1+2, tone-mark 4+2", ""},
      },
      kPinyinRules.Without(Rule::kNeutralTone));
}

TEST(NormalizePinyin, Erhua) {
  ExpectCases({
      {"dian3 r5", "dian3 er5", "erhua 6+1", ""},
      {"dian3r5", "dian3 er5", "erhua 5+1", ""},
      {"dian3r5hao3", "dian3 er5 hao3", "erhua 5+1", ""},
      {"dian3 r", "dian3 er5", "erhua 6+1, neutral-tone 6+1", ""},
      {"dian3 r0", "dian3 er5", "erhua 6+1, neutral-tone 7+1", ""},
      {"diǎn r", "dian3 er5", "tone-mark 2+2, erhua 6+1, tone-mark 6+1", ""},
      {"dian r", "dian er", "erhua 5+1", ""},
      {"dian3 r4", "dian3", "", "bad tone 6+2"},
      // after a word with marks its digit is the r's
      {"pǔr5", "pu3 er5", "tone-mark 1+2, erhua 3+1", ""},
      {"pǔr0", "pu3 er5", "tone-mark 1+2, erhua 3+1, neutral-tone 4+1", ""},
      {"xiàohuar5", "xiao4 hua5 er5", "tone-mark 2+2, tone-mark 5+3, erhua 8+1", ""},
      {"gēr5 NǎR5", "ge1 er5 na3 er5", "tone-mark 1+2, erhua 3+1, tone-mark 7+2, erhua 9+1", ""},
      {"pǔr55hǎo", "pu3 er5 hao3", "tone-mark 1+2, erhua 3+1, tone-mark 7+2", "bad tone 5+1"},
      {"pǔr3", "", "", "bad tone 0+5"},
      {"pǔ5", "", "", "bad tone 0+4"},
      {"biángr5", "", "", "unknown syllable 0+8"},
      // but not where it would be that of a syllable er
      {"ér5 ěr0", "", "", "bad tone 0+4, bad tone 5+4"},
      {"nǚér5 nǚer5", "", "", "bad tone 0+7, bad tone 8+6"},
  });
  ExpectCases(
      {
          {"dian3 r5", "dian3", "", "unknown syllable 6+2"},
          {"dianr3", "dian3 er5", "fused-erhua 4+2", ""},
          {"pǔr5", "", "", "bad tone 0+5"},
      },
      kPinyinRules.Without(Rule::kErhua));
}

TEST(NormalizePinyin, FusedErhua) {
  ExpectCases({
      {"dianr3", "dian3 er5", "fused-erhua 4+2", ""},
      {"nar4 huar1", "na4 er5 hua1 er5", "fused-erhua 2+2, fused-erhua 8+2", ""},
      {"zher4hao3", "zhe4 er5 hao3", "fused-erhua 3+2", ""},
      {"ming2 dianr0", "ming2 dian5 er5", "fused-erhua 10+2, neutral-tone 11+1", ""},
      {"ming2 dianr", "ming2 dian5 er5", "neutral-tone 6+5, fused-erhua 10+1", ""},
      {"ar4", "a4 er5", "fused-erhua 1+2", ""},
      {"dianr", "dian er", "fused-erhua 4+1", ""},
      {"yidianr", "yi dian er", "fused-erhua 6+1", ""},
      {"nihaodianrma", "nihao dian er ma", "fused-erhua 9+1", ""},
      {"jierker", "jier ke er", "fused-erhua 6+1", ""},  // the cut that rewrites less
      {"xuenrer", "xuen re er", "fused-erhua 6+1", ""},  // the one that lacks fewer apostrophes
      {"nür3", "nv3 er5", "diaeresis 1+2, fused-erhua 3+2", ""},
      {"luer4", "lve4 er5", "diaeresis 1+1, fused-erhua 3+2", ""},
      {"luèr ma", "lve4 er5 ma5", "diaeresis 1+1, tone-mark 2+2, fused-erhua 4+1, tone-mark 6+2",
       ""},
      {"nuer", "nuer", "", ""},  // nu and er
      {"er2 ren2", "er2 ren2", "", ""},
      {"dianren", "dianren", "", ""},
      {"xxdianr", "xx dian er", "fused-erhua 6+1", ""},  // the cut that leaves out xx
      {"hamburger", "ham bu er ge er", "fused-erhua 5+1, fused-erhua 8+1", ""},
      // Alone, letters that were left out would be read.
      {"rdianr", "dian er", "fused-erhua 5+1", "unknown syllable 0+1"},
      {"nanrmnanr", "nan er nan er", "fused-erhua 3+1, fused-erhua 8+1", "unknown syllable 4+1"},
      {"nanrhm", "nan er", "fused-erhua 3+1", "unknown syllable 4+2"},
      {"nanrwong", "nan er wong", "fused-erhua 3+1", ""},
      {"mr4", "", "", "unknown syllable 0+3"},  // no vowel
      {"xr4", "", "", "unknown syllable 0+3"},
  });
  ExpectCases(
      {
          {"dianr3", "", "", "unknown syllable 0+6"},
          {"yidianr", "yidianr", "", ""},
          {"diǎnr", "", "", "unknown syllable 0+6"},
          {"dian3r", "dian3 er5", "erhua 5+1, neutral-tone 5+1", ""},
          {"pǔr5", "pu3 er5", "tone-mark 1+2, erhua 3+1", ""},
      },
      kPinyinRules.Without(Rule::kFusedErhua));
}

TEST(NormalizePinyin, Abbreviations) {
  ExpectCases({
      {"san1 P", "san1", "abbreviation 5+1", "foreign text 5+1"},
      {"ka3 la1 O K", "ka3 la1", "abbreviation 8+1, abbreviation 10+1",
       "foreign text 8+1, foreign text 10+1"},
      {"PK", "", "abbreviation 0+2", "foreign text 0+2"},
      {"T恤", "", "abbreviation 0+1", "foreign text 0+4"},
      {"MP3 hao3", "hao3", "abbreviation 0+3", "foreign text 0+3"},
      {"ka3 P4", "ka3", "abbreviation 4+2", "foreign text 4+2"},
      {"PKsai4", "sai4", "abbreviation 0+2", "foreign text 0+2"},
      {"TVzhàn", "zhan4", "abbreviation 0+2, tone-mark 4+2", "foreign text 0+2"},
      {"A Q zheng4", "zheng4", "abbreviation 0+1, abbreviation 2+1",
       "foreign text 0+1, foreign text 2+1"},
      {"A12", "", "abbreviation 0+3", "foreign text 0+3"},
      // a v is not a mark, also where it would be u with diaeresis
      {"XV", "", "abbreviation 0+2", "foreign text 0+2"},
      {"JV3 QVC Lv4", "lv4", "abbreviation 0+3, abbreviation 4+3",
       "foreign text 0+3, foreign text 4+3"},
      {"XÜ4 QU:4", "xu4 qu4", "diaeresis 1+2, diaeresis 6+2", ""},
      // its digit is not a tone
      {"NA3 nihao", "nihao", "abbreviation 0+3", "foreign text 0+3"},
      // a small letter of full width in a text of ASCII
      {"wu3 ａ ji2", "wu3 ji2", "abbreviation 4+3", "foreign text 4+3"},
      {"ａ ji", "ji", "abbreviation 0+3", "foreign text 0+3"},
      {"hao3 ａ\u0304", "hao3 a1", "full-width 5+5, tone-mark 5+5", ""},
      {"hao3 ａ ａ\u0304", "hao3 a5 a1",
       "full-width 5+3, tone-mark 5+3, full-width 9+5, tone-mark 9+5", ""},
      {"3 ａ", "", "abbreviation 2+3", "foreign text 0+1, foreign text 2+3"},
      {"-ａ- ji2 (ｂ)", "ji2",
       "punctuation 0+1, abbreviation 1+3, punctuation 4+1, punctuation 10+1, abbreviation 11+3, "
       "punctuation 14+1",
       "foreign text 1+3, foreign text 11+3"},
      // but not with a digit, in a word, or where there is more beyond ASCII
      {"wu3 ａ5 ji2", "wu3 a5 ji2", "full-width 4+3", ""},
      {"wu3 ａi5", "wu3 ai5", "full-width 4+3", ""},
      {"wu3 bａ5 ａ", "wu3 ba5 a5", "full-width 5+3, full-width 10+3, neutral-tone 10+3", ""},
      {"wu3 ａａ5 ａ", "wu3 a5", "full-width 12+3, neutral-tone 12+3", "unknown syllable 4+7"},
      {"wu３ ａ", "wu3 a5", "full-width 2+3, full-width 6+3, neutral-tone 6+3", ""},
      {"wǔ ａ", "wu3 a5", "tone-mark 1+2, full-width 4+3, tone-mark 4+3", ""},
      {"wu3 ａ，", "wu3 a5", "full-width 4+3, neutral-tone 4+3, punctuation 7+3", ""},
      {"ａ", "a", "full-width 0+3", ""},
      {"ａ - ｏ", "a o", "full-width 0+3, punctuation 4+1, full-width 6+3", ""},
      {"wu3 ａ Ｂ", "wu3 a5", "full-width 4+3, neutral-tone 4+3, abbreviation 8+3",
       "foreign text 8+3"},
      {"wu3 a ji2", "wu3 a5 ji2", "neutral-tone 4+1", ""},
  });
  ExpectCases(
      {
          {"PK sai4", "sai4", "", "unknown syllable 0+2"},
          {"NI3 HAO3", "ni3 hao3", "", ""},
          {"A Q sai4", "a5 sai4", "neutral-tone 0+1", "unknown syllable 2+1"},
          {"wu3 ａ", "wu3 a5", "full-width 4+3, neutral-tone 4+3", ""},
      },
      kPinyinRules.Without(Rule::kAbbreviation));
}

TEST(NormalizePinyin, UnknownSyllables) {
  ExpectCases({
      {"xx5", "", "", "unknown syllable 0+3"},
      {"ni3 xx5 hao3", "ni3 hao3", "", "unknown syllable 4+3"},
      {"wu4 cue", "wu4", "", "unknown syllable 4+3"},
      {"nihao3", "", "", "unknown syllable 0+6"},  // which tone has ni?
      {"Beijing da4", "da4", "", "unknown syllable 0+7"},
      {"hǎox", "", "", "unknown syllable 0+5"},
      {"zhuangzhuang1", "", "", "unknown syllable 0+13"},
      // an unknown syllable is not read as two: only an apostrophe would separate them
      {"biáng", "", "", "unknown syllable 0+6"},
      {"fǎo", "", "", "unknown syllable 0+4"},
      {"wòng dìn", "", "", "unknown syllable 0+5, unknown syllable 6+4"},
      {"ńi", "", "", "unknown syllable 0+3"},
      {"àe", "", "", "unknown syllable 0+3"},
      {"wūlaěr", "", "", "unknown syllable 0+8"},
      {"nǐmenhǎoa", "", "", "unknown syllable 0+11"},
      {"nǐmenhǎo'a", "ni3 men5 hao3 a5",
       "tone-mark 1+2, tone-mark 3+3, tone-mark 7+2, tone-mark 11+1", ""},
      // the library has no notation for the sound of ê
      {"ế ê̄ ê", "", "", "unknown syllable 0+3, unknown syllable 4+4, unknown syllable 9+2"},
      {"ê", "", "", "unknown syllable 0+2"},
      {"Ê4", "", "", "unknown syllable 0+3"},
  });
}

TEST(NormalizePinyin, BadTones) {
  ExpectCases({
      {"ni6 hao3", "hao3", "", "bad tone 0+3"},
      {"ni33", "ni3", "", "bad tone 3+1"},
      {"zhang33", "zhang3", "", "bad tone 6+1"},
      {"ni345 hao3", "ni3 hao3", "", "bad tone 3+2"},
      {"nǐ3 hǎo", "hao3", "tone-mark 6+2", "bad tone 0+4"},
      {"ni9", "", "", "bad tone 0+3"},
      {"xx66", "", "", "unknown syllable 0+3, bad tone 3+1"},
  });
}

TEST(NormalizePinyin, ForeignText) {
  ExpectCases({
      {"你好", "", "", "foreign text 0+6"},
      {"ni3恤hao3", "ni3 hao3", "", "foreign text 3+3"},
      {"你nǐ好hǎo", "ni3 hao3", "tone-mark 4+2, tone-mark 10+2",
       "foreign text 0+3, foreign text 6+3"},
      {"señor3 ni3", "ni3", "", "foreign text 0+7"},
      {"señor3 nihao", "nihao", "", "foreign text 0+7"},
      {"naïve", "", "", "foreign text 0+6"},
      {"hªo", "", "", "foreign text 0+4"},
      {"u\u0308\u0308 u\u0308\u0302", "", "", "foreign text 0+5, foreign text 6+5"},
      {"straße", "", "", "foreign text 0+7"},
      {"na\u0303", "", "", "foreign text 0+4"},
      {"e\u0302\u0302 e\u0303\u0302", "", "", "foreign text 0+5, foreign text 6+5"},
      {"ma\u20dd ma\u0903", "", "", "foreign text 0+5, foreign text 6+5"},  // other sorts of marks
      {"a\u0304\u0301", "", "", "foreign text 0+5"},
      {"ć ṣ́", "", "", "foreign text 0+2, foreign text 3+5"},
      {"2024 nian2", "nian2", "", "foreign text 0+4"},
      {"ni3+hao3", "ni3 hao3", "", "foreign text 3+1"},
      {"ni3 #@", "ni3", "", "foreign text 4+2"},
      {"#ni3%hao3&a1*a2@a3\\", "ni3 hao3 a1 a2 a3", "",
       "foreign text 0+1, foreign text 4+1, foreign text 9+1, foreign text 12+1, "
       "foreign text 15+1, foreign text 18+1"},
      {"mâ3 ê3", "", "", "foreign text 0+4, unknown syllable 5+3"},
      {"ma3\u0308", "ma", "", "foreign text 2+3"},
      {"3\u0301", "", "", "foreign text 0+3"},
      {"3\u0302", "", "", "foreign text 0+3"},
      {" \u0301", "", "", "foreign text 0+3"},
      {std::string("ni3\0hao3", 8), "ni3 hao3", "", "foreign text 3+1"},
      {std::string("ma3\0你", 7), "ma3", "", "foreign text 3+4"},
      {"ни3", "", "", "foreign text 0+5"},
      {"한ni3", "ni3", "", "foreign text 0+3"},
      // a full-width sign that is equivalent to more than one character of ASCII
      {"ni3\uffe3", "ni3", "", "foreign text 3+3"},
  });
}

// Those of the Latin script are part of the word that they are in; the neighbours of its blocks
// are not.
TEST(NormalizePinyin, LettersOfOtherScripts) {
  ExpectCases({
      {"maɯ", "", "", "foreign text 0+4"},
      {"maα", "ma", "", "foreign text 2+2"},
      {"ma\u02af", "", "", "foreign text 0+4"},
      {"ma\u02b0", "ma", "", "foreign text 2+2"},  // a raised h
      {"ma\u1e9f", "", "", "foreign text 0+5"},
      {"ma\u1eff", "", "", "foreign text 0+5"},
      {"ma\u2c00", "ma", "", "foreign text 2+3"},  // Glagolitic
      {"ma\u2c60", "", "", "foreign text 0+5"},
      {"ma\u2c7f", "", "", "foreign text 0+5"},
      {"ma\u2c80", "ma", "", "foreign text 2+3"},  // Coptic
      {"ma\ua500", "ma", "", "foreign text 2+3"},  // Vai
      {"ma\ua723", "", "", "foreign text 0+5"},
      {"ma\ua7ff", "", "", "foreign text 0+5"},
      {"ma\ua800", "ma", "", "foreign text 2+3"},  // Syloti Nagri
      {"ma\ua840", "ma", "", "foreign text 2+3"},  // Phags-pa
      {"ma\uab30", "", "", "foreign text 0+5"},
      {"ma\uab70", "ma", "", "foreign text 2+3"},  // Cherokee
  });
}

TEST(NormalizePinyin, InvalidUtf8) {
  ExpectCases({
      {"ni3\xff\xfehao3", "ni3 hao3", "", "invalid UTF-8 3+2"},
      {"n\xc3", "n", "", "invalid UTF-8 1+1"},
      {"\xc0\x80", "", "", "invalid UTF-8 0+2"},          // overlong
      {"\xed\xa0\x80 a", "a", "", "invalid UTF-8 0+3"},   // surrogate
      {"\xf4\x90\x80\x80", "", "", "invalid UTF-8 0+4"},  // beyond the last code point
      {"h\xc7\x8e\xc7o", "ha3 o5", "tone-mark 1+2, tone-mark 4+1", "invalid UTF-8 3+1"},
      {"\xe4\xbd\xff\xe4\xbd\xa0", "", "", "invalid UTF-8 0+3, foreign text 3+3"},
  });
}

TEST(NormalizePinyin, ReadsNothingBehindTheEnd) {
  constexpr std::string_view kLonger = "nǐ āo";
  const Normalized first_mark_cut = NormalizePinyin(kLonger.substr(0, 2));
  EXPECT_EQ(first_mark_cut.text, "n");
  EXPECT_EQ(Show(first_mark_cut.problems), "invalid UTF-8 1+1");
  const Normalized second_mark_cut = NormalizePinyin(kLonger.substr(0, 5));
  EXPECT_EQ(second_mark_cut.text, "ni3");
  EXPECT_EQ(Show(second_mark_cut.problems), "invalid UTF-8 4+1");
}

TEST(NormalizePinyin, OriginsAreOffsetsInTheInput) {
  struct {
    const char* input;
    const char* text;
    std::vector<std::size_t> origins;
  } const cases[] = {
      {" ni3", "ni3", {1, 2, 3}},
      {"ni3  hao3", "ni3 hao3", {0, 1, 2, 3, 5, 6, 7, 8}},
      {"hǎo", "hao3", {0, 1, 3, 3}},
      {"nǐhǎo", "ni3 hao3", {0, 1, 1, 3, 3, 4, 6, 6}},
      {"lu:4", "lv4", {0, 1, 3}},
      {"dianr3", "dian3 er5", {0, 1, 2, 3, 4, 4, 4, 4, 4}},
      {"diǎnr", "dian3 er5", {0, 1, 2, 4, 4, 5, 5, 5, 5}},
      {"r5", "er5", {0, 0, 1}},
      {"ma1ma", "ma1ma5", {0, 1, 2, 3, 4, 4}},
      {"ni3恤hao3", "ni3 hao3", {0, 1, 2, 3, 6, 7, 8, 9}},
      {"ｎｉ３", "ni3", {0, 3, 6}},
      {"NiHao", "ni hao", {0, 1, 2, 2, 3, 4}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.input);
    const Normalized result = NormalizePinyin(c.input);
    EXPECT_EQ(result.text, c.text);
    EXPECT_EQ(result.origins, c.origins);
  }
}

TEST(NormalizePinyin, RulesOfOtherNotationsDoNothing) {
  RuleSet all = kPinyinRules;
  for (int i = 0; i < kRuleCount; ++i) all = all.With(static_cast<Rule>(i));
  ExpectCases({{"ni3hao3 LA1", "ni3hao3", "abbreviation 8+3", "foreign text 8+3"}}, all);
}

TEST(NormalizePinyin, WithoutRules) {
  ExpectCases(
      {
          {"Ni3 hao3", "ni3 hao3", "", ""},
          {"ni3hao", "ni3hao", "", ""},
          {"NiHao", "ni hao", "", ""},
          {"nǐ", "", "", "foreign text 0+3"},
          {"ni3, r5 dianr3 ma0", "ni3 ma0", "",
           "foreign text 3+1, unknown syllable 5+2, unknown syllable 8+6"},
      },
      RuleSet());
}

// Real text

namespace {

struct Line {
  std::string source_form;
  std::string ready;  // empty: the syllable table does not hold it
  std::string source;
};

std::vector<Line> Sample() {
  std::vector<Line> lines;
  for (const sp::Row& row : sp::ReadTsv(PHONEME_DATA_DIR "/mandarin.tsv", 5)) {
    lines.push_back({row[1], row[2], row[3]});
  }
  return lines;
}

std::string Convert(const std::string& text, utf8proc_option_t form) {
  utf8proc_uint8_t* converted = nullptr;
  const utf8proc_ssize_t length =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                   static_cast<utf8proc_ssize_t>(text.size()), &converted,
                   static_cast<utf8proc_option_t>(UTF8PROC_STABLE | form));
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(converted, &std::free);
  EXPECT_GE(length, 0);
  return {reinterpret_cast<const char*>(converted), static_cast<std::size_t>(length)};
}

}  // namespace

TEST(NormalizePinyinSample, EveryReadyLineIsReadAsItsReadyForm) {
  std::map<std::string, int> compared;
  for (const Line& line : Sample()) {
    if (line.ready.empty()) continue;
    const Normalized result = NormalizePinyin(line.source_form);
    EXPECT_EQ(Codes(result.text), Codes(line.ready)) << line.source_form;
    EXPECT_EQ(Show(result.problems), "") << line.source_form;
    ExpectSound(LANGUAGE_MANDARIN, line.source_form, result);
    ++compared[line.source];
  }
  EXPECT_EQ(compared, (std::map<std::string, int>{
                          {"aishell3", 512}, {"phrase-pinyin", 866}, {"unihan", 1502}}));
}

// Syllables that the table does not hold. No one of them is read as something else.
TEST(NormalizePinyinSample, OtherLinesAreReported) {
  std::vector<std::string> reported;
  for (const Line& line : Sample()) {
    if (!line.ready.empty()) continue;
    const Normalized result = NormalizePinyin(line.source_form);
    EXPECT_EQ(result.text, "") << line.source_form;
    EXPECT_EQ(Show(result.problems),
              "unknown syllable 0+" + std::to_string(line.source_form.size()));
    reported.push_back(line.source_form);
  }
  EXPECT_EQ(reported, (std::vector<std::string>{"ê̄", "ế", "ê̌", "ề", "biáng", "cèi", "dìn", "fiào",
                                                "nún", "tēi", "wòng"}));
}

// A phrase as one word, with the apostrophes that belong there.
TEST(NormalizePinyinSample, PhrasesAreCutRight) {
  int compared = 0;
  for (const Line& line : Sample()) {
    if (line.source != "phrase-pinyin") continue;
    std::string word;
    std::istringstream phrase(line.source_form);
    for (std::string syllable; phrase >> syllable;) {
      const char first = Convert(syllable, UTF8PROC_DECOMPOSE)[0];
      const bool is_vowel = first == 'a' || first == 'e' || first == 'o';
      word += !word.empty() && is_vowel ? "'" + syllable : syllable;
    }
    EXPECT_EQ(NormalizePinyin(word).text, line.ready) << word;
    ++compared;
  }
  EXPECT_EQ(compared, 866);
}

TEST(NormalizePinyinSample, NormalisationFormsMakeNoDifference) {
  const int forms[] = {UTF8PROC_DECOMPOSE, UTF8PROC_COMPOSE, UTF8PROC_DECOMPOSE | UTF8PROC_COMPAT,
                       UTF8PROC_COMPOSE | UTF8PROC_COMPAT};
  int compared = 0;
  int changed = 0;
  for (const Line& line : Sample()) {
    const std::string text = NormalizePinyin(line.source_form).text;
    for (const int form : forms) {
      const std::string converted = Convert(line.source_form, static_cast<utf8proc_option_t>(form));
      const Normalized result = NormalizePinyin(converted);
      EXPECT_EQ(result.text, text) << converted;
      ExpectSound(LANGUAGE_MANDARIN, converted, result);
      ++compared;
      changed += converted == line.source_form ? 0 : 1;
    }
  }
  EXPECT_EQ(compared, 4 * 2891);
  EXPECT_GT(changed, 2000);
}

// Back from tone marks

TEST(NormalizePinyin, ReadsWhatMarkedPinyinWrites) {
  int compared = 0;
  for (int code = 1; code <= 4165; ++code) {
    if (code % 10 < 1 || code % 10 > 5 || code / 10 == 80) continue;  // row 80 is "E"
    const std::vector<unsigned short> codes = {static_cast<unsigned short>(code)};
    const std::string marked = MarkedPinyin(codes, Spacing::kWord).text;
    const Normalized result = NormalizePinyin(marked);
    EXPECT_EQ(Codes(result.text), codes) << marked;
    EXPECT_EQ(Show(result.problems), "") << marked;
    ++compared;
  }
  EXPECT_EQ(compared, 416 * 5);
}

TEST(NormalizePinyin, ReadsWordsThatMarkedPinyinWrites) {
  RandomTexts random;
  for (int i = 0; i < 20000; ++i) {
    std::vector<unsigned short> codes = {1};  // "ā": a word without any mark is left to the caller
    for (std::size_t syllables = 1 + random.Below(4); syllables > 0; --syllables) {
      std::size_t row = random.Below(416);
      if (row >= 80) ++row;  // row 80 is "E"
      codes.push_back(static_cast<unsigned short>(row * 10 + 1 + random.Below(5)));
    }
    const std::string marked = MarkedPinyin(codes, Spacing::kWord).text;
    EXPECT_EQ(Codes(NormalizePinyin(marked).text), codes) << marked;
  }
}

// Any text

TEST(NormalizePinyin, NothingIsLostWhateverTheText) {
  const std::vector<std::string> fragments = {
      "ni3",     "hao",  "dianr", "r",   "r5",      "lue", "u:",   ":",
      "lu",      "ü",    "ǚ",     "ǎ",   "m\u0300", "ng",  "ń",    "ê",
      "\u0301",  "ɑ",    "ɡ",     "ñ",   "P",       "PK",  "X",    "A1",
      "T恤",     "好",   "，",    "·",   "'",       " ",   "\t",   "0",
      "6",       "33",   "５",    "³",   "ｎ",      "：",  "\xe4", "\xbd",
      "xian",    "zhàn", "Hé",    "nán", "xx5",     "jv",  "vi",   "#",
      "\u200b",  "e",    "n",     "g",   "er",      "nve", "lv",   "\u0308\u030c",
      "zhuangr", "lǜ3",  "nihao", "5"};
  RandomTexts random;
  int changed = 0;
  int reported = 0;
  for (int i = 0; i < 40000; ++i) {
    const std::string text = random.Text(fragments);
    const Normalized result = NormalizePinyin(text);
    ExpectSound(LANGUAGE_MANDARIN, text, result);
    ExpectSound(LANGUAGE_MANDARIN, text, NormalizePinyin(text, random.Rules()));
    const Normalized again = NormalizePinyin(result.text);  // nothing more to do
    EXPECT_EQ(again.text, result.text) << testing::PrintToString(text);
    EXPECT_EQ(Show(again.applied), "") << testing::PrintToString(text);
    EXPECT_EQ(Show(again.problems), "") << testing::PrintToString(text);
    changed += result.applied.empty() ? 0 : 1;
    reported += result.problems.empty() ? 0 : 1;
    if (testing::Test::HasFailure()) break;
  }
  EXPECT_GT(changed, 10000);
  EXPECT_GT(reported, 10000);
}

TEST(NormalizePinyin, LongTextsAreNoProblem) {
  std::string marked;
  std::string glued;
  std::string expected;
  for (int i = 0; i < 20000; ++i) {
    marked += "nǐhǎodiǎnr";
    glued += "nihaodianr";
    expected += expected.empty() ? "ni3 hao3 dian3 er5" : " ni3 hao3 dian3 er5";
  }
  EXPECT_EQ(NormalizePinyin(marked).text, expected);
  EXPECT_EQ(NormalizePinyin(glued).applied.size(), 20000U);
  EXPECT_EQ(NormalizePinyin(std::string(200000, 'x')).text, std::string(200000, 'x'));
  EXPECT_EQ(Show(NormalizePinyin(std::string(200000, '\xff')).problems), "invalid UTF-8 0+200000");
}

}  // namespace qeo::notation
