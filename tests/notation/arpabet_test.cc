// ARPAbet both ways: the rules one by one, every line of a real dictionary there and back, and the
// cut into syllables held against a lexicon that another hand has cut.

#include "notation/arpabet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "notation/english_onsets.h"
#include "phoneme/phoneme.h"
#include "tests/reference/invariants.h"
#include "tests/testing.h"

namespace qeo::notation {
namespace {

using internal::OnsetSource;

constexpr RuleSet kNoRules;
constexpr RuleSet kFolding = kArpabetRules.With(Rule::kSecondStress);

std::string Show(Range range) {
  return std::to_string(range.offset) + '+' + std::to_string(range.length);
}

// "lower-case 0+2, reduced-vowel 3+3"
std::string Show(const std::vector<Application>& applied) {
  std::string shown;
  for (const Application& a : applied) {
    if (!shown.empty()) shown += ", ";
    shown.append(RuleName(a.rule)).append(" ").append(Show(a.range));
  }
  return shown;
}

// "unknown phone 0+2 hh, bad tone 5+1"
std::string Show(const std::vector<Problem>& problems) {
  std::string shown;
  for (const Problem& p : problems) {
    if (!shown.empty()) shown += ", ";
    shown.append(ProblemName(p.kind)).append(" ").append(Show(p.range));
    if (!p.suggestion.empty()) shown.append(" ").append(p.suggestion);
  }
  return shown;
}

void ExpectParses(const std::string& pronunciation) {
  std::vector<sp::SyllableInfo> syllables = {sp::StaleSyllable()};
  EXPECT_EQ(sp::pr2ph(sp::LANGUAGE_AMERICAN_ENGLISH, pronunciation, syllables), 0) << pronunciation;
  const auto commas = std::count(pronunciation.begin(), pronunciation.end(), ',');
  EXPECT_EQ(syllables.size(), pronunciation.empty() ? 0U : static_cast<unsigned>(commas) + 1U);
}

Normalized ToPronunciation(std::string_view phones, RuleSet rules = kArpabetRules) {
  Normalized result = ArpabetToPronunciation(phones, rules);
  sp::reference::ExpectPlacedArpabet(std::string(phones), result, sp::ExpectHolds);
  ExpectParses(result.text);
  return result;
}

Normalized ToArpabet(std::string_view pronunciation) {
  Normalized result = PronunciationToArpabet(pronunciation);
  sp::reference::ExpectPlacedPronunciation(std::string(pronunciation), result, sp::ExpectHolds);
  EXPECT_TRUE(result.applied.empty());
  return result;
}

TEST(ArpabetToPronunciation, Syllables) {
  struct {
    const char* phones;
    const char* text;
  } const cases[] = {
      {"", ""},
      {" \t\r\n", ""},
      {"HH AH0 L OW1", "hh ax 0, l ow 1"},
      {"  HH\tAH0  L\vOW1\r\n", "hh ax 0, l ow 1"},
      {"AH0", "ax 0"},
      {"B AW1 T", "b aw t 1"},
      // Between vowels the second takes what may begin a syllable.
      {"EH1 K S T R AH0", "eh k 1, s t r ax 0"},
      {"AE1 N G L OW0", "ae n 1, g l ow 0"},
      {"S IH1 NG ER0", "s ih ng 1, er 0"},
      {"AE1 D L AH0 B", "ae d 1, l ax b 0"},
      {"AA1 T Z R AH0", "aa t z 1, r ax 0"},
      {"AA1 T S R AH0", "aa t 1, s r ax 0"},
      {"M IH0 S R UW1 L", "m ih 0, s r uw l 1"},
      {"IY1 OW0 IY0", "iy 1, ow 0, iy 0"},
      // At the beginning too; what is left is a syllable of its own.
      {"S T R IH1 NG", "s t r ih ng 1"},
      {"S R IY1", "s r iy 1"},
      {"SH N AE1 P S", "sh n ae p s 1"},
      {"S V EH1 L T", "s v eh l t 1"},
      {"T S UW0", "t 0, s uw 0"},
      {"S T Y UW1", "s 0, t y uw 1"},
      {"NG UW1", "ng 0, uw 1"},
      {"S N K R AA1", "s n 0, k r aa 1"},
      // At the end all belongs to the last vowel.
      {"T EH1 K S T S", "t eh k s t s 1"},
      // No vowel: one syllable.
      {"HH M", "hh m 0"},
      {"SH", "sh 0"},
      // Silence is a phone, but it begins no syllable.
      {"SIL", "sil 0"},
      {"AA1 SIL P AA1", "aa sil 1, p aa 1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.phones);
    const Normalized result = ToPronunciation(c.phones);
    EXPECT_EQ(result.text, c.text);
    EXPECT_EQ(Show(result.problems), "");
  }
}

TEST(ArpabetToPronunciation, Rules) {
  struct {
    const char* phones = "";
    RuleSet rules;
    const char* text = "";
    const char* applied = "";
    const char* problems = "";
  } const cases[] = {
      {"HH AH0 L OW1", kArpabetRules, "hh ax 0, l ow 1",
       "lower-case 0+2, lower-case 3+2, reduced-vowel 3+3, lower-case 7+1, lower-case 9+2", ""},
      {"hh ax0 l ow1", kArpabetRules, "hh ax 0, l ow 1", "", ""},
      {"hh ax0 l ow1", kNoRules, "hh ax 0, l ow 1", "", ""},

      // lower-case: one letter is enough.
      {"Hh hH ow1", kArpabetRules, "hh 0, hh ow 1", "lower-case 0+2, lower-case 3+2", ""},
      {"HH ow1", kArpabetRules.Without(Rule::kLowerCase), "ow 1", "", "unknown phone 0+2 hh"},
      {"HH OW1", kNoRules, "", "", "unknown phone 0+2 hh, unknown phone 3+3 ow"},

      // reduced-vowel: AH with a written 0 and nothing else.
      {"b ah0", kArpabetRules, "b ax 0", "reduced-vowel 2+3", ""},
      {"b ah0", kArpabetRules.Without(Rule::kReducedVowel), "b ah 0", "", ""},
      {"b ah1", kArpabetRules, "b ah 1", "", ""},
      {"b ah2", kFolding, "b ah 1", "second-stress 4+1", ""},
      {"b ah", kArpabetRules, "b ah 0", "missing-stress 2+2", ""},
      {"b ih0", kArpabetRules, "b ih 0", "", ""},
      {"ax1 ax2", kArpabetRules, "ax 1, ax 2", "", ""},

      // second-stress: off unless asked for.
      {"ae2 d ow1", kArpabetRules, "ae 2, d ow 1", "", ""},
      {"ae2 d ow1", kFolding, "ae 1, d ow 1", "second-stress 2+1", ""},
      {"AE2", kFolding, "ae 1", "lower-case 0+2, second-stress 2+1", ""},

      // missing-stress
      {"HH AH L OW", kArpabetRules, "hh ah 0, l ow 0",
       "lower-case 0+2, lower-case 3+2, missing-stress 3+2, lower-case 6+1, lower-case 8+2, "
       "missing-stress 8+2",
       ""},
      {"l ow", kArpabetRules.Without(Rule::kMissingStress), "l 0", "", "bad tone 2+2"},
      {"L OW", kArpabetRules.Without(Rule::kMissingStress), "l 0", "lower-case 0+1",
       "bad tone 2+2"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.phones);
    const Normalized result = ToPronunciation(c.phones, c.rules);
    EXPECT_EQ(result.text, c.text);
    EXPECT_EQ(Show(result.applied), c.applied);
    EXPECT_EQ(Show(result.problems), c.problems);
  }
}

TEST(ArpabetToPronunciation, RulesOfOtherNotationsDoNothing) {
  RuleSet all;
  for (int i = 0; i < kRuleCount; ++i) all = all.With(static_cast<Rule>(i));
  const char phones[] = "K AH0 L AO2, \xEF\xBC\xAB er5";
  EXPECT_EQ(Show(ToPronunciation(phones, all).problems),
            Show(ToPronunciation(phones, kFolding).problems));
  EXPECT_EQ(ToPronunciation(phones, all).text, ToPronunciation(phones, kFolding).text);
}

// The phones are written in lower case, so that nothing but the problem shows.
TEST(ArpabetToPronunciation, Problems) {
  struct {
    const char* phones;
    const char* text;
    const char* applied;
    const char* problems;
  } const cases[] = {
      // Unknown names: the digit after them belongs to the problem.
      {"hh xq1 ow1", "hh ow 1", "", "unknown phone 3+3"},
      {"hhh ow1", "ow 1", "", "unknown phone 0+3 hh"},
      {"k axr1", "k 0", "", "unknown phone 2+4 ax"},
      {"q", "", "", "unknown phone 0+1"},
      {"1", "", "", "unknown phone 0+1"},
      {"b 1", "b 0", "", "unknown phone 2+1"},
      {"hh, ow1", "ow 1", "", "unknown phone 0+3 hh"},
      {"ow1 # place", "ow 1", "", "unknown phone 4+1, unknown phone 6+5"},
      {"sils", "", "", "unknown phone 0+4 sil"},
      {"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa1", "", "", "unknown phone 0+36"},
      // Digits that are not a stress: the phone is read without them.
      {"b aa3 b", "b aa b 0", "missing-stress 2+2", "bad tone 4+1"},
      {"aa9", "aa 0", "missing-stress 0+2", "bad tone 2+1"},
      {"aa12", "aa 0", "missing-stress 0+2", "bad tone 2+2"},
      {"ah00", "ah 0", "missing-stress 0+2", "bad tone 2+2"},
      {"b1 aa1", "b aa 1", "", "bad tone 1+1"},
      {"sil0", "sil 0", "", "bad tone 3+1"},
      // Bytes beyond ASCII
      {"\xC3\xA4 ow1", "ow 1", "", "unknown phone 0+2"},
      {"ow\xCC\x81", "", "", "unknown phone 0+4"},
      {"ow1\xC2\xA0k", "", "", "unknown phone 0+6"},
      {"ow\xFF k", "k 0", "", "invalid UTF-8 0+3"},
      {"\xC0\xAF", "", "", "invalid UTF-8 0+2"},
      {"k \xE4\xB8", "k 0", "", "invalid UTF-8 2+2"},
      {"\xED\xA0\x80\x31", "", "", "invalid UTF-8 0+4"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.phones));
    const Normalized result = ToPronunciation(c.phones);
    EXPECT_EQ(result.text, c.text);
    EXPECT_EQ(Show(result.applied), c.applied);
    EXPECT_EQ(Show(result.problems), c.problems);
  }
  EXPECT_EQ(Show(ToPronunciation(std::string_view("k\0 ow1", 6)).problems), "unknown phone 0+2 k");
  const Normalized strict = ToPronunciation("b aa3 k", kNoRules);
  EXPECT_EQ(strict.text, "b k 0");
  EXPECT_EQ(Show(strict.problems), "bad tone 2+3");
}

// The longest common beginning wins, then the order of the phone table.
TEST(ArpabetToPronunciation, Suggestions) {
  struct {
    const char* phone;
    const char* suggestion;
  } const cases[] = {
      {"H", "hh"},  {"C", "ch"},   {"j", "jh"},     {"a", "aa"},    {"ix", "ih"},
      {"ux", "uh"}, {"axr", "ax"}, {"nx", "n"},     {"dx", "d"},    {"hv", "hh"},
      {"em", "er"}, {"eng", "ng"}, {"shh", "sh"},   {"kk", "k"},    {"qk", "k"},
      {"qq", ""},   {"i", "ih"},   {"tS", "t"},     {"SP", "s"},    {"SPN", ""},
      {"zzz", ""},  {"sl", "sil"}, {"sill", "sil"}, {"sli", "sil"}, {"ISL", "sil"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.phone);
    const Normalized result = ToPronunciation(c.phone);
    ASSERT_EQ(result.problems.size(), 1U);
    EXPECT_EQ(result.problems[0].suggestion, c.suggestion);
  }
}

TEST(ArpabetToPronunciation, Origins) {
  using Origins = std::vector<std::size_t>;
  //         0123456789                  h  h  _  a  x  _  0  ,  _  l  _  o  w  _  1
  EXPECT_EQ(ToPronunciation("HH AH0 L OW1").origins,
            (Origins{0, 1, 1, 3, 4, 4, 5, 5, 5, 7, 7, 9, 10, 10, 11}));
  // The digit of a closed syllable moves after its consonants, and stays where they end. b aw t 1
  EXPECT_EQ(ToPronunciation("B AW1 T").origins, (Origins{0, 0, 2, 3, 3, 6, 6, 6}));
  // A digit that was not written. b aw 0
  EXPECT_EQ(ToPronunciation("B  AW").origins, (Origins{0, 0, 3, 4, 4, 4}));
  // What is left out leaves no trace. k 0
  EXPECT_EQ(ToPronunciation("?? K").origins, (Origins{3, 3, 3}));
}

TEST(PronunciationToArpabet, Rows) {
  struct {
    const char* pronunciation;
    const char* text;
    const char* problems;
  } const cases[] = {
      {"", "", ""},
      {" ,\t, ", "", ""},
      {"hh ax 0, l ow 1", "HH AH0 L OW1", ""},
      {"hh ax 0,l ow 1 ,", "HH AH0 L OW1", ""},
      {"b aw t 1", "B AW1 T", ""},
      {"ax 0, ax 1, ax 2", "AH0 AX1 AX2", ""},
      {"ah 0, ah 1", "AH0 AH1", ""},
      {"t 0, s uw 0", "T S UW0", ""},
      {"hh m 0", "HH M", ""},
      {"sil 0", "SIL", ""},
      {"ay ax 1", "AY1 AX", ""},  // one digit, two vowels
      {"ax ax 0", "AH0 AX", ""},

      {"hh qq 1", "HH", "unknown phone 3+2, bad tone 6+1"},  // no vowel to carry the digit
      {"HH ow 1", "OW1", "unknown phone 0+2 hh"},
      {"n i 3", "N", "unknown phone 2+1 ih, bad tone 4+1"},
      {"aa 3", "AA", "bad tone 3+1"},
      {"ax 9", "AX", "bad tone 3+1"},
      {"t 1", "T", "bad tone 2+1"},
      {"t 5", "T", "bad tone 2+1"},
      {"b 3 aa 1", "B AA1", "unknown phone 2+1"},
      {"aa 12", "", "bad tone 0+5"},
      {"aa1", "", "bad tone 0+3"},
      {"3", "", "bad tone 0+1"},
      {"hh ax, l ow 1", "L OW1", "bad tone 0+5"},
      {"aa k", "", "bad tone 0+4"},
      {"l ow 1, hh ax", "L OW1", "bad tone 8+5"},
      {"\xE5\xA5\xBD 3, aa 1", "AA1", "unknown phone 0+3, bad tone 4+1"},
      {"k \xFF 0", "K", "invalid UTF-8 2+1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.pronunciation));
    const Normalized result = ToArpabet(c.pronunciation);
    EXPECT_EQ(result.text, c.text);
    EXPECT_EQ(Show(result.problems), c.problems);
  }
}

TEST(PronunciationToArpabet, Origins) {
  using Origins = std::vector<std::size_t>;
  // HH AH0 L OW1: a digit stays with its vowel.
  EXPECT_EQ(ToArpabet("hh ax 0, l ow 1").origins, (Origins{0, 1, 1, 3, 4, 4, 4, 9, 9, 11, 12, 12}));
}

TEST(ParseCmudictLine, Rows) {
  using Kind = CmudictLineKind;
  struct {
    const char* line;
    Kind kind;
    const char* word;
    int variant;
    const char* phones;
    const char* comment;
  } const cases[] = {
      {"aback AH0 B AE1 K", Kind::kEntry, "aback", 0, "AH0 B AE1 K", ""},
      {"allies(2) AH0 L AY1 Z", Kind::kEntry, "allies", 2, "AH0 L AY1 Z", ""},
      {"dail(2) D OY1 L # org, irish", Kind::kEntry, "dail", 2, "D OY1 L", "# org, irish"},
      {"ABACK  AH0 B AE1 K\r\n", Kind::kEntry, "ABACK", 0, "AH0 B AE1 K", ""},
      {" a\tAH0 \t#x\n", Kind::kEntry, "a", 0, "AH0", "#x"},
      {"a AH0 # one # two", Kind::kEntry, "a", 0, "AH0", "# one # two"},
      {"a AH0#x", Kind::kEntry, "a", 0, "AH0#x", ""},  // no white space before it
      {"a", Kind::kEntry, "a", 0, "", ""},
      {"a # none yet", Kind::kEntry, "a", 0, "", "# none yet"},
      {"#hash-mark HH AE1 SH", Kind::kEntry, "#hash-mark", 0, "HH AE1 SH", ""},
      {"c# S IY1", Kind::kEntry, "c#", 0, "S IY1", ""},
      {";semi-colon S EH1", Kind::kEntry, ";semi-colon", 0, "S EH1", ""},
      // What is a variant number
      {"a(10) EY1", Kind::kEntry, "a", 10, "EY1", ""},
      {"a(999999999) EY1", Kind::kEntry, "a", 999999999, "EY1", ""},
      {"a(1000000000) EY1", Kind::kEntry, "a(1000000000)", 0, "EY1", ""},
      {"a(0) EY1", Kind::kEntry, "a(0)", 0, "EY1", ""},
      {"a(02) EY1", Kind::kEntry, "a(02)", 0, "EY1", ""},
      {"a() EY1", Kind::kEntry, "a()", 0, "EY1", ""},
      {"a(b) EY1", Kind::kEntry, "a(b)", 0, "EY1", ""},
      {"a(2b) EY1", Kind::kEntry, "a(2b)", 0, "EY1", ""},
      {"a2) EY1", Kind::kEntry, "a2)", 0, "EY1", ""},
      {"(2) EY1", Kind::kEntry, "(2)", 0, "EY1", ""},
      {"(paren P ER0 EH1 N", Kind::kEntry, "(paren", 0, "P ER0 EH1 N", ""},
      {"a(2)(3) EY1", Kind::kEntry, "a(2)", 3, "EY1", ""},
      // No entries
      {"", Kind::kBlank, "", 0, "", ""},
      {" \t\r\n", Kind::kBlank, "", 0, "", ""},
      {";;; a comment\n", Kind::kComment, "", 0, "", ";;; a comment"},
      {";;;", Kind::kComment, "", 0, "", ";;;"},
      {"  ;;;x", Kind::kComment, "", 0, "", ";;;x"},
      {"# a comment", Kind::kComment, "", 0, "", "# a comment"},
      {"#", Kind::kComment, "", 0, "", "#"},
      // Bytes are bytes.
      {"caf\xC3\xA9 K AH0", Kind::kEntry, "caf\xC3\xA9", 0, "K AH0", ""},
      {"\xFF K", Kind::kEntry, "\xFF", 0, "K", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.line));
    const std::string_view line = c.line;
    const CmudictLine parsed = ParseCmudictLine(line);
    EXPECT_EQ(parsed.kind, c.kind);
    EXPECT_EQ(parsed.word, c.word);
    EXPECT_EQ(parsed.variant, c.variant);
    EXPECT_EQ(parsed.phones, c.phones);
    EXPECT_EQ(parsed.comment, c.comment);
    for (const std::string_view part : {parsed.word, parsed.phones, parsed.comment}) {
      EXPECT_GE(part.data(), line.data());
      EXPECT_LE(part.data() + part.size(), line.data() + line.size());
    }
  }
}

std::vector<std::string> DictionaryLines() {
  std::vector<std::string> lines;
  std::ifstream file(PHONEME_DATA_DIR "/cmudict_sample.dict");
  EXPECT_TRUE(file.is_open());
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  EXPECT_EQ(lines.size(), 2349U);
  return lines;
}

// The entry as the dictionary writes it, from its parts.
std::string Join(const CmudictLine& entry) {
  std::string line(entry.word);
  if (entry.variant != 0) line += '(' + std::to_string(entry.variant) + ')';
  line.append(" ").append(entry.phones);
  if (!entry.comment.empty()) line.append(" ").append(entry.comment);
  return line;
}

TEST(Dictionary, EveryLineIsRead) {
  std::map<CmudictLineKind, int> kinds;
  int variants = 0;
  int comments = 0;
  for (const std::string& line : DictionaryLines()) {
    const CmudictLine parsed = ParseCmudictLine(line);
    ++kinds[parsed.kind];
    if (parsed.kind != CmudictLineKind::kEntry) continue;
    EXPECT_EQ(Join(parsed), line);
    EXPECT_FALSE(parsed.phones.empty());
    if (parsed.variant != 0) ++variants;
    if (!parsed.comment.empty()) ++comments;
  }
  EXPECT_EQ(kinds[CmudictLineKind::kEntry], 2347);
  EXPECT_EQ(kinds[CmudictLineKind::kComment], 2);
  EXPECT_EQ(kinds[CmudictLineKind::kBlank], 0);
  EXPECT_EQ(variants, 172);
  EXPECT_EQ(comments, 22);
}

TEST(Dictionary, EveryEntryThereAndBack) {
  int entries = 0;
  std::map<Rule, int> applied;
  for (const std::string& line : DictionaryLines()) {
    const CmudictLine parsed = ParseCmudictLine(line);
    if (parsed.kind != CmudictLineKind::kEntry) continue;
    SCOPED_TRACE(line);
    ++entries;
    for (const RuleSet rules : {kArpabetRules, kArpabetRules.Without(Rule::kReducedVowel)}) {
      const Normalized there = ToPronunciation(parsed.phones, rules);
      EXPECT_TRUE(there.problems.empty());
      const Normalized back = ToArpabet(there.text);
      EXPECT_TRUE(back.problems.empty());
      EXPECT_EQ(back.text, parsed.phones);
    }
    for (const Application& a : ToPronunciation(parsed.phones, kFolding).applied) ++applied[a.rule];
  }
  EXPECT_EQ(entries, 2347);
  EXPECT_EQ(applied[Rule::kLowerCase], 14986);
  EXPECT_EQ(applied[Rule::kReducedVowel], 1058);
  EXPECT_EQ(applied[Rule::kSecondStress], 574);
  EXPECT_EQ(applied.size(), 3U);
}

// Without its digits the dictionary gives the same syllables, all with the digit 0.
TEST(Dictionary, WithoutStress) {
  int entries = 0;
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  for (const std::string& line : DictionaryLines()) {
    const CmudictLine parsed = ParseCmudictLine(line);
    if (parsed.kind != CmudictLineKind::kEntry) continue;
    ++entries;
    std::string bare(parsed.phones);
    bare.erase(std::remove_if(bare.begin(), bare.end(), is_digit), bare.end());
    std::string expected =
        ToPronunciation(parsed.phones, kArpabetRules.Without(Rule::kReducedVowel)).text;
    std::replace_if(expected.begin(), expected.end(), is_digit, '0');
    EXPECT_EQ(ToPronunciation(bare).text, expected) << line;
  }
  EXPECT_EQ(entries, 2347);
}

// Syllables as phones and one digit, and as text.

struct Syllable {
  std::vector<std::string> phones;
  char digit;
};
using Syllables = std::vector<Syllable>;

bool IsVowel(const std::string& phone) {
  const sp::PhoneInfo* info = sp::GetPhoneInfoByDescription(sp::LANGUAGE_AMERICAN_ENGLISH, phone);
  return info->type == sp::PHONE_TYPE_FINAL;
}

Syllables Split(const std::string& pronunciation) {
  Syllables syllables;
  std::istringstream stream(pronunciation);
  for (std::string text; std::getline(stream, text, ',');) {
    std::istringstream pieces(text);
    Syllable syllable = {{}, '0'};
    for (std::string piece; pieces >> piece;) syllable.phones.push_back(piece);
    syllable.digit = syllable.phones.back()[0];
    syllable.phones.pop_back();
    syllables.push_back(syllable);
  }
  return syllables;
}

std::string Join(const Syllables& syllables) {
  std::string text;
  for (const Syllable& syllable : syllables) {
    if (!text.empty()) text += ", ";
    for (const std::string& phone : syllable.phones) text += phone + ' ';
    text += syllable.digit;
  }
  return text;
}

// Phones and stress alone, in lower case: "hh ax0 l ow1".
std::string Flatten(const Syllables& syllables) {
  std::string text;
  for (const Syllable& syllable : syllables) {
    for (const std::string& phone : syllable.phones) {
      if (!text.empty()) text += ' ';
      text += phone;
      if (IsVowel(phone)) text += syllable.digit;
    }
  }
  return text;
}

using Onsets = std::set<std::string>;

// The onset of a syllable; "" without one, and for a syllable without a vowel.
std::string OnsetOf(const Syllable& syllable) {
  std::string onset;
  for (const std::string& phone : syllable.phones) {
    if (IsVowel(phone)) return onset;
    onset += onset.empty() ? phone : ' ' + phone;
  }
  return {};
}

Onsets TableOnsets(bool with_lexicon) {
  Onsets onsets;
  for (const internal::EnglishOnset& row : internal::english_onsets) {
    if (with_lexicon || row.source == OnsetSource::kEnglish) onsets.emplace(row.phones);
  }
  return onsets;
}

// The rule in words over plain strings, from the end of the word: a vowel takes what follows it and
// the longest onset before it.
Syllables CutSlowly(const std::string& flat, const Onsets& onsets) {
  std::vector<std::string> pieces;
  std::istringstream stream(flat);
  for (std::string piece; stream >> piece;) pieces.push_back(piece);
  Syllables syllables;
  std::vector<std::string> coda;
  while (!pieces.empty()) {
    const std::string piece = pieces.back();
    pieces.pop_back();
    if (std::isdigit(static_cast<unsigned char>(piece.back())) == 0) {
      coda.insert(coda.begin(), piece);
      continue;
    }
    Syllable syllable = {{piece.substr(0, piece.size() - 1)}, piece.back()};
    syllable.phones.insert(syllable.phones.end(), coda.begin(), coda.end());
    coda.clear();
    std::size_t taken = 0;
    std::string onset;
    for (std::size_t count = 1; count <= pieces.size(); ++count) {
      const std::string& consonant = pieces[pieces.size() - count];
      if (!onset.empty()) onset.insert(0, 1, ' ');
      onset.insert(0, consonant);
      if (onsets.count(onset) != 0) taken = count;
    }
    for (; taken > 0; --taken) {
      syllable.phones.insert(syllable.phones.begin(), pieces.back());
      pieces.pop_back();
    }
    syllables.insert(syllables.begin(), syllable);
  }
  if (!coda.empty()) syllables.insert(syllables.begin(), {coda, '0'});
  return syllables;
}

std::vector<std::string> Lexicon() {
  std::vector<std::string> pronunciations;
  for (const sp::Row& row : sp::ReadTsv(PHONEME_DATA_DIR "/english.tsv", 5)) {
    pronunciations.push_back(row[2]);
  }
  EXPECT_EQ(pronunciations.size(), 2322U);
  return pronunciations;
}

constexpr RuleSet kCutOnly = kArpabetRules.Without(Rule::kReducedVowel);

TEST(Syllabification, AgreesWithTheLexicon) {
  int same_cut = 0;
  int same_text = 0;
  int left_at_beginning = 0;  // consonants that begin no syllable, in a word that has a vowel
  std::vector<std::string> other_text;
  for (const std::string& pronunciation : Lexicon()) {
    const Syllables syllables = Split(pronunciation);
    const std::vector<std::string>& first = syllables.front().phones;
    if (syllables.size() > 1 && std::none_of(first.begin(), first.end(), IsVowel)) {
      ++left_at_beginning;
    }
    const std::string flat = Flatten(syllables);
    if (ToPronunciation(flat, kCutOnly).text == pronunciation) ++same_cut;
    // The whole way, through ARPAbet, in which "ah 0" is written as "ax 0" is.
    if (ToPronunciation(ToArpabet(pronunciation).text).text == pronunciation) {
      ++same_text;
    } else {
      other_text.push_back(pronunciation);
    }
  }
  EXPECT_EQ(same_cut, 2322);
  EXPECT_EQ(left_at_beginning, 111);
  EXPECT_EQ(same_text, 2318);
  EXPECT_EQ(other_text,
            (std::vector<std::string>{"ao 1, s t r ah k 0", "l ih 1, n ah k s 0",
                                      "t ae 1, n y ah 0", "ah n 0, g ax 0, hh uw 0, er 0"}));
}

// How much of that is owed to the rows that were read off the same lexicon: none of them, and in
// each tenth of it only those that the other nine show.
TEST(Syllabification, AgreesWithOnsetsOfEnglishAlone) {
  const Onsets onsets = TableOnsets(false);
  int same = 0;
  std::map<std::string, int> missing;
  for (const std::string& pronunciation : Lexicon()) {
    const Syllables syllables = Split(pronunciation);
    if (Join(CutSlowly(Flatten(syllables), onsets)) == pronunciation) {
      ++same;
      continue;
    }
    const auto unknown = std::find_if(syllables.begin(), syllables.end(), [&](const Syllable& s) {
      return !OnsetOf(s).empty() && onsets.count(OnsetOf(s)) == 0;
    });
    ASSERT_NE(unknown, syllables.end()) << pronunciation;
    ++missing[OnsetOf(*unknown)];
  }
  EXPECT_EQ(same, 2279);
  // clang-format off
  EXPECT_EQ(missing, (std::map<std::string, int>{
      {"n y", 10}, {"l y", 7}, {"d y", 5}, {"t y", 2},   // 24 with y
      {"sh l", 4}, {"sh m", 1}, {"sh w", 1},             // 6 with sh
      {"z w", 4}, {"z l", 2}, {"v l", 1}, {"v r", 1},    // 8 with z or v
      {"m r", 2}, {"b w", 1}, {"p w", 1}, {"s k l", 1},  // 5 others
  }));
  // clang-format on
}

TEST(Syllabification, AgreesWithTenthsOfTheLexiconHeldOut) {
  constexpr std::size_t kParts = 10;
  const std::vector<std::string> lexicon = Lexicon();
  std::vector<std::string> differing;
  for (std::size_t part = 0; part < kParts; ++part) {
    const std::size_t begin = lexicon.size() * part / kParts;
    const std::size_t end = lexicon.size() * (part + 1) / kParts;
    Onsets onsets = TableOnsets(false);
    for (std::size_t i = 0; i < lexicon.size(); ++i) {
      if (i >= begin && i < end) continue;
      for (const Syllable& syllable : Split(lexicon[i])) onsets.insert(OnsetOf(syllable));
    }
    for (std::size_t i = begin; i < end; ++i) {
      if (Join(CutSlowly(Flatten(Split(lexicon[i])), onsets)) != lexicon[i]) {
        differing.push_back(lexicon[i]);
      }
    }
  }
  EXPECT_EQ(lexicon.size() - differing.size(), 2313U);
  EXPECT_EQ(differing,
            (std::vector<std::string>{"aa r 0, t ih 1, r iy 0, ow 0, s k l er 0, ow 1, s ax s 0",
                                      "b w aa 1", "sh eh 1, v r ax n 0", "eh 1, v l ax n 0",
                                      "sh m ow 1, k er 0", "sh w ao n s 1", "sh aa 1, p w ao r n 1",
                                      "s 0, t y uw 1, b ih n 0", "t ao r 1, t y ax s 0"}));
}

TEST(Onsets, CountsAreThoseOfTheLexicon) {
  std::map<std::string, int> counts;
  for (const std::string& pronunciation : Lexicon()) {
    for (const Syllable& syllable : Split(pronunciation)) {
      if (!OnsetOf(syllable).empty()) ++counts[OnsetOf(syllable)];
    }
  }
  std::size_t shown = 0;
  for (const internal::EnglishOnset& row : internal::english_onsets) {
    SCOPED_TRACE(row.phones);
    const auto count = counts.find(std::string(row.phones));
    EXPECT_EQ(row.syllables, count == counts.end() ? 0 : count->second);
    EXPECT_TRUE(row.source != OnsetSource::kLexicon || row.syllables > 0);
    EXPECT_TRUE(row.source != OnsetSource::kLoan || row.syllables == 0);
    if (row.syllables > 0) ++shown;
  }
  EXPECT_EQ(std::size(internal::english_onsets), 84U);
  EXPECT_EQ(shown, 77U);
  EXPECT_EQ(counts.size(), shown);  // no onset of the lexicon is missing from the table
}

// Only if an onset without its first phone is one too does the cut, which adds one consonant after
// the other, find the longest.
TEST(Onsets, AreDifferentAndShortAndEndInOnsets) {
  const Onsets onsets = TableOnsets(true);
  EXPECT_EQ(onsets.size(), std::size(internal::english_onsets));
  for (const std::string& phones : onsets) {
    SCOPED_TRACE(phones);
    EXPECT_LT(std::count(phones.begin(), phones.end(), ' '),
              std::ptrdiff_t{internal::kMaxOnsetPhones});
    const std::size_t space = phones.find(' ');
    if (space != std::string::npos) {
      EXPECT_EQ(onsets.count(phones.substr(space + 1)), 1U);
    }
  }
}

TEST(Onsets, ArePhonesOfTheLibrary) {
  for (const internal::EnglishOnset& row : internal::english_onsets) {
    std::istringstream stream{std::string(row.phones)};
    for (std::string phone; stream >> phone;) {
      const auto* info = sp::GetPhoneInfoByDescription(sp::LANGUAGE_AMERICAN_ENGLISH, phone);
      EXPECT_EQ(info->name, phone);
      EXPECT_EQ(info->type, sp::PHONE_TYPE_INITIAL) << phone;
    }
  }
}

TEST(Onsets, Lookup) {
  const Onsets onsets = TableOnsets(true);
  std::vector<std::string> names;
  names.reserve(41);
  for (int id = 0; id < 41; ++id) {
    names.emplace_back(sp::GetPhoneInfoById(sp::LANGUAGE_AMERICAN_ENGLISH, id)->name);
  }
  std::size_t found = 0;
  const auto check = [&](const std::string& phones) {
    const bool known = internal::IsEnglishOnset(internal::KeyOf(phones));
    EXPECT_EQ(known, onsets.count(phones) != 0) << phones;
    if (known) ++found;
  };
  for (const std::string& a : names) {
    check(a);
    for (const std::string& b : names) {
      const std::string two = std::string(a).append(" ").append(b);
      check(two);
      for (const std::string& c : names) check(std::string(two).append(" ").append(c));
    }
  }
  EXPECT_EQ(found, onsets.size());
}

// Random words of all phones: the cut is the slow one, and the way back gives the input.
TEST(Syllabification, RandomWords) {
  const Onsets onsets = TableOnsets(true);
  std::mt19937 random(20000);
  std::size_t syllables = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string flat;
    for (auto left = random() % 12; left > 0; --left) {
      // Few vowels, and the consonants of clusters more often than others.
      static constexpr const char* kConsonants[] = {"s", "t", "r", "k", "w", "l", "y", "p"};
      const int id = static_cast<int>(random() % 41);
      const auto* info = sp::GetPhoneInfoById(sp::LANGUAGE_AMERICAN_ENGLISH, id);
      std::string phone = random() % 2 == 0 ? kConsonants[random() % 8] : info->name;
      if (IsVowel(phone)) phone += static_cast<char>('0' + random() % 3);
      flat += flat.empty() ? phone : ' ' + phone;
    }
    const Syllables expected = CutSlowly(flat, onsets);
    const Normalized result = ToPronunciation(flat, kCutOnly);
    ASSERT_EQ(result.text, Join(expected)) << flat;
    EXPECT_TRUE(result.problems.empty() && result.applied.empty());
    syllables += expected.size();
    std::string back = ToArpabet(result.text).text;
    std::transform(back.begin(), back.end(), back.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (std::size_t at = 0; (at = flat.find("ax0", at)) != std::string::npos;) flat[at + 1] = 'h';
    EXPECT_EQ(back, flat);
  }
  EXPECT_GT(syllables, 20000U);
}

// Whatever the bytes are: every one that is not white space belongs to a phone of the text, is a
// stress digit, or is part of a problem.
TEST(ArpabetToPronunciation, NoByteWithoutAnOwner) {
  static constexpr std::string_view kPieces[] = {
      "AH",   "ow",   "K",        "s",    "T",
      "0",    "1",    "2",        "7",    " ",
      "\t",   "q",    "\xC3\xA9", "\xC3", "\xFF",
      "\xCC", ",",    "#",        " ",    "NG1",
      "AH0 ", "IY2 ", "L ",       "SIL",  std::string_view("\0", 1)};
  std::mt19937 random(7);
  std::size_t placed = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string input;
    for (auto left = random() % 16; left > 0; --left) {
      input += kPieces[random() % std::size(kPieces)];
    }
    SCOPED_TRACE(testing::PrintToString(input));
    RuleSet rules;
    for (int rule = 0; rule < kRuleCount; ++rule) {
      if (random() % 4 != 0) rules = rules.With(static_cast<Rule>(rule));
    }
    const Normalized result = ToPronunciation(input, rules);
    const std::set<std::size_t> origins(result.origins.begin(), result.origins.end());
    placed += origins.size();
  }
  EXPECT_GT(placed, 10000U);
}

// A word of a million phones, and one of a million bytes.
TEST(ArpabetToPronunciation, LongInput) {
  std::string consonants;
  for (int i = 0; i < 1000000; ++i) consonants += "S ";
  EXPECT_EQ(ArpabetToPronunciation(consonants + "AA1").text.substr(0, 4), "s s ");
  const std::string name(1000000, 'S');
  EXPECT_EQ(Show(ArpabetToPronunciation(name).problems), "unknown phone 0+1000000");
}

}  // namespace
}  // namespace qeo::notation
