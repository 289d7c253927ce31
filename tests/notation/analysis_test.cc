// How texts are read: each syllable with its place, and all problems with theirs.

#include "notation/analysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"
#include "tests/notation/normalizing.h"
#include "tests/reference/suggesting.h"
#include "tests/testing.h"

namespace qeo::notation {
namespace {

using namespace std::string_literals;
using sp::LANGUAGE_AMERICAN_ENGLISH;
using sp::LANGUAGE_CANTONESE;
using sp::LANGUAGE_MANDARIN;
using Codes = std::vector<unsigned short>;

constexpr RuleSet kNoRules;
constexpr Cutting kCuttings[] = {Cutting::kWhole, Cutting::kForward, Cutting::kBackward,
                                 Cutting::kNone};

std::string ShowRange(Range range) {
  return std::to_string(range.offset) + '+' + std::to_string(range.length);
}

std::string SpellingWithDigit(const AnalyzedSyllable& syllable) {
  return syllable.digit == '\0' ? syllable.spelling : syllable.spelling + syllable.digit;
}

// "ni3 0+3, hao3 3+4"
std::string ShowSyllables(const Analysis& analysis) {
  std::string shown;
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    if (!shown.empty()) shown += ", ";
    shown += SpellingWithDigit(syllable) + ' ' + ShowRange(syllable.range);
  }
  return shown;
}

// A hint: "hao3", "alias nei1", "gap l+an", and what it is about where that is not the problem:
// "yao for 0+3".
std::string ShowHint(const Problem& problem) {
  std::string shown = problem.suggestion;
  if (problem.hint == Hint::kAlias) shown = "alias " + problem.suggestion;
  if (problem.hint == Hint::kGap) {
    shown = "gap " + std::string(problem.initial) + '+' + std::string(problem.final);
  }
  if (problem.hint == Hint::kNone || ShowRange(problem.piece) == ShowRange(problem.range)) {
    return shown;
  }
  return shown + " for " + ShowRange(problem.piece);
}

// "unknown syllable 4+4 hao3, foreign text 9+1"
std::string ShowProblems(const Analysis& analysis) {
  std::string shown;
  for (const Problem& problem : analysis.problems) {
    if (!shown.empty()) shown += ", ";
    shown += std::string(ProblemName(problem.kind)) + ' ' + ShowRange(problem.range);
    const std::string hint = ShowHint(problem);
    if (!hint.empty()) shown += ' ' + hint;
  }
  return shown;
}

// "3+1, 8+2"
std::string ShowSeparators(const Analysis& analysis) {
  std::string shown;
  for (const Range range : analysis.separators) {
    shown += shown.empty() ? ShowRange(range) : ", " + ShowRange(range);
  }
  return shown;
}

struct Case {
  std::string text;
  const char* syllables;
  const char* problems;
  const char* separators;
};

void ExpectCases(int language, const std::vector<Case>& cases, const AnalysisOptions& options) {
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    const Analysis analysis = Analyze(language, c.text, options);
    EXPECT_EQ(ShowSyllables(analysis), c.syllables);
    EXPECT_EQ(ShowProblems(analysis), c.problems);
    EXPECT_EQ(ShowSeparators(analysis), c.separators);
  }
}

AnalysisOptions WithRules(RuleSet rules) { return {rules, nullptr, Cutting::kWhole}; }
AnalysisOptions Without(Rule rule) { return WithRules(AnalysisOptions().rules.Without(rule)); }
AnalysisOptions WithCutting(Cutting cutting) {
  AnalysisOptions options;
  options.cutting = cutting;
  return options;
}

AliasTable ShippedAliases() {
  std::ifstream file(PHONEME_DATA_DIR "/jyutping_aliases.tsv");
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  return AliasTable::Parse(text).table;
}

TEST(Analyze, MandarinWithDigits) {
  ExpectCases(LANGUAGE_MANDARIN,
              {
                  {"", "", "", ""},
                  {"ni3hao3", "ni3 0+3, hao3 3+4", "", ""},
                  {"Ni3Hao3", "ni3 0+3, hao3 3+4", "", ""},
                  {" ni3  hao3\t", "ni3 1+3, hao3 6+4", "", "0+1, 4+2, 10+1"},
                  {"ni3\r\nhao3", "ni3 0+3, hao3 5+4", "", "3+2"},
                  {"xi1'an1`a5", "xi1 0+3, an1 4+3, a5 8+2", "", "3+1, 7+1"},
                  {"'ni3''", "ni3 1+3", "", "0+1, 4+2"},
                  // Where there is a digit, a run of letters is one syllable.
                  {"ni3 hao", "ni3 0+3, hao5 4+3", "", "3+1"},
                  {"tian1hao", "tian1 0+5, hao5 5+3", "", ""},
                  {"ge3ng", "ge3 0+3, ng5 3+2", "", ""},
                  // Tone 0
                  {"ni0 hao3", "ni5 0+3, hao3 4+4", "", "3+1"},
                  {"ni3 hao0", "ni3 0+3, hao5 4+4", "", "3+1"},
                  // u with diaeresis
                  {"lu:4 LU:3 lv4", "lv4 0+4, lv3 5+4, lv4 10+3", "", "4+1, 9+1"},
                  {"l\u00FC4nu:3", "lv4 0+4, nv3 4+4", "", ""},
                  {"L\u00DC4", "lv4 0+4", "", ""},
                  {"lue4 nue4", "lve4 0+4, nve4 5+4", "", "4+1"},
                  {"jv3 j\u00FC3", "ju3 0+3, ju3 4+4", "", "3+1"},
                  // Erhua
                  {"dianr3", "dian3 0+4, er5 4+2", "", ""},
                  {"nar4zher4", "na4 0+2, er5 2+2, zhe4 4+3, er5 7+2", "", ""},
                  {"dian3r5", "dian3 0+5, er5 5+2", "", ""},
                  {"dian3 r5", "dian3 0+5, er5 6+2", "", "5+1"},
                  {"hua1r", "hua1 0+4, er5 4+1", "", ""},
                  {"r0 r", "er5 0+2, er5 3+1", "", "2+1"},
                  {"er2", "er2 0+3", "", ""},
                  // Full-width forms and raised digits
                  {"ｎｉ３，ｈａｏ３！", "ni3 0+9, hao3 12+12", "", "9+3, 24+3"},
                  {"ni\u00B3hao\u00B3", "ni3 0+4, hao3 4+5", "", ""},
                  {"Ｎi３", "ni3 0+7", "", ""},
                  // Punctuation
                  {"ni3·hao3", "ni3 0+3, hao3 5+4", "", "3+2"},
                  {"ni3・hao3", "ni3 0+3, hao3 6+4", "", "3+3"},
                  {"ni3\u3000hao3", "ni3 0+3, hao3 6+4", "", "3+3"},
                  {"(ni3), \"hao3\".", "ni3 1+3, hao3 8+4", "", "0+1, 4+4, 12+2"},
                  {"ni3–hao3_a5", "ni3 0+3, hao3 6+4, a5 11+2", "", "3+3, 10+1"},
              },
              {});
}

TEST(Analyze, MandarinWithMarks) {
  ExpectCases(LANGUAGE_MANDARIN,
              {
                  {"Běijīng", "bei3 0+4, jing1 4+5", "", ""},
                  {"Be\u030Ciji\u0304ng", "bei3 0+5, jing1 5+6", "", ""},  // the same, decomposed
                  {"běijing", "bei3 0+4, jing5 4+4", "", ""},
                  {"nǐ  hǎo", "ni3 0+3, hao3 5+4", "", "3+2"},
                  {"nǐ，hǎo。", "ni3 0+3, hao3 6+4", "", "3+3, 10+3"},
                  {"Xī'ān", "xi1 0+3, an1 4+3", "", "3+1"},
                  {"Xī’ān", "xi1 0+3, an1 6+3", "", "3+3"},
                  {"wǒ men", "wo3 0+3, men5 4+3", "", "3+1"},
                  {"xìan", "xian4 0+5", "", ""},
                  {"lǜ", "lv4 0+3", "", ""},
                  {"lu\u0308\u030C", "lv3 0+6", "", ""},
                  {"lǜe", "lve4 0+4", "", ""},
                  {"Lǚ'àn", "lv3 0+3, an4 4+3", "", "3+1"},
                  {"ńg", "ng2 0+3", "", ""},
                  {"m\u0300", "m4 0+3", "", ""},
                  {"nǐ h\u0251\u030Co", "ni3 0+3, hao3 4+6", "", "3+1"},
                  {"diǎnr", "dian3 0+5, er5 5+1", "", ""},
                  {"yīdīngdiǎnr", "yi1 0+3, ding1 3+5, dian3 8+5, er5 13+1", "", ""},
                  {"zhuāngr zhèr", "zhuang1 0+7, er5 7+1, zhe4 9+4, er5 13+1", "", "8+1"},
              },
              {});
}

