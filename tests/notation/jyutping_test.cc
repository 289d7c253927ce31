// Jyutping as it is written, to the library's notation, with alias tables; a corpus and a character
// list unchanged, and what must hold for any bytes at all.

#include "notation/jyutping.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "notation/spelling.h"
#include "phoneme/phoneme.h"
#include "tests/notation/normalizing.h"
#include "tests/testing.h"

namespace qeo::notation {
namespace {

using sp::LANGUAGE_CANTONESE;

struct Case {
  std::string input;
  std::string text;
  std::string applied;   // as Show writes it
  std::string problems;  // likewise
};

void ExpectCases(const std::vector<Case>& cases, RuleSet rules = kJyutpingRules,
                 const AliasTable* aliases = nullptr) {
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.input));
    const Normalized result = NormalizeJyutping(c.input, rules, aliases);
    EXPECT_EQ(result.text, c.text);
    EXPECT_EQ(Show(result.applied), c.applied);
    EXPECT_EQ(Show(result.problems), c.problems);
    ExpectSound(LANGUAGE_CANTONESE, c.input, result);
  }
}

std::vector<unsigned short> Codes(const std::string& text) {
  std::vector<unsigned short> codes = {999};
  EXPECT_EQ(sp::py2code(LANGUAGE_CANTONESE, text, codes), 0) << text;
  return codes;
}

std::string ShippedText() {
  std::ifstream file(PHONEME_DATA_DIR "/jyutping_aliases.tsv", std::ios::binary);
  EXPECT_TRUE(file.is_open());
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

AliasTable ShippedAliases() {
  ParsedAliases parsed = AliasTable::Parse(ShippedText());
  EXPECT_EQ(parsed.errors.size(), 0U);
  return parsed.table;
}

// Errors as "3: message".
std::vector<std::string> Show(const std::vector<AliasError>& errors) {
  std::vector<std::string> shown;
  shown.reserve(errors.size());
  for (const AliasError& error : errors) {
    shown.push_back(std::to_string(error.line) + ": " + error.message);
    const bool quotes = error.message.front() == '"';
    const std::string quoted = quotes ? '"' + error.field + '"' : error.field;
    EXPECT_EQ(error.message.substr(0, quotes ? quoted.size() : 0), quoted);
  }
  return shown;
}

}  // namespace

TEST(NormalizeJyutping, WhatTheLibraryReads) {
  ExpectCases({
      {"", "", "", ""},
      {"nei5 hou2", "nei5 hou2", "", ""},
      {" nei5\thou2\n", "nei5 hou2", "", ""},
      {"Hoeng1 gong2", "hoeng1 gong2", "", ""},
      {"m4 ng5 M4", "m4 ng5 m4", "", ""},
      {"ngo7", "ngo7", "", ""},  // as code2py writes no tone
      {"ngo", "ngo", "", ""},
      {"ngo5 hai", "ngo5 hai", "", ""},
      {"neihou", "neihou", "", ""},
      {"NeiHou", "nei hou", "", ""},
      {"xx", "xx", "", ""},
  });
}

TEST(NormalizeJyutping, Glued) {
  ExpectCases({
      {"wan2gung1", "wan2 gung1", "glued 4+5", ""},
      {"ngo5dei6hai6", "ngo5 dei6 hai6", "glued 4+4, glued 8+4", ""},
      {"Wan2Gung1", "wan2 gung1", "glued 4+5", ""},
      {"ngo5hai", "ngo5 hai", "glued 4+3", ""},
      {"wan2，gung1", "wan2 gung1", "punctuation 4+3", ""},
  });
  ExpectCases({{"wan2gung1", "wan2gung1", "", ""}}, kJyutpingRules.Without(Rule::kGlued));
}

TEST(NormalizeJyutping, FullWidthAndPunctuation) {
  ExpectCases({
      {"ｎｅｉ５ｈｏｕ２", "nei5 hou2", "full-width 0+12, glued 12+12, full-width 12+12", ""},
      {"nei⁵ hou₂", "nei5 hou2", "full-width 3+3, full-width 10+3", ""},
      {"nei5。hou2！", "nei5 hou2", "punctuation 4+3, punctuation 11+3", ""},
      {"nei5-hou2", "nei5 hou2", "punctuation 4+1", ""},
      {"「nei5」", "nei5", "punctuation 0+3, punctuation 7+3", ""},
  });
  ExpectCases({{"ｎｅｉ５ nei5", "nei5", "", "foreign text 0+12"}},
              kJyutpingRules.Without(Rule::kFullWidth));
  ExpectCases({{"nei5。hou2", "nei5 hou2", "", "foreign text 4+3"}},
              kJyutpingRules.Without(Rule::kPunctuation));
}

