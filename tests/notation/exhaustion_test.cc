// Every public function of notation when memory runs out, at every allocation of a call: nothing
// but std::bad_alloc leaves it, no block is lost, and later calls answer as before. What a
// function's first call makes once and keeps is made whole or not at all.

#include "tests/exhaustion.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "notation/notation.h"
#include "phoneme/phoneme.h"
#include "tests/notation/normalizing.h"
#include "tests/testing.h"

namespace qeo::notation {
namespace {

using sp::LANGUAGE_AMERICAN_ENGLISH;
using sp::LANGUAGE_CANTONESE;
using sp::LANGUAGE_MANDARIN;

using Codes = std::vector<unsigned short>;
using Syllables = std::vector<sp::SyllableInfo>;

std::string Show(Range range) {
  return std::to_string(range.offset) + '+' + std::to_string(range.length);
}

std::string ShowSuggestions(const std::vector<Problem>& problems) {
  std::string shown = Show(problems);
  for (const Problem& problem : problems) shown += " '" + problem.suggestion + "'";
  return shown;
}

std::string Show(const Normalized& normalized) {
  return normalized.text + " | " + testing::PrintToString(normalized.origins) + " | " +
         Show(normalized.applied) + " | " + ShowSuggestions(normalized.problems);
}

std::string Show(const Analysis& analysis) {
  std::string shown;
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    shown += syllable.spelling + syllable.digit + Show(syllable.range) + " row " +
             std::to_string(syllable.row) + testing::PrintToString(sp::Spell(syllable.syllable));
  }
  for (const Range& separator : analysis.separators) shown += " | " + Show(separator);
  return shown + " | " + Show(analysis.applied) + " | " + ShowSuggestions(analysis.problems);
}

std::string Show(const std::vector<CutSyllable>& cut) {
  std::string shown;
  for (const CutSyllable& syllable : cut) {
    shown += Show(syllable.range) + " row " + std::to_string(syllable.row) + ", ";
  }
  return shown;
}

std::string Show(const Cut& cut) {
  std::string shown = Show(cut.syllables) + (cut.covers ? " covers, " : " leaves letters, ") +
                      std::to_string(cut.count) + (cut.directions_differ ? " differ" : "");
  for (const std::vector<CutSyllable>& other : cut.cuts) shown += " | " + Show(other);
  return shown;
}

std::string Show(const Spelling& spelling) {
  return spelling.text + ' ' + testing::PrintToString(spelling.unwritable);
}

std::string Show(const ParsedAliases& parsed) {
  std::string shown = std::to_string(parsed.table.size()) + " aliases";
  for (const char* spelling : {"ni", "ai", "gwu", "kwut"}) {
    shown += ' ' + std::string(parsed.table.Find(spelling));
  }
  for (const AliasError& error : parsed.errors) {
    shown += " | " + std::to_string(error.line) + ": " + error.message;
  }
  return shown;
}

std::string Show(const CmudictLine& line) {
  return std::string(line.word) + ' ' + std::to_string(line.variant) + ' ' +
         std::string(line.phones) + ' ' + std::string(line.comment);
}

std::string Show(std::string_view name) { return std::string(name); }

// How many allocations there are to fail in a call that is not its function's first.
template <typename Call>
std::size_t Exhaust(const Call& call) {
  using Output = std::optional<decltype(call())>;
  const Output nothing;
  const auto fill = [&call](Output& output) {
    output = call();
    return 0;
  };
  const auto show = [](const Output& output) { return Show(*output); };
  const auto empty = [](Output& output) { output.reset(); };
  return exhaustion::Exhaustion(nothing, fill, show, empty).Run();
}

// Of an empty text there may be nothing to allocate.
template <typename Call>
void ExpectSomethingToFail(const std::string& text, const Call& call) {
  const std::size_t failures = Exhaust(call);
  EXPECT_TRUE(failures > 0 || text.empty());
}

// The function's first call in a process of its own.
template <typename Call>
void ExhaustFirst(const char* name, const Call& call, const char* made_once = "something") {
  SCOPED_TRACE(name);
  const auto show = [](const auto& output) { return Show(output); };
  exhaustion::FirstCall(call, show).Run(made_once);
}

std::string Repeat(const std::string& unit, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += unit;
  return text;
}

// Runs of letters, marks, digits, problems with suggestions, and bytes of all kinds.
const std::vector<std::string>& Texts() {
  static const std::vector<std::string> texts = {
      "",
      "ni3hao3",
      "Nǐ hoa3",
      "Běijīng, lu:4 dianr3 r5",
      "yīdīngdiǎnr",
      "san1 P, MP3 wu4 cue",
      "yipinguo xianxian hello",
      "wan2gung1，VQ6 ai3 zz5",
      "\xff\xfe 你好 ｎｉ３ lü4 lüe4",
      Repeat("Xī'ān", 30),
      Repeat("zhuang1xx5", 15),
      Repeat("fangan", 15),
  };
  return texts;
}

const std::vector<std::string>& Pronunciations() {
  static const std::vector<std::string> texts = {
      "",
      "HH AH0 L OW1",
      "T S UW0",
      "HH M",
      "S T R EH1 NG K TH S AX2 D AA",
      "HH AHH0 ZZ1 OW9 \xff",
      Repeat("S T R AH0 NG ", 40),
  };
  return texts;
}

constexpr std::string_view kAliases = "# sounds\nni\tnei\nai\tngai\nbad line\nni\tlei\nxx\tzzz\n";

Syllables ToSyllables(int language, const std::string& text) {
  Syllables syllables;
  EXPECT_EQ(sp::py2ph(language, text, syllables), 0) << text;
  return syllables;
}

Codes ToCodes(int language, const std::string& text) {
  Codes codes;
  EXPECT_EQ(sp::py2code(language, text, codes), 0) << text;
  return codes;
}

const std::string kMandarinText = "nv3er2xi1an1zhuang4ng2m1e3" + Repeat("shuang3", 20);
const std::string kCantoneseText = "nei5hou2gwaang1" + Repeat("kwaang3", 20);

Codes AllCodes(int language, unsigned top_tone) {
  Codes codes;
  sp::SyllableInfo syllable;
  for (unsigned row = 0;; ++row) {
    for (unsigned tone = 1; tone <= top_tone; ++tone) {
      codes.push_back(static_cast<unsigned short>(row * 10 + tone));
      if (sp::code2ph(language, codes.back(), syllable) == 0) continue;
      codes.pop_back();
      return codes;
    }
  }
}

void ExhaustAllFirstCalls() {
  const Codes mandarin = AllCodes(LANGUAGE_MANDARIN, 5);  // all that is made shows
  const Codes cantonese = AllCodes(LANGUAGE_CANTONESE, 7);
  EXPECT_EQ(mandarin.size(), 417U * 5);
  EXPECT_EQ(cantonese.size(), 619U * 7);
  ExhaustFirst("MarkedPinyin", [&] { return MarkedPinyin(mandarin, Spacing::kWord); });
  ExhaustFirst("Jyutping", [&] { return Jyutping(cantonese, Spacing::kWord); });
  ExhaustFirst("NormalizePinyin", [] { return NormalizePinyin("nǐ lu:4 xx5"); });
  ExhaustFirst("NormalizeJyutping", [] { return NormalizeJyutping("wan2gung1 ai3"); });
  ExhaustFirst("AliasTable::Parse", [] { return AliasTable::Parse(kAliases); });
  // The names of the phones need no memory of their own.
  ExhaustFirst(
      "ArpabetToPronunciation", [] { return ArpabetToPronunciation("HH AH0 ZZ"); }, "nothing");
  ExhaustFirst(
      "PronunciationToArpabet", [] { return PronunciationToArpabet("hh ax 0, l 1"); }, "nothing");
  ExhaustFirst("CutWhole", [] { return CutWhole(LANGUAGE_MANDARIN, "xianxian", 2); });
  ExhaustFirst("CutLetters",
               [] { return CutLetters(LANGUAGE_CANTONESE, "neihou", Cutting::kBackward); });
  ExhaustFirst("Analyze Mandarin", [] { return Analyze(LANGUAGE_MANDARIN, "nǐ hoa3 lü"); });
  ExhaustFirst("Analyze Cantonese", [] { return Analyze(LANGUAGE_CANTONESE, "nei5hoo2"); });
  ExhaustFirst(
      "Analyze English", [] { return Analyze(LANGUAGE_AMERICAN_ENGLISH, "HH AHH0"); }, "nothing");
}

}  // namespace