// Words without tones: what each cut of them loses.
TEST(Analyze, MandarinWithoutTones) {
  const std::vector<Case> whole = {
      {"nihao", "ni 0+2, hao 2+3", "", ""},
      {"yipinguo", "yi 0+2, pin 2+3, guo 5+3", "", ""},
      {"nver", "nv 0+2, er 2+2", "", ""},
      {"fangan", "fan 0+3, gan 3+3", "", ""},
      {"XiAn niHao", "xi 0+2, an 2+2, ni 5+2, hao 7+3", "", "4+1"},
      {"xian'an", "xian 0+4, an 5+2", "", "4+1"},
      {"yidianr", "yi 0+2, dian 2+4, er 6+1", "", ""},
      {"lüeduo nu:er", "lve 0+4, duo 4+3, nv 8+3, er 11+2", "", "7+1"},
      {"ｎｉｈａｏ", "ni 0+6, hao 6+9", "", ""},
      {"hello", "he 0+2, lo 3+2", "letters lost 2+1 lo for 2+3", ""},
      {"nihaoq wo", "ni 0+2, hao 2+3, wo 7+2", "letters lost 5+1 hao for 2+4", "6+1"},
      {"yidianrxx", "yi 0+2, dian 2+4, er 6+1", "unknown syllable 7+2", ""},
      {"luenun", "lve 0+3", "unknown syllable 3+3 gap n+un", ""},
      {"wongxuelue", "xue 4+3, lve 7+3", "unknown syllable 0+4 song", ""},
      // A guess about more letters is not better than the gap of "zin".
      {"zinrao", "rao 3+3", "unknown syllable 0+3 gap z+in", ""},
      {"nanrdin", "nan 0+3, er 3+1", "unknown syllable 4+3 gap d+in", ""},
      {"hpo", "po 1+2", "letters lost 0+1 hao for 0+3", ""},
      {"xyz nihao", "ni 4+2, hao 6+3", "unknown syllable 0+3", "3+1"},
  };
  const std::vector<Case> forward = {
      {"nihao", "ni 0+2, hao 2+3", "", ""},
      {"yipinguo", "yi 0+2, ping 2+4", "letters lost 6+2", ""},
      {"yipinguo nihao", "yi 0+2, ping 2+4, ni 9+2, hao 11+3", "letters lost 6+2", "8+1"},
      {"nver", "nve 0+3", "letters lost 3+1 nve for 0+4", ""},
      {"fangan", "fang 0+4, an 4+2", "", ""},
      {"yidianr", "yi 0+2, dian 2+4, er 6+1", "", ""},
      {"hello", "he 0+2", "letters lost 2+3 lo", ""},
      {"helloNihao", "he 0+2, ni 5+2, hao 7+3", "letters lost 2+3 lo", ""},
      {"ｙｉｐｉｎｇｕｏ", "yi 0+6, ping 6+12", "letters lost 18+6", ""},
      {"xyz", "", "unknown syllable 0+3", ""},
  };
  const std::vector<Case> backward = {
      {"nihao", "ni 0+2, hao 2+3", "", ""},
      {"yipinguo", "yi 0+2, pin 2+3, guo 5+3", "", ""},
      {"nver", "nv 0+2, er 2+2", "", ""},
      {"fangan", "fan 0+3, gan 3+3", "", ""},
      {"hello", "lo 3+2", "letters lost 0+3 he", ""},
      {"xxnihao", "ni 2+2, hao 4+3", "letters lost 0+2", ""},
      {"xyz", "", "unknown syllable 0+3", ""},
  };
  ExpectCases(LANGUAGE_MANDARIN, whole, {});  // by default
  ExpectCases(LANGUAGE_MANDARIN, whole, WithCutting(Cutting::kWhole));
  ExpectCases(LANGUAGE_MANDARIN, forward, WithCutting(Cutting::kForward));
  ExpectCases(LANGUAGE_MANDARIN, backward, WithCutting(Cutting::kBackward));
}

TEST(Analyze, MandarinProblems) {
  ExpectCases(
      LANGUAGE_MANDARIN,
      {
          // Abbreviations
          {"PK ni3", "ni3 3+3", "foreign text 0+2", "2+1"},
          {"san1 P", "san1 0+4", "foreign text 5+1", "4+1"},
          {"MP3", "", "foreign text 0+3", ""},
          {"A·B", "", "foreign text 0+1, foreign text 3+1", "1+2"},
          {"XIān", "an1 2+3", "foreign text 0+2", ""},
          {"E3 E", "e3 0+2", "foreign text 3+1", "2+1"},
          // Other scripts, letters and signs
          {"你ni3好", "ni3 3+3", "foreign text 0+3, foreign text 6+3", ""},
          {"你好 ni3", "ni3 7+3", "foreign text 0+6", "6+1"},
          {"ñi3 ni3", "ni3 5+3", "foreign text 0+4", "4+1"},
          {"# ni3", "ni3 2+3", "foreign text 0+1", "1+1"},
          {"ni3 33", "ni3 0+3", "foreign text 4+2", "3+1"},
          {"５", "", "foreign text 0+3", ""},
          {"hao\0ni"s, "hao 0+3, ni 4+2", "foreign text 3+1", ""},
          {"\0"s, "", "foreign text 0+1", ""},
          // Invalid UTF-8
          {"\xE4\xBD ni3", "ni3 3+3", "invalid UTF-8 0+2", "2+1"},
          {"ni3\xFF\xFE", "ni3 0+3", "invalid UTF-8 3+2", ""},
          {"ni\xFF\x33", "ni 0+2", "invalid UTF-8 2+1, foreign text 3+1", ""},
          {"a\xCC", "a 0+1", "invalid UTF-8 1+1", ""},
          // Bad tones
          {"ni6 hao3", "hao3 4+4", "bad tone 0+3", "3+1"},
          {"ni33", "ni3 0+3", "bad tone 3+1", ""},
          {"ni3３ hao3", "ni3 0+3, hao3 7+4", "bad tone 3+3", "6+1"},
          {"nǐ3", "", "bad tone 0+4", ""},
          {"r3", "", "bad tone 0+2", ""},
          // All of them, in the order of the text
          {"xyz1 PK nihaox3 \xFF hap3 ni9 hao3", "hao3 27+4",
           "unknown syllable 0+4, foreign text 5+2, unknown syllable 8+7, invalid UTF-8 16+1, "
           "unknown syllable 18+4 hao3, bad tone 23+3",
           "4+1, 7+1, 15+1, 17+1, 22+1, 26+1"},
      },
      {});
}

struct HintCase {
  int language;
  const char* text;
  const char* hint;
};

void ExpectHints(const std::vector<HintCase>& cases) {
  for (const HintCase& c : cases) {
    SCOPED_TRACE(c.text);
    const Analysis analysis = Analyze(c.language, c.text);
    ASSERT_EQ(analysis.problems.size(), 1U);
    EXPECT_EQ(ShowHint(analysis.problems[0]), c.hint);
    EXPECT_EQ(analysis.problems[0].hint == Hint::kNone, *c.hint == '\0');
  }
}