TEST(NormalizeJyutping, Problems) {
  ExpectCases({
      // codes for punctuation, and foreign words
      {"VQ6", "", "abbreviation 0+3", "foreign text 0+3"},
      {"nei5hou2，VQ6", "nei5 hou2", "glued 4+4, punctuation 8+3, abbreviation 11+3",
       "foreign text 11+3"},
      {"H0gu2", "gu2", "abbreviation 0+2", "foreign text 0+2"},
      {"kaa1laa1OK0", "kaa1 laa1", "glued 4+4, abbreviation 8+3", "foreign text 8+3"},
      {"@ #", "", "", "foreign text 0+1, foreign text 2+1"},
      {"○", "", "", "foreign text 0+3"},
      {"sap6 ｍ goi1", "sap6 goi1", "abbreviation 5+3", "foreign text 5+3"},
      {"personnel0", "", "", "unknown syllable 0+10"},
      {"Hong Kong Telecom0", "hong kong", "", "unknown syllable 10+8"},
      {"拚pun2", "pun2", "", "foreign text 0+3"},
      {"néi5", "", "", "foreign text 0+5"},
      {"nü5", "", "", "foreign text 0+4"},
      // no syllables
      {"ai3", "", "", "unknown syllable 0+3"},
      {"nei5 hao2", "nei5", "", "unknown syllable 5+4"},
      {"neihou2", "", "", "unknown syllable 0+7"},
      {"r5", "", "", "unknown syllable 0+2"},
      {"lue4", "", "", "unknown syllable 0+4"},
      // tones
      {"hon0", "", "", "bad tone 0+4"},
      {"sik8 jyut9", "", "", "bad tone 0+4, bad tone 5+5"},
      {"nei55 hou2", "nei5 hou2", "", "bad tone 4+1"},
      {"nei5\xff hou2", "nei5 hou2", "", "invalid UTF-8 4+1"},
  });
  ExpectCases({{"VQ6 NEI5", "nei5", "", "unknown syllable 0+3"}},
              kJyutpingRules.Without(Rule::kAbbreviation));
}

TEST(NormalizeJyutping, OriginsAreOffsetsInTheInput) {
  EXPECT_EQ(NormalizeJyutping("wan2gung1").origins,
            (std::vector<std::size_t>{0, 1, 2, 3, 4, 4, 5, 6, 7, 8}));
  const AliasTable aliases = ShippedAliases();
  const Normalized result = NormalizeJyutping("go2 ai3", kJyutpingRules, &aliases);
  EXPECT_EQ(result.text, "go2 ngai3");
  EXPECT_EQ(result.origins, (std::vector<std::size_t>{0, 1, 2, 3, 4, 4, 4, 4, 6}));
}

// Aliases

