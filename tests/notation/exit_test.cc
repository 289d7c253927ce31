// The functions of notation while the process ends: a destructor of a static calls all of them when
// a table that was made in main would be destroyed already, had it a destructor.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "notation/notation.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using sp::LANGUAGE_AMERICAN_ENGLISH;
using sp::LANGUAGE_CANTONESE;
using sp::LANGUAGE_MANDARIN;

bool NamesRight() {
  return RuleName(Rule::kErhua) == "erhua" && ProblemName(ProblemKind::kBadTone) == "bad tone" &&
         HintName(Hint::kGap) == "gap";
}

bool NormalizesRight() {
  const ParsedAliases aliases = AliasTable::Parse("ni\tnei\nxx\tyy\n");
  return NormalizePinyin("n\u01d0 h\u01ceo").text == "ni3 hao3" && aliases.errors.size() == 1 &&
         aliases.table.Find("ni") == "nei" &&
         NormalizeJyutping("ni5hou2", kJyutpingRules, &aliases.table).text == "nei5 hou2" &&
         ArpabetToPronunciation("HH AH0 L OW1").text == "hh ax 0, l ow 1" &&
         ArpabetToPronunciation("SHH").problems.at(0).suggestion == "sh" &&
         PronunciationToArpabet("hh ax 0, l ow 1").text == "HH AH0 L OW1" &&
         ParseCmudictLine("dail(2) D OY1 L").phones == "D OY1 L";
}

bool CutsRight() {
  return CutWhole(LANGUAGE_MANDARIN, "yipinguo", 1).syllables.size() == 3 &&
         CutWhole(LANGUAGE_CANTONESE, "neihou", 1).cuts.size() == 1 &&
         !CutWhole(LANGUAGE_AMERICAN_ENGLISH, "a").covers &&
         CutLetters(LANGUAGE_MANDARIN, "yipinguo", Cutting::kForward).size() == 2;
}

bool SpellsRight() {
  const std::vector<unsigned short> code = {3044};
  std::vector<sp::SyllableInfo> mandarin;
  std::vector<sp::SyllableInfo> cantonese;
  sp::py2ph(LANGUAGE_MANDARIN, "nv3er2", mandarin);
  sp::py2ph(LANGUAGE_CANTONESE, "nei5hou2", cantonese);
  return MarkedPinyin(mandarin, Spacing::kWord).text == "n\u01da'\u00e9r" &&
         MarkedPinyin(code, Spacing::kSpace).text == "sh\u00e8ng" &&
         Jyutping(cantonese, Spacing::kWord).text == "nei5hou2" &&
         Jyutping(code, Spacing::kSpace).text == "kyun4" &&
         PronunciationString(cantonese).text == "n ei 5, h ou 2";
}

std::string FirstSuggestion(int language, std::string_view text) {
  return Analyze(language, text).problems.at(0).suggestion;
}

bool AnalyzesRight() {
  return FirstSuggestion(LANGUAGE_MANDARIN, "hoa3") == "hao3" &&
         FirstSuggestion(LANGUAGE_CANTONESE, "juyt6") == "jyut6" &&
         FirstSuggestion(LANGUAGE_AMERICAN_ENGLISH, "sli") == "sil" &&
         Analyze(LANGUAGE_MANDARIN, "yipinguo").syllables.at(1).spelling == "pin";
}

// Every public function.
void ExpectRight() {
  if (NamesRight() && NormalizesRight() && CutsRight() && SpellsRight() && AnalyzesRight()) return;
  std::fputs("a wrong answer\n", stderr);
  std::_Exit(EXIT_FAILURE);
}

// Constructed before main, but after the phone sets that it asks: they outlive it, and any table
// that is made later and has a destructor does not.
const struct AtExit {
  AtExit() : phone(sp::GetPhoneInfoById(LANGUAGE_MANDARIN, 0)) {}
  AtExit(const AtExit&) = delete;
  AtExit& operator=(const AtExit&) = delete;
  ~AtExit() { ExpectRight(); }

  const sp::PhoneInfo* phone;
} at_exit;

}  // namespace

// The checks that matter follow when this process exits.
TEST(NotationAtExit, AnswersWithTablesMadeBefore) { ExpectRight(); }
TEST(NotationAtExit, AnswersWithTablesMadeThen) { EXPECT_STREQ(at_exit.phone->name, "sil"); }

}  // namespace qeo::notation