TEST(Analyze, Suggestions) {
  ExpectHints({
      // A letter dropped, doubled or transposed
      {LANGUAGE_MANDARIN, "hon1", "hong1"},
      {LANGUAGE_MANDARIN, "zhng1", "zhong1"},
      {LANGUAGE_MANDARIN, "haoo3", "hao3"},
      {LANGUAGE_MANDARIN, "sshi4", "shi4"},
      {LANGUAGE_MANDARIN, "hoa3", "hao3"},
      {LANGUAGE_MANDARIN, "zhogn1", "zhong1"},
      {LANGUAGE_MANDARIN, "shnag4", "shang4"},
      {LANGUAGE_MANDARIN, "qaun2", "quan2"},
      {LANGUAGE_MANDARIN, "zhuagn3", "zhuang3"},
      {LANGUAGE_CANTONESE, "deo3", "deoi3"},
      {LANGUAGE_CANTONESE, "juyt6", "jyut6"},
      {LANGUAGE_CANTONESE, "hoou2", "hou2"},
      // A key beside the right one
      {LANGUAGE_MANDARIN, "hap3", "hao3"},
      {LANGUAGE_MANDARIN, "xhang4", "chang4"},  // and not "zhang", as often a slip, but rarer
      {LANGUAGE_CANTONESE, "nii5", "noi5"},
      // Any other key, in the place of a letter or too many
      {LANGUAGE_MANDARIN, "zhoang1", "zhong1"},
      {LANGUAGE_MANDARIN, "shqng4", "shang4"},
      // A common syllable before a rare one: "ban" is common, "bah" could be "ba" and a key more
      {LANGUAGE_MANDARIN, "bah4", "ban4"},
      // The tone of a mark, of a full-width digit, none, and one that is not the language's
      {LANGUAGE_MANDARIN, "Nǐ hoǎ", "hao3"},
      {LANGUAGE_MANDARIN, "zho\u0304gn", "zhong1"},
      {LANGUAGE_MANDARIN, "ｈｏａ３", "hao3"},
      {LANGUAGE_MANDARIN, "hoa9", "hao"},
      {LANGUAGE_MANDARIN, "hoa0", "hao"},
      {LANGUAGE_CANTONESE, "juyt7", "jyut7"},
      {LANGUAGE_CANTONESE, "juyt8", "jyut"},
      // A capital is its small letter; v is the ü of the library, and u after j, q, x and y.
      {LANGUAGE_MANDARIN, "Zhogn1", "zhong1"},
      {LANGUAGE_MANDARIN, "jvna1", "juan1"},
      {LANGUAGE_MANDARIN, "l\u00FCee4", "lve4"},
      {LANGUAGE_MANDARIN, "lu:ee4", "lve4"},
      // One or two letters are near to too much.
      {LANGUAGE_MANDARIN, "c1", ""},
      {LANGUAGE_CANTONESE, "c1", ""},
      {LANGUAGE_MANDARIN, "vi4", ""},
      {LANGUAGE_MANDARIN, "xx", ""},
      {LANGUAGE_MANDARIN, "ê4", ""},
      {LANGUAGE_MANDARIN, "nǐ ế", ""},
      // More than one slip away
      {LANGUAGE_MANDARIN, "siahng4", ""},
      {LANGUAGE_MANDARIN, "zhaangr3", ""},
      {LANGUAGE_MANDARIN, "xyz3", ""},
      {LANGUAGE_MANDARIN, "xxa3", "xia3"},
      {LANGUAGE_MANDARIN, "zhuangzhuangzhuang1", ""},
      {LANGUAGE_MANDARIN, "bcdfghjk", ""},
      {LANGUAGE_CANTONESE, "xx3", ""},
      // Other kinds of problems have none.
      {LANGUAGE_MANDARIN, "ni9", ""},
      {LANGUAGE_MANDARIN, "NIH3", ""},
      {LANGUAGE_MANDARIN, "nïh3", ""},
      {LANGUAGE_CANTONESE, "nei9", ""},
      // Phones
      {LANGUAGE_AMERICAN_ENGLISH, "SHH", "sh"},
      {LANGUAGE_AMERICAN_ENGLISH, "sli", "sil"},
      {LANGUAGE_AMERICAN_ENGLISH, "QQ", ""},
      {LANGUAGE_AMERICAN_ENGLISH, "12", ""},
  });
}

// Spellings of the shipped table come first, also of one and two letters; the tone as ever.
TEST(Analyze, AliasHints) {
  ExpectHints({
      {LANGUAGE_CANTONESE, "ni1", "alias nei1"},
      {LANGUAGE_CANTONESE, "ni8", "alias nei"},
      {LANGUAGE_CANTONESE, "ni", "alias nei"},
      {LANGUAGE_CANTONESE, "a3", "alias aa3"},
      {LANGUAGE_CANTONESE, "kwut3", "alias kut3"},
      {LANGUAGE_CANTONESE, "aam1", "alias ngaam1"},  // not "saam1"
      {LANGUAGE_CANTONESE, "nihou", "alias nei"},
      {LANGUAGE_CANTONESE, "ngoai", "alias ngai"},
      {LANGUAGE_CANTONESE, "a", "alias aa"},
      // One letter of a word is seldom meant for one by itself.
      {LANGUAGE_CANTONESE, "gwongzauwaaa", "waa for 8+4"},
      {LANGUAGE_MANDARIN, "kwut3", ""},
  });
}

// The text after `text` of those over some letters, the shorter ones first.
void MakeNext(std::string_view letters, std::string& text) {
  for (char& letter : text) {
    const std::size_t next = letters.find(letter) + 1;
    letter = letters[next % letters.size()];
    if (next < letters.size()) return;
  }
  text += letters[0];
}

// The table that the hints know is the one that is shipped.
TEST(Analyze, AliasHintsAreTheShippedTable) {
  const AliasTable aliases = ShippedAliases();
  std::size_t found = 0;
  for (std::string spelling; spelling.size() < 5; MakeNext("aeghikmnoptuwl", spelling)) {
    const Analysis analysis = Analyze(LANGUAGE_CANTONESE, spelling + '1');
    const bool is_alias = !analysis.problems.empty() && analysis.problems[0].hint == Hint::kAlias;
    ASSERT_EQ(is_alias, !aliases.Find(spelling).empty()) << spelling;
    if (!is_alias) continue;
    EXPECT_EQ(analysis.problems[0].suggestion, std::string(aliases.Find(spelling)) + '1');
    ++found;
  }
  EXPECT_EQ(found, aliases.size());
}

// Letters that are a syllable are meant for it when only their marks are wrong.
TEST(Analyze, HintsOfWrongMarks) {
  ExpectHints({
      {LANGUAGE_MANDARIN, "ha\u0144", "han2"},
      {LANGUAGE_MANDARIN, "\u0144ai", "nai2"},
      {LANGUAGE_MANDARIN, "ya\u0144", "yan2"},  // not "yuan2"
      {LANGUAGE_MANDARIN, "Ya\u0144", "yan2"},
      {LANGUAGE_MANDARIN, "n\u01D0ya\u0144", "yan2 for 3+4"},
      {LANGUAGE_MANDARIN, "ho\u0144g", "hong2"},
      {LANGUAGE_MANDARIN, "b\u00EAi4", "bei4"},
      {LANGUAGE_MANDARIN, "d\u00EA2", "de2"},
      {LANGUAGE_MANDARIN, "d\u00EA9", "de"},
      {LANGUAGE_MANDARIN, "b\u1EBFi", "bei2"},
      {LANGUAGE_MANDARIN, "w\u01D2b\u1EBFi", "bei2 for 3+5"},
      {LANGUAGE_MANDARIN, "b\u00EAi", "bei"},
      {LANGUAGE_MANDARIN, "w\u01D2lu\u1EBF", "lve2 for 3+5"},
      {LANGUAGE_MANDARIN, "lu\u00EA4", "lve4"},
      {LANGUAGE_MANDARIN, "l\u00EAn2", "gap l+en"},
      // Either mark may be the wrong one.
      {LANGUAGE_MANDARIN, "h\u00F3\u0144g", ""},
      {LANGUAGE_MANDARIN, "w\u01D2h\u00F3\u0144g", ""},
      // An e with circumflex is a syllable by itself.
      {LANGUAGE_MANDARIN, "w\u01D2\u1EBFji\u0144", "jin2 for 6+4"},
  });
}