TEST(AliasTable, Parse) {
  struct {
    std::string text;
    std::size_t size;
    std::vector<std::string> errors;
  } const cases[] = {
      {"", 0, {}},
      {"# a comment\n\n#another\n", 0, {}},
      {"ni\tnei\n", 1, {}},
      {"ni\tnei", 1, {}},
      {"\xef\xbb\xbfni\tnei\r\nai\tngai\r\n", 2, {}},
      {"laa\tnaa\n", 1, {}},  // a known syllable can be replaced
      {"abcdefgh\tnei\n", 1, {}},
      {"ni nei\n", 0, {"1: there is no tab between a spelling and its syllable"}},
      {"ni\tnei\tx\n", 0, {"1: there is more than one tab"}},
      {"# x\nni\tnei3\n", 0, {"2: \"nei3\" is not a syllable of Jyutping"}},
      {"ni\tni\n", 0, {"1: \"ni\" is not a syllable of Jyutping"}},
      {"ni\t\n", 0, {"1: \"\" is not a syllable of Jyutping"}},
      {"ni\tneineineinei\n", 0, {"1: \"neineineinei\" is not a syllable of Jyutping"}},
      {"\tnei\n", 0, {"1: \"\" is not a spelling of 1 to 8 small letters"}},
      {"Ni\tnei\n", 0, {"1: \"Ni\" is not a spelling of 1 to 8 small letters"}},
      {"abcdefghi\tnei\n", 0, {"1: \"abcdefghi\" is not a spelling of 1 to 8 small letters"}},
      {"n{\tnei\n", 0, {"1: \"n{\" is not a spelling of 1 to 8 small letters"}},
      {"ni \tnei\n", 0, {"1: \"ni \" is not a spelling of 1 to 8 small letters"}},
      {"ni\tnei\n\nai\tngai\nni\tlei\nx\n",
       2,
       {"4: \"ni\" is replaced in an earlier line",
        "5: there is no tab between a spelling and its syllable"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    const ParsedAliases parsed = AliasTable::Parse(c.text);
    EXPECT_EQ(parsed.table.size(), c.size);
    EXPECT_EQ(parsed.table.empty(), c.size == 0);
    EXPECT_EQ(Show(parsed.errors), c.errors);
  }
}

TEST(AliasTable, Find) {
  const AliasTable table = AliasTable::Parse("ni\tnei\nai\tngai\nni\tlei\n").table;
  EXPECT_EQ(table.Find("ni"), "nei");  // the first line is kept
  EXPECT_EQ(table.Find("ai"), "ngai");
  EXPECT_EQ(table.Find("n"), "");
  EXPECT_EQ(table.Find("nii"), "");
  EXPECT_EQ(table.Find(""), "");
  EXPECT_EQ(AliasTable().Find("ni"), "");
}

TEST(AliasTable, ShippedTable) {
  struct {
    const char* spelling;
    const char* syllable;
  } const rows[] = {
      {"aak", "ngaak"}, {"aam", "ngaam"}, {"aang", "ngaang"}, {"aap", "ngaap"}, {"ai", "ngai"},
      {"an", "ngan"},   {"ap", "ngap"},   {"at", "ngat"},     {"ok", "ngok"},   {"ni", "nei"},
      {"gwu", "gu"},    {"gwui", "gui"},  {"gwun", "gun"},    {"kwu", "ku"},    {"kwui", "kui"},
      {"kwut", "kut"},  {"a", "aa"},      {"ga", "gaa"},      {"la", "laa"},    {"ma", "maa"},
  };
  const AliasTable table = ShippedAliases();
  EXPECT_EQ(table.size(), std::size(rows));
  for (const auto& row : rows) {
    EXPECT_EQ(table.Find(row.spelling), row.syllable);
    // no syllable of the table changes
    EXPECT_EQ(Show(NormalizeJyutping(std::string(row.spelling) + '1').problems),
              "unknown syllable 0+" + std::to_string(std::string_view(row.spelling).size() + 1));
  }
}

// Each syllable that begins with a vowel, and that the table has only with ng before it.
TEST(AliasTable, ShippedTableHasAllThatLackNg) {
  const AliasTable table = ShippedAliases();
  int aliases = 0;
  for (const sp::GoldenSyllable& row : sp::kCantonese.syllables()) {
    if (row.spelling.compare(0, 2, "ng") != 0 || row.spelling == "ng") continue;
    const std::string bare = row.spelling.substr(2);
    const bool is_known = NormalizeJyutping(bare + '1').problems.empty();
    if (is_known || bare == "a") continue;
    EXPECT_EQ(table.Find(bare), row.spelling);
    ++aliases;
  }
  EXPECT_EQ(aliases, 9);
}

TEST(NormalizeJyutping, Aliases) {
  const AliasTable aliases = ShippedAliases();
  ExpectCases(
      {
          {"ai3", "ngai3", "alias 0+2", ""},
          {"ni1go3", "nei1 go3", "alias 0+2", ""},
          {"go2ni1", "go2 nei1", "alias 3+2", ""},
          {"gwu1 kwut3", "gu1 kut3", "alias 0+3, alias 5+4", ""},
          {"la1 Ga3 a", "laa1 gaa3 aa", "alias 0+2, alias 4+2, alias 8+1", ""},
          {"ｎｉ１", "nei1", "full-width 0+6, alias 0+6, full-width 6+3", ""},
          {"nigo", "nei go", "alias 0+2", ""},
          {"goni", "go nei", "alias 2+2", ""},
          {"laam", "laam", "", ""},
          {"lango", "lango", "", ""},
          {"nihoux", "nei houx", "alias 0+2", ""},  // the cut that leaves out x
          {"xnihou", "x nei hou", "alias 1+2", ""},
          {"xx3 ni8", "", "", "unknown syllable 0+3, bad tone 4+3"},
      },
      kJyutpingRules, &aliases);
  ExpectCases({{"ai3", "", "", "unknown syllable 0+3"}}, kJyutpingRules.Without(Rule::kAlias),
              &aliases);
}

TEST(NormalizeJyutping, AliasesReplaceKnownSyllablesToo) {
  const AliasTable aliases = AliasTable::Parse("laa\tnaa\nabcdefgh\tnei\n").table;
  ExpectCases(
      {
          {"laa1 abcdefgh5", "naa1 nei5", "alias 0+3, alias 5+8", ""},
          {"laahou", "naa hou", "alias 0+3", ""},
          {"abcdefghhou", "nei hou", "alias 0+8", ""},
          {"abcdefghi5", "", "", "unknown syllable 0+10"},
      },
      kJyutpingRules, &aliases);
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
  for (const sp::Row& row : sp::ReadTsv(PHONEME_DATA_DIR "/cantonese.tsv", 5)) {
    lines.push_back({row[1], row[2], row[3]});
  }
  return lines;
}

using Counts = std::map<std::string, int>;

}  // namespace

TEST(NormalizeJyutpingSample, EveryReadyLineIsReadAsItsReadyForm) {
  const AliasTable aliases = ShippedAliases();
  Counts compared;
  for (const Line& line : Sample()) {
    if (line.ready.empty()) continue;
    const Normalized result = NormalizeJyutping(line.source_form);
    EXPECT_EQ(result.text, line.ready);
    EXPECT_EQ(Codes(result.text), Codes(line.ready));
    EXPECT_EQ(Show(result.problems), "") << line.source_form;
    EXPECT_EQ(NormalizeJyutping(line.source_form, kJyutpingRules, &aliases).text, line.ready);
    ++compared[line.source];
  }
  EXPECT_EQ(compared, (Counts{{"hkcancor", 3248}, {"lshk", 2200}}));
}

// No line without a ready form is passed over; those with a syllable of the alias table can be read
// with it.
TEST(NormalizeJyutpingSample, OtherLinesAreReported) {
  const AliasTable aliases = ShippedAliases();
  Counts reported;
  Counts with_aliases;
  for (const Line& line : Sample()) {
    if (!line.ready.empty()) continue;
    const Normalized plain = NormalizeJyutping(line.source_form);
    ASSERT_FALSE(plain.problems.empty()) << line.source_form;
    ExpectSound(LANGUAGE_CANTONESE, line.source_form, plain);
    ++reported[line.source + ' ' + std::string(ProblemName(plain.problems[0].kind))];
    const Normalized aliased = NormalizeJyutping(line.source_form, kJyutpingRules, &aliases);
    ExpectSound(LANGUAGE_CANTONESE, line.source_form, aliased);
    with_aliases[line.source] += aliased.problems.empty() ? 1 : 0;
  }
  EXPECT_EQ(reported, (Counts{{"hkcancor bad tone", 9},
                              {"hkcancor foreign text", 103},
                              {"hkcancor unknown syllable", 438},
                              {"lshk unknown syllable", 136}}));
  EXPECT_EQ(with_aliases, (Counts{{"hkcancor", 27}, {"lshk", 42}}));
}

TEST(NormalizeJyutping, ReadsWhatJyutpingWrites) {
  int compared = 0;
  for (int code = 1; code <= 6187; ++code) {
    if (code % 10 < 1 || code % 10 > 7) continue;
    const std::vector<unsigned short> codes = {static_cast<unsigned short>(code), 4035};
    const std::string word = Jyutping(codes, Spacing::kWord).text;
    const Normalized result = NormalizeJyutping(word);
    EXPECT_EQ(Codes(result.text), codes) << word;
    EXPECT_EQ(Show(result.problems), "") << word;
    ++compared;
  }
  EXPECT_EQ(compared, 619 * 7);
}

// Any text

TEST(NormalizeJyutping, NothingIsLostWhateverTheText) {
  const std::vector<std::string> fragments = {
      "nei5", "hou",  "hou2", "ngai", "ai",  "ai3", "ni",  "gwu", "a",   "la",     "m",    "ng",
      "aa",   "laam", "VQ6",  "H0",   "OK0", "T",   "Mr_", "恤",  "，",  "'",      " ",    "\n",
      "0",    "7",    "8",    "５",   "２",  "ｎ",  "ｇ",  "á",   "ü",   "\u0301", "\xe5", "\xa5",
      "@",    "kwut", "r",    "lue",  "x",   ":",   "u:",  "i",   "Hou", "jyut6",  "ê",    "22"};
  const AliasTable aliases = ShippedAliases();
  RandomTexts random;
  int changed = 0;
  int reported = 0;
  for (int i = 0; i < 40000; ++i) {
    const std::string text = random.Text(fragments);
    const Normalized result = NormalizeJyutping(text, kJyutpingRules, &aliases);
    ExpectSound(LANGUAGE_CANTONESE, text, result);
    ExpectSound(LANGUAGE_CANTONESE, text, NormalizeJyutping(text));
    ExpectSound(LANGUAGE_CANTONESE, text, NormalizeJyutping(text, random.Rules(), &aliases));
    const Normalized again = NormalizeJyutping(result.text, kJyutpingRules, &aliases);
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

}  // namespace qeo::notation
