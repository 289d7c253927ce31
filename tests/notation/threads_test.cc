// Every public function of notation from eight threads at once; all must answer what one thread
// alone is answered. What a function makes once, at its first call, the threads race for.

#include "tests/threads.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "notation/notation.h"
#include "phoneme/phoneme.h"
#include "tests/notation/normalizing.h"
#include "tests/testing.h"

namespace qeo::notation {
namespace {

constexpr int kLanguages[] = {sp::LANGUAGE_MANDARIN, sp::LANGUAGE_CANTONESE,
                              sp::LANGUAGE_AMERICAN_ENGLISH, 30000, -1};
constexpr std::string_view kTexts[] = {
    "",      "ni3hao3",          "Xī'ān, lu:4",       "yīdīngdiǎnr hoa3", "wan2gung1，VQ6 ai3",
    "nihao", "yipinguo neihou2", "san1 P \xff 你 ｎ", "HH AH0 L OW1 ZZ",  "nei5 hou2",
};

void Tell(const std::vector<CutSyllable>& syllables, std::ostream& answers) {
  for (const CutSyllable& syllable : syllables) {
    answers << syllable.range.offset << '+' << syllable.range.length << ':' << syllable.row << ' ';
  }
}

void Tell(const Normalized& normalized, std::ostream& answers) {
  answers << normalized.text << testing::PrintToString(normalized.origins)
          << Show(normalized.applied) << Show(normalized.problems);
  for (const Problem& problem : normalized.problems) answers << problem.suggestion;
}

void Tell(const Analysis& analysis, std::ostream& answers) {
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    answers << syllable.spelling << syllable.digit << syllable.range.offset << syllable.row
            << testing::PrintToString(sp::Spell(syllable.syllable));
  }
  answers << analysis.separators.size() << Show(analysis.applied) << Show(analysis.problems);
  for (const Problem& problem : analysis.problems) answers << problem.suggestion;
}

void AskToNormalize(std::string_view text, const AliasTable& aliases, std::ostream& answers) {
  Tell(NormalizePinyin(text), answers);
  Tell(NormalizeJyutping(text, kJyutpingRules, &aliases), answers);
  const Normalized pronunciation = ArpabetToPronunciation(text);
  Tell(pronunciation, answers);
  Tell(PronunciationToArpabet(pronunciation.text), answers);
  const CmudictLine line = ParseCmudictLine(text);
  answers << line.word << line.variant << line.phones << line.comment;
}

void AskToCut(int language, std::string_view text, std::ostream& answers) {
  const Cut cut = CutWhole(language, text, 2);
  answers << cut.covers << cut.count << cut.directions_differ;
  Tell(cut.syllables, answers);
  for (const std::vector<CutSyllable>& other : cut.cuts) Tell(other, answers);
  for (const Cutting cutting : {Cutting::kWhole, Cutting::kForward, Cutting::kBackward}) {
    Tell(CutLetters(language, text, cutting), answers);
  }
}

void AskToSpell(int language, std::ostream& answers) {
  std::vector<unsigned short> codes;
  std::vector<sp::SyllableInfo> syllables;
  for (unsigned row = 0; row < 400; row += 7) {
    codes.push_back(static_cast<unsigned short>(row * 10 + row % 5 + 1));
    sp::code2ph(language, codes.back(), syllables.emplace_back());
  }
  for (const Spacing spacing : {Spacing::kWord, Spacing::kSpace}) {
    answers << MarkedPinyin(codes, spacing).text << MarkedPinyin(syllables, spacing).text
            << Jyutping(codes, spacing).text << Jyutping(syllables, spacing).text;
  }
  answers << PronunciationString(syllables).text;
}

std::string AskEverything() {
  std::ostringstream answers;
  const ParsedAliases parsed = AliasTable::Parse("ai\tngai\nni\tnei\nwrong\n");
  answers << parsed.table.Find("ai") << parsed.errors.size();
  for (const std::string_view text : kTexts) {
    AskToNormalize(text, parsed.table, answers);
    for (const int language : kLanguages) {
      AskToCut(language, text, answers);
      Tell(Analyze(language, text), answers);
    }
  }
  for (const int language : kLanguages) AskToSpell(language, answers);
  for (int i = 0; i < kRuleCount; ++i) answers << RuleName(static_cast<Rule>(i));
  answers << ProblemName(ProblemKind::kLettersLost);
  return answers.str();
}

}  // namespace

TEST(Threads, EveryFunctionOfNotationFromEightThreadsAtOnce) {
  threads::ExpectOneAnswer(10, AskEverything);
}

}  // namespace qeo::notation
