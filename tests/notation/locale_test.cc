// The process locale changes no result of notation either.

#include <gtest/gtest.h>

#include <locale>
#include <string>
#include <vector>

#include "notation/notation.h"
#include "phoneme/phoneme.h"
#include "tests/locales.h"
#include "tests/notation/normalizing.h"

namespace qeo::notation {
namespace {

Normalized FromPinyin(const std::string& text) { return NormalizePinyin(text); }
Normalized FromCapitals(const std::string& text) {
  return NormalizePinyin(text, kPinyinRules.Without(Rule::kAbbreviation));
}
Normalized FromJyutping(const std::string& text) { return NormalizeJyutping(text); }
Normalized FromArpabet(const std::string& text) { return ArpabetToPronunciation(text); }
Normalized ToArpabet(const std::string& text) { return PronunciationToArpabet(text); }

// "I" and dotted and dotless i, bytes that are letters, digits or spaces of other charsets, and the
// halves of characters of GBK.
void ExpectNormalized() {
  struct {
    Normalized (*normalize)(const std::string& text);
    const char* input;
    const char* text;
    const char* problems;
  } const cases[] = {
      {FromPinyin, "Nǐ Hǎo", "ni3 hao3", ""},
      {FromPinyin, "Xī'ān Ji1", "xi1 an1 ji1", ""},
      {FromPinyin, "ｎｉ３　Lü4", "ni3 lv4", ""},
      {FromPinyin, "n\u0131 ni3", "ni3", "foreign text 0+3"},
      {FromPinyin, "ni3 n\u0130", "ni3", "foreign text 4+3"},
      {FromPinyin, "ni3\xa0\xc4\xe3hao3", "ni3 hao3", "invalid UTF-8 3+3"},
      {FromCapitals, "NI3 LI4", "ni3 li4", ""},
      {FromJyutping, "Jik6Nei5", "jik6 nei5", ""},
      {FromArpabet, "IH0 IY1 Z", "ih 0, iy z 1", ""},
      {ToArpabet, "ih 0, iy z 1", "IH0 IY1 Z", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.input);
    const Normalized normalized = c.normalize(c.input);
    EXPECT_EQ(normalized.text, c.text);
    EXPECT_EQ(Show(normalized.problems), c.problems);
  }
}

void ExpectRead() {
  const Analysis analysis = Analyze(sp::LANGUAGE_MANDARIN, "Lǐ Ji4");
  ASSERT_EQ(analysis.syllables.size(), 2U);
  EXPECT_EQ(analysis.syllables[0].spelling, "li");
  EXPECT_EQ(analysis.syllables[1].syllable.code, 1344U);
  EXPECT_TRUE(CutWhole(sp::LANGUAGE_MANDARIN, "XiAn").covers);
  EXPECT_EQ(CutLetters(sp::LANGUAGE_CANTONESE, "JikNei", Cutting::kForward).size(), 2U);
  const CmudictLine line = ParseCmudictLine("IT'S(2)\xa0 IH0 T S # \xa0");
  EXPECT_EQ(line.word, "IT'S(2)\xa0");
  EXPECT_EQ(line.phones, "IH0 T S");
  EXPECT_EQ(AliasTable::Parse("i\tji\nI\tji\n").errors.size(), 1U);
}

void ExpectWritten() {
  const std::vector<unsigned short> codes = {1754, 1341};
  EXPECT_EQ(MarkedPinyin(codes, Spacing::kWord).text, "lìjī");
  const std::vector<unsigned short> cantonese_codes = {6186};
  EXPECT_EQ(Jyutping(cantonese_codes, Spacing::kWord).text, "zyut6");
  std::vector<sp::SyllableInfo> syllables;
  sp::py2ph(sp::LANGUAGE_MANDARIN, "Li4Ji1", syllables);
  EXPECT_EQ(PronunciationString(syllables).text, "l i 4, j i 1");
}

void ExpectSameResults() {
  ExpectNormalized();
  ExpectRead();
  ExpectWritten();
}

}  // namespace

using sp::InMadeLocales;
using sp::StartIn;
using NotationLocales = sp::Locales;

TEST_F(NotationLocales, Classic) {
  ASSERT_TRUE(StartIn("C"));
  ExpectSameResults();
}

TEST_F(NotationLocales, Utf8) {
  ASSERT_TRUE(StartIn("C.UTF-8"));
  ExpectSameResults();
}

TEST_F(NotationLocales, OfCxxStreams) {
  std::locale::global(std::locale(std::locale::classic(), new sp::GroupedDigits));
  ExpectSameResults();
}

TEST_F(NotationLocales, OfOtherLanguages) { InMadeLocales(ExpectSameResults); }

}  // namespace qeo::notation