// An initial and a final that the table has, but not together: nothing is suggested.
TEST(Analyze, GapHints) {
  ExpectHints({
      {LANGUAGE_CANTONESE, "lan2", "gap l+an"},
      {LANGUAGE_CANTONESE, "Lan2", "gap l+an"},
      {LANGUAGE_CANTONESE, "lan", "gap l+an"},
      {LANGUAGE_CANTONESE, "gwoi2", "gap gw+oi"},
      {LANGUAGE_CANTONESE, "ngyut6", "gap ng+yut"},
      {LANGUAGE_MANDARIN, "biáng", "gap b+iang"},
      {LANGUAGE_MANDARIN, "fi4", "gap f+i"},
      {LANGUAGE_MANDARIN, "shong1", "gap sh+ong"},
      {LANGUAGE_MANDARIN, "fiao", "gap f+iao for 0+4"},
      // hm is in the table, if only as a word by itself.
      {LANGUAGE_MANDARIN, "hmguo", ""},
      {LANGUAGE_MANDARIN, "hmxiao", ""},
      // Neither y and w nor the finals of syllables without an initial are parts of others.
      {LANGUAGE_MANDARIN, "yai2", "yao2"},
      {LANGUAGE_MANDARIN, "bweng1", "beng1"},
      // "hng" is h alone in the table, and no final "ng" is.
      {LANGUAGE_MANDARIN, "bng1", "bing1"},
  });
}

// A hint is about a piece that may be more than the letters left out, or less than the problem.
TEST(Analyze, HintsNameThePiece) {
  ExpectCases(
      LANGUAGE_MANDARIN,
      {
          {"yai", "ya 0+2", "letters lost 2+1 yao for 0+3", ""},
          {"nihaoyai", "ni 0+2, hao 2+3, ya 5+2", "letters lost 7+1 yao for 5+3", ""},
          {"ｙａｉ", "ya 0+6", "letters lost 6+3 yao for 0+9", ""},
          {"yáichái", "", "unknown syllable 0+9 yao2 for 0+4", ""},
          {"nǐbiáng", "", "unknown syllable 0+9 gap b+iang for 3+6", ""},
          {"nǐ hǎobiáng", "ni3 0+3", "unknown syllable 4+10 gap b+iang for 8+6", "3+1"},
          {"zhogn", "o 2+1", "letters lost 0+2 zhong for 0+5, letters lost 3+2 zhong for 0+5", ""},
          {"nihaonun", "ni 0+2, hao 2+3", "unknown syllable 5+3 gap n+un", ""},
          // The gap p+iu is less likely.
          {"piuhai", "pi 0+2, hai 3+3", "letters lost 2+1 huai for 2+4", ""},
          // With two marks it is not one syllable.
          {"jiǎǐ", "", "unknown syllable 0+6", ""},
          {"wǒjiǎǐ", "", "unknown syllable 0+9", ""},
          // The mark is wrong, and the syllable before it has none.
          {"bayań", "", "unknown syllable 0+6 yan2 for 2+4", ""},
          {"wǒbêi", "", "unknown syllable 0+7 bei for 3+4", ""},
          // "lua" is not read as "lue" is.
          {"nǐluàx", "", "unknown syllable 0+8 luan4 for 3+5", ""},
          // What a capital opens is read by itself.
          {"NǐHoǎ", "ni3 0+3", "unknown syllable 3+4 hao3", ""},
          {"biángNǐ", "ni3 6+3", "unknown syllable 0+6 gap b+iang", ""},
          // A piece has at most three parts, before and after the wrong one.
          {"aeox", "a 0+1, e 1+1, o 2+1", "letters lost 3+1", ""},
          {"xaoea", "ao 1+2, e 3+1, a 4+1", "letters lost 0+1 gap x+ao for 0+3", ""},
          {"wuyit", "wu 0+2, yi 2+2", "letters lost 4+1 yi for 2+3", ""},
          {"tyiwu", "yi 1+2, wu 3+2", "letters lost 0+1 yi for 0+3", ""},
          {"aotte", "ao 0+2, te 3+2", "letters lost 2+1 te for 2+3", ""},
          // More letters than a syllable with a slip has
          {"haobcdfghjkl", "hao 0+3", "letters lost 3+9", ""},
      },
      {});
  // The alias "ma" is less likely than "mai".
  ExpectCases(LANGUAGE_CANTONESE,
              {{"madiz", "m 0+1, di 2+2",
                "letters lost 1+1 mai for 0+4, letters lost 4+1 dim for 2+3", ""}},
              {});
}

// A nasal that is written after a syllable of a word without tones makes it an unknown one. The
// suggestions have a test of their own.
TEST(Analyze, NasalsAreNotCutOffMandarinWords) {
  struct {
    int language;
    Cutting cutting;
    std::string text;
    const char* syllables;
    const char* problems;
  } const cases[] = {
      {LANGUAGE_MANDARIN, Cutting::kWhole, "nun", "", "unknown syllable 0+3"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "din", "", "unknown syllable 0+3"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "wong", "", "unknown syllable 0+4"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "nunhao", "hao 3+3", "unknown syllable 0+3"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "nihaom ma", "ni 0+2, ma 7+2", "unknown syllable 2+4"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "ｄｉｎ wo", "wo 10+2", "unknown syllable 0+9"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "mda", "da 1+2", "letters lost 0+1"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "dinx", "", "unknown syllable 0+4"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "nunr", "", "unknown syllable 0+4"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "nunm", "", "unknown syllable 0+4"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "nihmx", "", "unknown syllable 0+5"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "nih", "ni 0+2", "letters lost 2+1"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "nihxn", "ni 0+2", "letters lost 2+3"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "nimmmmmmmmm", "", "unknown syllable 0+11"},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "n ng m hm hng",
       "n 0+1, ng 2+2, m 5+1, hm 7+2, hng 10+3", ""},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "ng'a n", "ng 0+2, a 3+1, n 5+1", ""},
      {LANGUAGE_MANDARIN, Cutting::kWhole, "mdianr", "dian 1+4, er 5+1", "unknown syllable 0+1"},
      {LANGUAGE_MANDARIN, Cutting::kForward, "nun", "nu 0+2, n 2+1", ""},
      {LANGUAGE_MANDARIN, Cutting::kBackward, "wong", "wo 0+2, ng 2+2", ""},
      {LANGUAGE_CANTONESE, Cutting::kWhole, "mgoi", "m 0+1, goi 1+3", ""},
      {LANGUAGE_CANTONESE, Cutting::kWhole, "mhou", "m 0+1, hou 1+3", ""},
      {LANGUAGE_CANTONESE, Cutting::kWhole, "deoimzyu", "deoi 0+4, m 4+1, zyu 5+3", ""},
      {LANGUAGE_CANTONESE, Cutting::kWhole, "sapng", "sap 0+3, ng 3+2", ""},
      {LANGUAGE_CANTONESE, Cutting::kWhole, "nein", "nei 0+3", "letters lost 3+1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    Analysis analysis = Analyze(c.language, c.text, WithCutting(c.cutting));
    EXPECT_EQ(ShowSyllables(analysis), c.syllables);
    for (Problem& problem : analysis.problems) {  // hints have tests of their own
      problem.hint = Hint::kNone;
      problem.suggestion.clear();
    }
    EXPECT_EQ(ShowProblems(analysis), c.problems);
  }
}