// In a process that has called nothing yet, whichever tests ran here.
TEST(NotationExhaustion, FirstCallsAreMadeWholeOrNotAtAll) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        ExhaustAllFirstCalls();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}

TEST(NotationExhaustion, NormalizePinyin) {
  for (const std::string& text : Texts()) {
    SCOPED_TRACE(text);
    ExpectSomethingToFail(text, [&] { return NormalizePinyin(text); });
    ExpectSomethingToFail(text, [&] { return NormalizePinyin(text, RuleSet()); });
  }
}

TEST(NotationExhaustion, NormalizeJyutping) {
  const AliasTable aliases = AliasTable::Parse(kAliases).table;
  for (const std::string& text : Texts()) {
    SCOPED_TRACE(text);
    ExpectSomethingToFail(text, [&] { return NormalizeJyutping(text); });
    ExpectSomethingToFail(text, [&] { return NormalizeJyutping(text, kJyutpingRules, &aliases); });
  }
}

TEST(NotationExhaustion, AliasTable) {
  const AliasTable aliases = AliasTable::Parse(kAliases).table;
  EXPECT_GT(Exhaust([] { return AliasTable::Parse(kAliases); }), 4U);
  EXPECT_EQ(Exhaust([] { return AliasTable::Parse(""); }), 0U);
  EXPECT_EQ(Exhaust([&] { return aliases.Find("ni"); }), 0U);
  EXPECT_EQ(Exhaust([&] { return aliases.Find("nothing"); }), 0U);
}