TEST(Analyze, WithoutCuttingAWordIsOneSyllable) {
  struct {
    int language;
    std::string text;
    const char* syllables;
    const char* problems;
  } const cases[] = {
      {LANGUAGE_MANDARIN, "ni hao ng", "ni 0+2, hao 3+3, ng 7+2", ""},
      {LANGUAGE_MANDARIN, "NiHao xi'an", "ni 0+2, hao 2+3, xi 6+2, an 9+2", ""},
      {LANGUAGE_MANDARIN, "xian nihao", "xian 0+4", "unknown syllable 5+5"},
      {LANGUAGE_MANDARIN, "nun hello", "", "unknown syllable 0+3, unknown syllable 4+5"},
      // The rules still read syllables; a word is not cut for them either.
      {LANGUAGE_MANDARIN, "lue nu: ｎｉ", "lve 0+3, nv 4+3, ni 8+6", ""},
      {LANGUAGE_MANDARIN, "dianr r", "dian 0+4, er 4+1, er 6+1", ""},
      {LANGUAGE_MANDARIN, "yidianr", "", "unknown syllable 0+7"},
      {LANGUAGE_MANDARIN, "celue", "", "unknown syllable 0+5"},
      // What has tones is read as always.
      {LANGUAGE_MANDARIN, "ni3hao3", "ni3 0+3, hao3 3+4", ""},
      {LANGUAGE_MANDARIN, "nǐhǎo", "ni3 0+3, hao3 3+4", ""},
      {LANGUAGE_CANTONESE, "nei hou mgoi", "nei 0+3, hou 4+3", "unknown syllable 8+4"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    Analysis analysis = Analyze(c.language, c.text, WithCutting(Cutting::kNone));
    EXPECT_EQ(ShowSyllables(analysis), c.syllables);
    for (Problem& problem : analysis.problems) {  // hints have tests of their own
      problem.hint = Hint::kNone;
      problem.suggestion.clear();
    }
    EXPECT_EQ(ShowProblems(analysis), c.problems);
  }
}

// Rules that are off leave what they would change to the others, or a problem.
TEST(Analyze, MandarinRulesSwitchedOff) {
  ExpectCases(LANGUAGE_MANDARIN,
              {{"ni0 hao", "ni0 0+3, hao 4+3", "", "3+1"},
               {"ni0 hao3", "ni0 0+3, hao3 4+4", "", "3+1"},
               {"ni3 hao", "ni3 0+3, hao 4+3", "", "3+1"}},
              Without(Rule::kNeutralTone));
  ExpectCases(LANGUAGE_MANDARIN, {{"dianr3", "", "unknown syllable 0+6 dian3", ""}},
              Without(Rule::kFusedErhua));
  ExpectCases(LANGUAGE_MANDARIN, {{"ni3r5", "ni3 0+3", "unknown syllable 3+2", ""}},
              Without(Rule::kErhua));
  ExpectCases(LANGUAGE_MANDARIN,
              {{"lue4", "", "unknown syllable 0+4 gap l+ue", ""},
               {"l\u00FC4", "", "foreign text 0+4", ""},
               {"lv4", "lv4 0+3", "", ""}},
              Without(Rule::kDiaeresis));
  ExpectCases(LANGUAGE_MANDARIN, {{"nǐ hao3", "hao3 4+4", "foreign text 0+3", "3+1"}},
              Without(Rule::kToneMark));
  ExpectCases(LANGUAGE_MANDARIN,
              {{"ni3，hao3", "ni3 0+3, hao3 6+4", "foreign text 3+3", ""},
               {"ni3'hao3", "ni3 0+3, hao3 4+4", "", "3+1"}},
              Without(Rule::kPunctuation));
  ExpectCases(LANGUAGE_MANDARIN, {{"ｎｉ３hao3", "hao3 9+4", "foreign text 0+9", ""}},
              Without(Rule::kFullWidth));
  ExpectCases(LANGUAGE_MANDARIN,
              {{"san1 A", "san1 0+4, a5 5+1", "", "4+1"}, {"PK3", "", "unknown syllable 0+3", ""}},
              Without(Rule::kAbbreviation));
  ExpectCases(LANGUAGE_MANDARIN,
              {{"ni3hao3 Xi'an", "ni3 0+3, hao3 3+4, xi 8+2, an 11+2", "", "7+1, 10+1"},
               {"nihao", "ni 0+2, hao 2+3", "", ""},
               {"ni0", "ni0 0+3", "", ""},
               {"r5", "", "unknown syllable 0+2", ""},
               {"lu:4", "lu 0+2", "foreign text 2+2", ""},
               {"nǐ", "", "foreign text 0+3", ""},
               {"hello", "he 0+2, lo 3+2", "letters lost 2+1 lo for 2+3", ""}},
              WithRules(kNoRules));
}

TEST(Analyze, Cantonese) {
  ExpectCases(LANGUAGE_CANTONESE,
              {
                  {"", "", "", ""},
                  {"wan2gung1", "wan2 0+4, gung1 4+5", "", ""},
                  {"nei5 hou2", "nei5 0+4, hou2 5+4", "", "4+1"},
                  {"nei5，hou2!", "nei5 0+4, hou2 7+4", "", "4+3, 11+1"},
                  {"nei5·hou2'aa3", "nei5 0+4, hou2 6+4, aa3 11+3", "", "4+2, 10+1"},
                  {"ｎｅｉ５ｈｏｕ２", "nei5 0+12, hou2 12+12", "", ""},
                  {"hou\u00B2", "hou2 0+5", "", ""},
                  {"jyut6ping", "jyut6 0+5, ping 5+4", "", ""},
                  {"M4goi1", "m4 0+2, goi1 2+4", "", ""},
                  {"hou7", "hou7 0+4", "", ""},  // no tone, as code2py writes it
                  // Without tones
                  {"heoigaai", "heoi 0+4, gaai 4+4", "", ""},
                  {"ngohoucho", "ngo 0+3, hou 3+3, ho 7+2", "letters lost 6+1 co for 6+3", ""},
                  // Problems
                  {"nei5hou2VQ6", "nei5 0+4, hou2 4+4", "foreign text 8+3", ""},
                  {"VQ6", "", "foreign text 0+3", ""},
                  {"nei0 nei8nei9", "", "bad tone 0+4, bad tone 5+4, bad tone 9+4", "4+1"},
                  {"nei77hou2", "nei7 0+4, hou2 5+4", "bad tone 4+1", ""},
                  {"ai3 ni5", "",
                   "unknown syllable 0+3 alias ngai3, unknown syllable 4+3 alias nei5", "3+1"},
                  {"goek3xx2hou2", "goek3 0+5, hou2 8+4", "unknown syllable 5+3", ""},
                  {"nei5xyz", "nei5 0+4", "unknown syllable 4+3", ""},
                  {"ní", "", "foreign text 0+3", ""},
                  {"hou2 好", "hou2 0+4", "foreign text 5+3", "4+1"},
                  {"hou2\xE5\xA5", "hou2 0+4", "invalid UTF-8 4+2", ""},
              },
              {});
  ExpectCases(
      LANGUAGE_CANTONESE,
      {{"ngongo", "ngong 0+5, o 5+1", "", ""}, {"wan2gung1", "wan2 0+4, gung1 4+5", "", ""}},
      {kNoRules, nullptr, Cutting::kForward});
  ExpectCases(LANGUAGE_CANTONESE, {{"ngongo", "ngo 0+3, ngo 3+3", "", ""}},
              WithCutting(Cutting::kBackward));
}

TEST(Analyze, CantoneseAliases) {
  const AliasTable aliases = ShippedAliases();
  ASSERT_FALSE(aliases.empty());
  AnalysisOptions options;
  options.aliases = &aliases;
  const std::vector<Case> cases = {
      {"ai3", "ngai3 0+3", "", ""},
      {"ni5hou2", "nei5 0+3, hou2 3+4", "", ""},
      {"hou2gwu2 la3", "hou2 0+4, gu2 4+4, laa3 9+3", "", "8+1"},
      {"ａｉ３", "ngai3 0+9", "", ""},
      {"ngoai", "ngo 0+3, ngai 3+2", "", ""},
      {"nei5hou2", "nei5 0+4, hou2 4+4", "", ""},
  };
  ExpectCases(LANGUAGE_CANTONESE, cases, options);
  options.rules = options.rules.Without(Rule::kAlias);
  ExpectCases(LANGUAGE_CANTONESE, {{"ai3", "", "unknown syllable 0+3 alias ngai3", ""}}, options);
  options = {};
  options.aliases = &aliases;  // of no use in Mandarin
  ExpectCases(LANGUAGE_MANDARIN, {{"ni3", "ni3 0+3", "", ""}}, options);
}

TEST(Analyze, English) {
  ExpectCases(
      LANGUAGE_AMERICAN_ENGLISH,
      {
          {"", "", "", ""},
          {" \t\r\n", "", "", "0+4"},
          {"HH AH0 L OW1", "hh ax0 0+6, l ow1 7+5", "", "6+1"},
          {"\tHH  AH0\t L OW1\n", "hh ax0 1+7, l ow1 10+5", "", "0+1, 8+2, 15+1"},
          {"S T R IY1 T", "s t r iy t1 0+11", "", ""},
          {"HH AH1 L OW2", "hh ah1 0+6, l ow2 7+5", "", "6+1"},
          {"eh iy1", "eh0 0+2, iy1 3+3", "", "2+1"},
          {"T S UW0", "t0 0+1, s uw0 2+5", "", "1+1"},
          {"HH M", "hh m0 0+4", "", ""},
          // Problems between syllables
          {"XX HH OW1 YY", "hh ow1 3+6", "unknown phone 0+2 ax, unknown phone 10+2 y", "2+1, 9+1"},
          {"HH AH0 XX L OW1", "hh ax0 0+6, l ow1 10+5", "unknown phone 7+2 ax", "6+1, 9+1"},
          {"\xFF AE1", "ae1 2+3", "invalid UTF-8 0+1", "1+1"},
          {"HH,AH0", "", "unknown phone 0+6", ""},
          {"AE1\0B"s, "", "unknown phone 0+5", ""},
          {"\0 B"s, "b0 2+1", "unknown phone 0+1", "1+1"},
          // Problems inside of a syllable
          {"HH A0 L", "hh l0 0+7", "unknown phone 3+2 aa", ""},
          {"EH1 \xFF K", "eh k1 0+7", "invalid UTF-8 4+1", ""},
          {"EH1 12 K", "eh k1 0+8", "unknown phone 4+2", ""},
          {"B3 AE1", "b ae1 0+6", "bad tone 1+1", ""},
          {"AE3 B", "ae b0 0+5", "bad tone 2+1", ""},
          {"OW1 NG12", "ow ng1 0+8", "bad tone 6+2", ""},
          {"AE12", "ae0 0+4", "bad tone 2+2", ""},
      },
      {});
  ExpectCases(LANGUAGE_AMERICAN_ENGLISH,
              {{"hh ah0 l ow1", "hh ah0 0+6, l ow1 7+5", "", "6+1"},
               {"HH ah0", "ah0 3+3", "unknown phone 0+2 hh", "2+1"},
               {"hh ah0 l ow", "hh ah l0 0+8", "bad tone 9+2", "8+1"}},
              WithRules(kNoRules));
  ExpectCases(LANGUAGE_AMERICAN_ENGLISH, {{"HH AH1 L OW2", "hh ah1 0+6, l ow1 7+5", "", "6+1"}},
              WithRules(AnalysisOptions().rules.With(Rule::kSecondStress)));
}

TEST(Analyze, AppliedRules) {
  struct {
    int language;
    const char* text;
    const char* applied;
  } const cases[] = {
      {LANGUAGE_MANDARIN, "ni3hao3", ""},
      {LANGUAGE_MANDARIN, "Lǚ, r5", "diaeresis 1+2, tone-mark 1+2, punctuation 3+1, erhua 5+1"},
      {LANGUAGE_MANDARIN, "ｎｉ３ dianr3", "full-width 0+9, fused-erhua 14+2"},
      {LANGUAGE_MANDARIN, "PK ni3 hao", "abbreviation 0+2, neutral-tone 7+3"},
      {LANGUAGE_CANTONESE, "wan2gung1", "glued 4+5"},
      {LANGUAGE_AMERICAN_ENGLISH, "hh AH0", "lower-case 3+2, reduced-vowel 3+3"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Show(Analyze(c.language, c.text).applied), c.applied);
  }
}

// The rules of other notations do nothing.
// Only what is a rule or a kind of problem has a name.
TEST(Names, OfRulesAndProblems) {
  std::set<std::string_view> names;
  for (int i = 0; i < kRuleCount; ++i) names.insert(RuleName(static_cast<Rule>(i)));
  EXPECT_EQ(names.size(), 14U);
  EXPECT_EQ(names.count(""), 0U);
  EXPECT_EQ(RuleName(static_cast<Rule>(kRuleCount)), "");
  EXPECT_EQ(ProblemName(ProblemKind::kInvalidUtf8), "invalid UTF-8");
  EXPECT_EQ(ProblemName(static_cast<ProblemKind>(99)), "");
  EXPECT_EQ(HintName(Hint::kNone), "");
  EXPECT_EQ(HintName(Hint::kSpelling), "spelling");
  EXPECT_EQ(HintName(Hint::kAlias), "alias");
  EXPECT_EQ(HintName(Hint::kGap), "gap");
  EXPECT_EQ(HintName(static_cast<Hint>(99)), "");
}

TEST(Analyze, RulesInUseUnlessToldOtherwise) {
  const RuleSet rules = AnalysisOptions().rules;
  for (int i = 0; i < kRuleCount; ++i) {
    const Rule rule = static_cast<Rule>(i);
    EXPECT_EQ(rules.Has(rule), rule != Rule::kSecondStress) << RuleName(rule);
  }
}

TEST(Records, EmptyUntilFilled) {
  const AnalyzedSyllable syllable;
  EXPECT_EQ(syllable.digit, '\0');
  EXPECT_EQ(syllable.row, -1);
  EXPECT_EQ(syllable.range.offset, 0U);
  EXPECT_EQ(syllable.range.length, 0U);
  const CmudictLine line;
  EXPECT_EQ(line.kind, CmudictLineKind::kBlank);
  EXPECT_EQ(line.variant, 0);
  EXPECT_EQ(AliasError().line, 0U);
  const Cut cut;
  EXPECT_FALSE(cut.covers);
  EXPECT_EQ(cut.count, 0U);
  EXPECT_FALSE(cut.directions_differ);
  EXPECT_EQ(CutSyllable().row, 0);
}

TEST(Analyze, RowsCodesAndPhones) {
  struct {
    int language = 0;
    const char* text = nullptr;
    int row = 0;
    sp::Spelled syllable;  // language, phones, code, tone, raw tone
  } const cases[] = {
      {LANGUAGE_MANDARIN, "nǐ", 224, {LANGUAGE_MANDARIN, "n i", 2243, 3, 0}},
      {LANGUAGE_MANDARIN, "ni", 224, {LANGUAGE_MANDARIN, "n i", 2245, 5, 0}},
      {LANGUAGE_MANDARIN, "a1", 0, {LANGUAGE_MANDARIN, "a", 1, 1, 0}},
      {LANGUAGE_MANDARIN, "wo3", 349, {LANGUAGE_MANDARIN, "uo", 3493, 3, 0}},
      {LANGUAGE_MANDARIN, "l\u00FC4", 188, {LANGUAGE_MANDARIN, "l v", 1884, 4, 0}},
      {LANGUAGE_CANTONESE, "hou", 238, {LANGUAGE_CANTONESE, "h ou", 2387, 7, 0}},
      {LANGUAGE_CANTONESE, "wan2", 564, {LANGUAGE_CANTONESE, "uan", 5642, 2, 0}},
      {LANGUAGE_AMERICAN_ENGLISH, "HH AH0", -1, {LANGUAGE_AMERICAN_ENGLISH, "hh ax", 0, 0, 0}},
      {LANGUAGE_AMERICAN_ENGLISH, "AE2 B", -1, {LANGUAGE_AMERICAN_ENGLISH, "ae b", 0, 0, 2}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const Analysis analysis = Analyze(c.language, c.text);
    ASSERT_EQ(analysis.syllables.size(), 1U);
    EXPECT_EQ(analysis.syllables[0].row, c.row);
    EXPECT_EQ(sp::Spell(analysis.syllables[0].syllable), c.syllable);
  }
  // Tone 0 where no rule takes it for the neutral tone
  const Analysis analysis = Analyze(LANGUAGE_MANDARIN, "ni0", WithRules(kNoRules));
  ASSERT_EQ(analysis.syllables.size(), 1U);
  EXPECT_EQ(analysis.syllables[0].digit, '0');
  EXPECT_EQ(analysis.syllables[0].syllable.code, 2245U);
}

// Any text

// A text that the random tests made, and how it is to be read.
struct Sample {
  int language = 0;
  std::string text;
  AnalysisOptions options;
};

void PrintTo(const Sample& sample, std::ostream* out) {
  *out << testing::PrintToString(sample.text) << " in " << sample.language << ", cutting "
       << static_cast<int>(sample.options.cutting) << ", without";
  for (int i = 0; i < kRuleCount; ++i) {
    const Rule rule = static_cast<Rule>(i);
    if (!sample.options.rules.Has(rule)) *out << ' ' << RuleName(rule);
  }
}

Normalized Normalize(const Sample& sample) {
  const RuleSet rules = sample.options.rules;
  switch (sample.language) {
    case LANGUAGE_CANTONESE:
      return NormalizeJyutping(sample.text, rules, sample.options.aliases);
    case LANGUAGE_AMERICAN_ENGLISH:
      return ArpabetToPronunciation(sample.text, rules);
    default:
      return NormalizePinyin(sample.text, rules);
  }
}

// The library makes the same records of the spellings together.
void ExpectLibraryAgrees(const Sample& sample, const Analysis& analysis) {
  std::string text;
  sp::SpelledList records;
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    text += SpellingWithDigit(syllable) + ' ';
    records.push_back(sp::Spell(syllable.syllable));
  }
  std::vector<sp::SyllableInfo> expected = {sp::StaleSyllable()};
  EXPECT_EQ(sp::py2ph(sample.language, text, expected), 0);
  EXPECT_EQ(records, sp::Spell(expected));
}

void ExpectPhonesAgree(const Analysis& analysis, const Normalized& normalized) {
  std::string text;
  sp::SpelledList records;
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    if (!text.empty()) text += ", ";
    text += syllable.spelling + ' ' + syllable.digit;
    records.push_back(sp::Spell(syllable.syllable));
  }
  EXPECT_EQ(text, normalized.text);
  std::vector<sp::SyllableInfo> expected = {sp::StaleSyllable()};
  EXPECT_EQ(sp::pr2ph(LANGUAGE_AMERICAN_ENGLISH, text, expected), 0);
  EXPECT_EQ(records, sp::Spell(expected));
}

Codes CodesOf(const Analysis& analysis) {
  Codes codes;
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    codes.push_back(static_cast<unsigned short>(syllable.syllable.code));
  }
  return codes;
}

Codes LibraryCodes(int language, const std::string& text) {
  Codes codes = {999};
  EXPECT_EQ(sp::py2code(language, text, codes), 0) << testing::PrintToString(text);
  return codes;
}

// What the normaliser reports, and no more where there is nothing to cut. Returns whether the text
// has tones.
bool ExpectNormalizerAgrees(const Sample& sample, const Analysis& analysis,
                            const Normalized& normalized) {
  const bool has_tones =
      std::any_of(normalized.text.begin(), normalized.text.end(), ascii::IsDigit);
  if (has_tones || sample.options.cutting != Cutting::kNone) {
    EXPECT_EQ(Show(analysis.applied), Show(normalized.applied));
  }
  if (has_tones) {
    EXPECT_EQ(Show(analysis.problems), Show(normalized.problems));
    EXPECT_EQ(CodesOf(analysis), LibraryCodes(sample.language, normalized.text));
  } else if (sample.options.cutting == Cutting::kForward) {
    EXPECT_EQ(CodesOf(analysis), LibraryCodes(sample.language, normalized.text + ' '));
  }
  return has_tones;
}