TEST(NotationExhaustion, Arpabet) {
  const RuleSet folded = kArpabetRules.With(Rule::kSecondStress).Without(Rule::kMissingStress);
  for (const std::string& text : Pronunciations()) {
    SCOPED_TRACE(text);
    ExpectSomethingToFail(text, [&] { return ArpabetToPronunciation(text); });
    ExpectSomethingToFail(text, [&] { return ArpabetToPronunciation(text, folded); });
    const std::string pronunciation = ArpabetToPronunciation(text).text + ", zz 1";
    ExpectSomethingToFail(pronunciation, [&] { return PronunciationToArpabet(pronunciation); });
  }
}

TEST(NotationExhaustion, LinesAndNamesHaveNothingToFail) {
  for (const char* line : {"dail(2) D OY1 L # org, irish", "# comment", ";;; comment", ""}) {
    EXPECT_EQ(Exhaust([&] { return ParseCmudictLine(line); }), 0U);
  }
  EXPECT_EQ(Exhaust([] { return RuleName(Rule::kFusedErhua); }), 0U);
  EXPECT_EQ(Exhaust([] { return ProblemName(ProblemKind::kUnknownSyllable); }), 0U);
}

TEST(NotationExhaustion, Cuts) {
  for (const int language : {LANGUAGE_MANDARIN, LANGUAGE_CANTONESE, LANGUAGE_AMERICAN_ENGLISH}) {
    for (const std::string& text : Texts()) {
      SCOPED_TRACE(text);
      ExpectSomethingToFail(text, [&] { return CutWhole(language, text); });
      ExpectSomethingToFail(text, [&] { return CutWhole(language, text, 3); });
      for (const Cutting cutting : {Cutting::kWhole, Cutting::kForward, Cutting::kBackward}) {
        Exhaust([&] { return CutLetters(language, text, cutting); });
      }
    }
  }
  for (const Cutting cutting : {Cutting::kWhole, Cutting::kForward, Cutting::kBackward}) {
    EXPECT_GT(Exhaust([&] { return CutLetters(LANGUAGE_MANDARIN, "yipinguo", cutting); }), 0U);
  }
}

TEST(NotationExhaustion, AnalyzeChinese) {
  const AliasTable aliases = AliasTable::Parse(kAliases).table;
  AnalysisOptions options;
  options.aliases = &aliases;
  options.cutting = Cutting::kForward;
  for (const int language : {LANGUAGE_MANDARIN, LANGUAGE_CANTONESE}) {
    for (const std::string& text : Texts()) {
      SCOPED_TRACE(text);
      ExpectSomethingToFail(text, [&] { return Analyze(language, text); });
      ExpectSomethingToFail(text, [&] { return Analyze(language, text, options); });
    }
  }
}

TEST(NotationExhaustion, AnalyzeEnglish) {
  for (const std::string& text : Pronunciations()) {
    SCOPED_TRACE(text);
    ExpectSomethingToFail(text, [&] { return Analyze(LANGUAGE_AMERICAN_ENGLISH, text); });
  }
}

TEST(NotationExhaustion, Spellings) {
  for (const Spacing spacing : {Spacing::kWord, Spacing::kSpace}) {
    const Codes mandarin = ToCodes(LANGUAGE_MANDARIN, kMandarinText);
    const Codes cantonese = ToCodes(LANGUAGE_CANTONESE, kCantoneseText);
    EXPECT_GT(Exhaust([&] { return MarkedPinyin(mandarin, spacing); }), 0U);
    EXPECT_GT(Exhaust([&] { return Jyutping(cantonese, spacing); }), 0U);
    const Syllables mandarin_syllables = ToSyllables(LANGUAGE_MANDARIN, kMandarinText);
    const Syllables cantonese_syllables = ToSyllables(LANGUAGE_CANTONESE, kCantoneseText);
    EXPECT_GT(Exhaust([&] { return MarkedPinyin(mandarin_syllables, spacing); }), 0U);
    EXPECT_GT(Exhaust([&] { return Jyutping(cantonese_syllables, spacing); }), 0U);
    Codes unwritable = mandarin;
    unwritable.push_back(65535);
    EXPECT_GT(Exhaust([&] { return MarkedPinyin(unwritable, spacing); }), 0U);
    EXPECT_EQ(Exhaust([&] { return MarkedPinyin(Codes(), spacing); }), 0U);
  }
}

TEST(NotationExhaustion, PronunciationString) {
  const Syllables syllables = ToSyllables(LANGUAGE_CANTONESE, kCantoneseText);
  EXPECT_GT(Exhaust([&] { return PronunciationString(syllables); }), 0U);
  Syllables unwritable = syllables;
  unwritable.emplace_back();
  EXPECT_GT(Exhaust([&] { return PronunciationString(unwritable); }), 0U);
}

}  // namespace qeo::notation