// What must hold for every text. Returns whether the text has tones.
bool ExpectSound(const Sample& sample, const Analysis& analysis) {
  sp::reference::ExpectSound(sample.language, sample.text, sample.options, analysis,
                             sp::ExpectHolds);
  const Normalized normalized = Normalize(sample);
  if (sample.language == LANGUAGE_AMERICAN_ENGLISH) {
    ExpectPhonesAgree(analysis, normalized);
    EXPECT_EQ(Show(analysis.applied), Show(normalized.applied));
    EXPECT_EQ(Show(analysis.problems), Show(normalized.problems));
    return false;
  }
  ExpectLibraryAgrees(sample, analysis);
  return ExpectNormalizerAgrees(sample, analysis, normalized);
}

// Fragments of texts of each language, right and wrong ones.
std::vector<std::string> Fragments(int language) {
  switch (language) {
    case LANGUAGE_CANTONESE:
      return {"nei5", "hou2",   "hou",   "ngo",   "ngong", "ai3",   "ai",   "gwu", "la",
              "m",    "ng",     "laam",  "laux",  "VQ6",   "H0",    "T",    "恤",  "，",
              "'",    " ",      "\n",    "0",     "7",     "8",     "５",   "２",  "ｎ",
              "ｇ",   "á",      "ü",     "\xe5",  "\xa5",  "@",     "kwut", "r",   "lue",
              "x",    "\u0301", "·",     "i",     "Hou",   "jyut6", "juyt", "ê",   "22",
              "o",    "hai6",   "hello", "gaai1", "u:",    "\u3000"};
    case LANGUAGE_AMERICAN_ENGLISH:
      return {"HH", "AH0", "AH",    "ah1", "ow2", "L",   "s",   "T",   "R",      "NG",     "K",
              " ",  " ",   " ",     " ",   " ",   "\t",  "\n",  "\v",  "AE3",    "B3",     "12",
              "0",  "XX",  "A0",    "sli", "SPN", ",",   "'",   "`",   "\u00E9", "\u3000", "ax0",
              " S", " T ", " IY1 ", " W ", "hh ", " EH", "ZH ", " D ", "\xff",   "·",      "sil "};
    default:
      return {"ni3",     "hao",  "dianr", "r",   "r5",       "lue",    "u:",     ":",
              "lu",      "ü",    "ǚ",     "ǎ",   "m\u0300",  "ng",     "ń",      "ê",
              "\u0301",  "ɑ",    "ɡ",     "ñ",   "P",        "PK",     "X",      "A1",
              "T恤",     "好",   "，",    "·",   "'",        " ",      "\t",     "0",
              "6",       "33",   "５",    "³",   "ｎ",       "：",     "\xe4",   "\xbd",
              "xian",    "zhàn", "Hé",    "nán", "xx5",      "jv",     "hello",  "#",
              "\u200b",  "e",    "n",     "g",   "yipinguo", "nve",    "lv",     "\u0308\u030c",
              "zhuangr", "lǜ3",  "nihao", "5",   "hoa",      "zhogn1", "fangan", " "};
  }
}

class AnalyzeAnyText : public testing::TestWithParam<sp::Language> {
 protected:
  int language() const { return GetParam().id; }
};

TEST_P(AnalyzeAnyText, LosesNothing) {
  const std::vector<std::string> fragments = Fragments(language());
  const AliasTable aliases = ShippedAliases();
  RandomTexts random;
  int clean = 0;
  int toned = 0;
  int suggested = 0;
  for (int i = 0; i < 30000 && !HasFailure(); ++i) {
    Sample sample = {language(), random.Text(fragments), {}};
    if (i % 2 == 0) sample.options.rules = random.Rules();
    if (i % 3 == 0) sample.options.aliases = &aliases;
    sample.options.cutting = kCuttings[random.Below(std::size(kCuttings))];
    const Analysis analysis = Analyze(language(), sample.text, sample.options);
    SCOPED_TRACE(testing::PrintToString(sample) + "\n" + ShowSyllables(analysis) + "\nproblems: " +
                 ShowProblems(analysis) + "\nseparators: " + ShowSeparators(analysis));
    toned += ExpectSound(sample, analysis) ? 1 : 0;
    clean += !sample.text.empty() && analysis.problems.empty() ? 1 : 0;
    suggested += std::any_of(analysis.problems.begin(), analysis.problems.end(),
                             [](const Problem& problem) { return !problem.suggestion.empty(); })
                     ? 1
                     : 0;
  }
  EXPECT_GT(clean, 1000);
  EXPECT_GT(suggested, 3000);
  EXPECT_TRUE(toned > 3000 || language() == LANGUAGE_AMERICAN_ENGLISH) << toned;
}

INSTANTIATE_TEST_SUITE_P(Languages, AnalyzeAnyText, testing::ValuesIn(sp::kLanguages),
                         sp::LanguageName);

class AnalyzeSyllables : public AnalyzeAnyText {
 protected:
  std::vector<std::string> Spellings() const {
    std::vector<std::string> spellings;
    for (const sp::GoldenSyllable& row : GetParam().syllables()) {
      if (row.spelling != "E") spellings.push_back(row.spelling);  // text cannot name it
    }
    return spellings;
  }
};

// All slips of a letter in a spelling: dropped, doubled, transposed, another hit for it or after
// it.
std::set<std::string> AllSlips(const std::string& spelling) {
  std::set<std::string> slips;
  for (std::size_t i = 0; i < spelling.size(); ++i) {
    std::string slip = spelling;
    slips.insert(slip.erase(i, 1));
    slip = spelling;
    slips.insert(slip.insert(i, 1, spelling[i]));
    slip = spelling;
    if (i > 0) std::swap(slip[i - 1], slip[i]);
    slips.insert(slip);
    for (const char hit : std::string_view("aesnoikgu")) {
      slip = spelling;
      slip[i] = hit;
      slips.insert(slip);
      slip = spelling;
      slips.insert(slip.insert(i + 1, 1, hit));
    }
  }
  return slips;
}

void ExpectReferenceHint(int language, const std::string& letters, int& hints) {
  const Analysis analysis = Analyze(language, letters + '2', WithRules(kNoRules));
  if (analysis.problems.empty() || analysis.problems[0].hint == Hint::kAlias) return;
  ASSERT_EQ(ShowSyllables(analysis), "") << letters;
  ASSERT_EQ(analysis.problems.size(), 1U) << letters;
  std::string expected = sp::reference::Suggest(language, letters);
  if (!expected.empty()) ++hints;
  if (analysis.problems[0].hint == Hint::kSpelling) expected += '2';
  ASSERT_EQ(ShowHint(analysis.problems[0]), expected) << letters;
}

// The cutter keeps what is known of eight places, and the set of syllables packs six letters.
TEST_P(AnalyzeSyllables, HaveSixLettersAtMost) {
  for (const std::string& spelling : Spellings()) EXPECT_LE(spelling.size(), 6U) << spelling;
}

// The suggestion is that of the slow form, which tries every slip.
TEST_P(AnalyzeSyllables, HintsAreTheReferencesForEverySlip) {
  int hints = 0;
  for (const std::string& spelling : Spellings()) {
    for (const std::string& letters : AllSlips(spelling)) {
      if (!letters.empty()) ExpectReferenceHint(language(), letters, hints);
    }
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(hints, 15000);
}

TEST_P(AnalyzeSyllables, HintsAreTheReferencesForRandomLetters) {
  constexpr std::string_view kLetters = "aaeeiioouunngghjkwyvzsbpfqx";
  RandomTexts random;
  int hints = 0;
  for (int i = 0; i < 5000 && !HasFatalFailure(); ++i) {
    std::string letters;
    for (std::size_t left = 1 + random.Below(8); left > 0; --left) {
      letters += kLetters[random.Below(kLetters.size())];
    }
    ExpectReferenceHint(language(), letters, hints);
  }
  EXPECT_GT(hints, 400);
}

// Every syllable with every tone is read from its own bytes.
TEST_P(AnalyzeSyllables, EverySyllableAndTone) {
  std::size_t seen = 0;
  for (const std::string& spelling : Spellings()) {
    for (int tone = 1; tone <= GetParam().top_tone; ++tone) {
      const std::string syllable = spelling + std::to_string(tone);
      std::string text = syllable;
      text.append(" ").append(syllable);
      const Analysis analysis = Analyze(language(), text);
      ASSERT_EQ(analysis.syllables.size(), 2U) << syllable;
      for (const AnalyzedSyllable& read : analysis.syllables) {
        EXPECT_EQ(SpellingWithDigit(read), syllable);
        EXPECT_EQ(text.substr(read.range.offset, read.range.length), syllable);
      }
      EXPECT_EQ(analysis.syllables[1].range.offset, syllable.size() + 1) << syllable;
      EXPECT_EQ(ShowProblems(analysis), "") << syllable;
      ++seen;
    }
  }
  EXPECT_EQ(seen, language() == LANGUAGE_MANDARIN ? 416U * 5 : 619U * 7);
}

std::string SmallLetters(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ascii::ToSmall);
  return text;
}

// The library reads a run of capitals as a syllable each ("MA3" is "m", "a3"), Analyze as letters.
bool HasNeighbouringCapitals(const std::string& text) {
  const auto are_capitals = [](char a, char b) {
    return a >= 'A' && a <= 'Z' && b >= 'A' && b <= 'Z';
  };
  return std::adjacent_find(text.begin(), text.end(), are_capitals) != text.end();
}

// Without rules and with the cut of the library, what passes is what the library itself reads, each
// syllable from its own letters.
TEST_P(AnalyzeSyllables, WithoutRulesTextsPassThatTheLibraryReads) {
  const std::vector<std::string> fragments = Fragments(language());
  RandomTexts random;
  const Sample bare = {language(), "", {kNoRules, nullptr, Cutting::kForward}};
  int passed = 0;
  for (int i = 0; i < 100000; ++i) {
    const std::string text = random.Text(fragments);
    const Analysis analysis = Analyze(language(), text, bare.options);
    if (text.empty() || !analysis.problems.empty() || HasNeighbouringCapitals(text)) continue;
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_EQ(CodesOf(analysis), LibraryCodes(language(), text));
    for (const AnalyzedSyllable& syllable : analysis.syllables) {
      EXPECT_EQ(SmallLetters(text.substr(syllable.range.offset, syllable.range.length)),
                SpellingWithDigit(syllable));
    }
    ++passed;
    if (HasFailure()) break;
  }
  EXPECT_GT(passed, 3000);
}

INSTANTIATE_TEST_SUITE_P(Languages, AnalyzeSyllables,
                         testing::Values(sp::kMandarin, sp::kCantonese), sp::LanguageName);

TEST(Analyze, UnregisteredLanguagesAreServedByMandarin) {
  std::size_t seen = 0;
  for (const int language : sp::UnregisteredIds()) {
    SCOPED_TRACE(language);
    for (const std::string text : {"Nǐ zhogn3", "yipinguo", "jyut6", "HH AH0", "hello", ""}) {
      const Analysis analysis = Analyze(language, text);
      const Analysis mandarin = Analyze(LANGUAGE_MANDARIN, text);
      EXPECT_EQ(ShowSyllables(analysis), ShowSyllables(mandarin));
      EXPECT_EQ(ShowProblems(analysis), ShowProblems(mandarin));
      EXPECT_EQ(ShowSeparators(analysis), ShowSeparators(mandarin));
      EXPECT_EQ(CodesOf(analysis), CodesOf(mandarin));
      ++seen;
    }
  }
  EXPECT_EQ(seen, 108U);
}

TEST(Analyze, LongTextsAreNoProblem) {
  constexpr std::size_t kTimes = 20000;
  struct {
    int language;
    const char* text;
    std::size_t syllables;  // of the text once
    std::size_t problems;
  } const cases[] = {
      {LANGUAGE_MANDARIN, "nǐhǎodiǎnr", 4, 0},
      {LANGUAGE_MANDARIN, "yipinguo", 3, 0},
      {LANGUAGE_MANDARIN, "dianr3PK", 2, 1},
      {LANGUAGE_CANTONESE, "wan2gung1xx2", 2, 1},
      {LANGUAGE_AMERICAN_ENGLISH, "HH AH0 L OW1 QQ ", 2, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    std::string text;
    for (std::size_t i = 0; i < kTimes; ++i) text += c.text;
    const Analysis analysis = Analyze(c.language, text);
    EXPECT_EQ(analysis.syllables.size(), c.syllables * kTimes);
    EXPECT_EQ(analysis.problems.size(), c.problems * kTimes);
  }
}

}  // namespace
}  // namespace qeo::notation
