// Texts in every notation that is read: their analysis with all problems, and the reader, which
// takes shorter ways to the same syllables.

#include "notation/reader.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "notation/notation.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using sp::LANGUAGE_AMERICAN_ENGLISH;
using sp::LANGUAGE_CANTONESE;
using sp::LANGUAGE_MANDARIN;

constexpr int kUnregistered = 9999;

AnalysisOptions In(Notation notation) {
  AnalysisOptions options;
  options.notation = notation;
  return options;
}

AnalysisOptions Dropping(Notation notation) {
  AnalysisOptions options = In(notation);
  options.drops_silently = true;
  return options;
}

std::string Show(Range range) {
  return std::to_string(range.offset) + '+' + std::to_string(range.length);
}

std::string Show(const sp::SyllableInfo& syllable) {
  std::string shown;
  for (const sp::PhoneInfo* phone : syllable.phones) shown += std::string(phone->name) + ' ';
  return shown + std::to_string(ToneDigit(syllable)) + " of " + std::to_string(syllable.code);
}

// "ni3 0+3 n i 3 of 2243": the spelling, the digit, the place, the record.
std::string ShowSyllables(const Analysis& analysis) {
  std::string shown;
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    if (!shown.empty()) shown += "; ";
    shown += syllable.spelling;
    if (syllable.digit != '\0') shown += syllable.digit;
    shown += ' ' + Show(syllable.range) + ' ' + Show(syllable.syllable);
  }
  return shown;
}

std::string ShowProblems(const std::vector<Problem>& problems) {
  std::string shown;
  for (const Problem& problem : problems) {
    if (!shown.empty()) shown += "; ";
    shown += std::string(ProblemName(problem.kind)) + ' ' + Show(problem.range);
    const bool is_in_syllable = problem.hint == Hint::kNone && problem.piece.length != 0;
    if (is_in_syllable) shown += " at " + Show(problem.piece);
  }
  return shown;
}

struct Case {
  int language;
  AnalysisOptions options;
  std::string text;
  const char* syllables;
  const char* problems;
};

TEST(Analyze, TheLibrarysOwnNotations) {
  const Case cases[] = {
      // Text, as py2ph reads it.
      {LANGUAGE_MANDARIN, In(Notation::kText), "", "", ""},
      {LANGUAGE_MANDARIN, In(Notation::kText), "ni3'hao",
       "ni3 0+3 n i 3 of 2243; hao 4+3 h ao 5 of 1175", ""},
      {LANGUAGE_MANDARIN, In(Notation::kText), "ni0", "ni0 0+3 n i 5 of 2245", ""},
      {LANGUAGE_MANDARIN, In(Notation::kText), "xx3 ni3 qq", "ni3 4+3 n i 3 of 2243",
       "unknown syllable 0+3; letters lost 8+2"},
      {LANGUAGE_MANDARIN, In(Notation::kText), "yipinguo",
       "yi 0+2 i 5 of 3705; ping 2+4 p ing 5 of 2555", "letters lost 6+2"},
      {LANGUAGE_MANDARIN, In(Notation::kText), "P ni3 \xff\xff`y Q", "ni3 2+3 n i 3 of 2243",
       "letters lost 0+1; letters lost 6+2; letters lost 9+1; letters lost 11+1"},
      {LANGUAGE_MANDARIN, Dropping(Notation::kText), "P ni3 Q", "ni3 2+3 n i 3 of 2243", ""},
      {LANGUAGE_MANDARIN, Dropping(Notation::kText), "xx3 Q", "", "unknown syllable 0+3"},
      {kUnregistered, In(Notation::kText), "ni3", "ni3 0+3 n i 3 of 2243", ""},
      {LANGUAGE_AMERICAN_ENGLISH, In(Notation::kText), "a1", "", "unknown syllable 0+2"},
      // Codes. Their tone is any digit.
      {LANGUAGE_MANDARIN, In(Notation::kCodes), " \t", "", ""},
      {LANGUAGE_MANDARIN, In(Notation::kCodes), "2243  1179",
       "ni3 0+4 n i 3 of 2243; hao9 6+4 h ao 9 of 1179", ""},
      {LANGUAGE_MANDARIN, In(Notation::kCodes), "0", "a0 0+1 a 0 of 0", ""},
      {LANGUAGE_MANDARIN, In(Notation::kCodes), "4169 4170 65535 65536 -1 2243x +3 2243",
       "zuo9 0+4 z uo 9 of 4169; ni3 34+4 n i 3 of 2243",
       "unknown syllable code 5+4; unknown syllable code 10+5; unknown syllable code 16+5; "
       "unknown syllable code 22+2; unknown syllable code 25+5; unknown syllable code 31+2"},
      {LANGUAGE_AMERICAN_ENGLISH, In(Notation::kCodes), "0", "", "unknown syllable code 0+1"},
      // Phone-id bytes.
      {LANGUAGE_MANDARIN, In(Notation::kIds), "", "", ""},
      {LANGUAGE_MANDARIN, In(Notation::kIds), "24 35 3\t28 43 9 5",
       "n i3 0+7 n i 3 of 0; h ao9 8+7 h ao 9 of 0; 5 16+1 5 of 0", ""},
      {LANGUAGE_MANDARIN, In(Notation::kIds), "24 99 3 256 x 35", "",
       "unknown phone-id byte 0+7 at 3+2; unknown phone-id byte 8+8 at 8+3"},
      {LANGUAGE_MANDARIN, In(Notation::kIds), "24 35 3 28  43 ", "n i3 0+7 n i 3 of 0",
       "phones lost 8+6 at 8+6"},
      {LANGUAGE_MANDARIN, Dropping(Notation::kIds), "24 35 3 28", "n i3 0+7 n i 3 of 0", ""},
      // Pronunciations.
      {LANGUAGE_MANDARIN, In(Notation::kPronunciation), " ,, \r", "", ""},
      {LANGUAGE_MANDARIN, In(Notation::kPronunciation), "n i 3, h ao 9 ,\tsil 0",
       "n i3 0+5 n i 3 of 0; h ao9 7+6 h ao 9 of 0; sil0 16+5 sil 0 of 0", ""},
      {LANGUAGE_AMERICAN_ENGLISH, In(Notation::kPronunciation),
       "hh ax 0, zz, hh xx yy 1, hh  ax 0, hh ax, x y z, l ow 1",
       "hh ax0 0+7 hh ax 0 of 0; l ow1 49+6 l ow 1 of 0",
       "bad tone 9+2 at 9+2; unknown phone 13+10 at 16+2; unknown phone 25+8 at 28+1; "
       "bad tone 35+5 at 38+2; unknown phone 42+5 at 42+1"},
      {kUnregistered, In(Notation::kPronunciation), "l ow 1", "l ow1 0+6 l ow 1 of 0", ""},
      // What is only written is not read.
      {LANGUAGE_MANDARIN, In(Notation::kPhones), "n i", "", "foreign text 0+3"},
      {LANGUAGE_MANDARIN, In(Notation::kTonedPhones), "", "", ""},
      {LANGUAGE_MANDARIN, In(Notation::kMarkedPinyin), "nǐ", "", "foreign text 0+3"},
      // A notation of one language is read in that one.
      {LANGUAGE_CANTONESE, In(Notation::kPinyin), "nǐ", "ni3 0+3 n i 3 of 2243", ""},
      {LANGUAGE_MANDARIN, In(Notation::kJyutping), "nei5", "nei5 0+4 n ei 5 of 4035", ""},
      {kUnregistered, In(Notation::kArpabet), "OW1", "ow1 0+3 ow 1 of 0", ""},
      {kUnregistered, {}, "nǐ", "ni3 0+3 n i 3 of 2243", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const Analysis analysis = Analyze(c.language, c.text, c.options);
    EXPECT_EQ(ShowSyllables(analysis), c.syllables);
    EXPECT_EQ(ShowProblems(analysis.problems), c.problems);
    Reader reader(c.language, c.options);
    EXPECT_EQ(reader.Read(c.text), analysis.problems.empty());
    EXPECT_EQ(ShowProblems(reader.problems()), c.problems);
  }
}

TEST(Analyze, DefaultTone) {
  AnalysisOptions options = In(Notation::kText);
  options.default_tone = 2;
  const Case cases[] = {
      {LANGUAGE_CANTONESE, options, "nei hou3", "nei 0+3 n ei 2 of 4032; hou3 4+4 h ou 3 of 2383",
       ""},
      {LANGUAGE_MANDARIN, options, "ni", "ni 0+2 n i 5 of 2245", ""},
      {LANGUAGE_CANTONESE,
       [&] {
         AnalysisOptions spoken = options;
         spoken.notation = Notation::kPronunciation;
         return spoken;
       }(),
       "n ei 7, h ou 0", "n ei7 0+6 n ei 2 of 0; h ou0 8+6 h ou 0 of 0", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ShowSyllables(Analyze(c.language, c.text, c.options)), c.syllables);
    Reader reader(c.language, c.options);
    ASSERT_TRUE(reader.Read(c.text));
    const Analysis analysis = Analyze(c.language, c.text, c.options);
    for (std::size_t i = 0; i < reader.size(); ++i) {
      EXPECT_EQ(Show(reader.Syllable(i)), Show(analysis.syllables[i].syllable)) << c.text;
    }
  }
}

// Every byte has one owner, in ARPAbet at least one, and is a separator only where it may be.
void ExpectOwners(const std::string& text, const Analysis& analysis, bool may_share) {
  std::vector<int> owners(text.size());
  const auto own = [&owners](Range range) {
    for (std::size_t i = range.offset; i < range.end(); ++i) ++owners.at(i);
  };
  for (const AnalyzedSyllable& syllable : analysis.syllables) own(syllable.range);
  for (const Problem& problem : analysis.problems) own(problem.range);
  for (const Range& separator : analysis.separators) {
    own(separator);
    const std::string bytes = text.substr(separator.offset, separator.length);
    ASSERT_EQ(bytes.find_first_not_of(" \t\n,'`。"), std::string::npos) << text;
  }
  for (const int count : owners) ASSERT_TRUE(count == 1 || (may_share && count == 2)) << text;
}

// The reader and an analysis agree, whatever the text and the way that the reader takes.
void ExpectAgreement(int language, const AnalysisOptions& options, const std::string& text,
                     Reader& reader, Reader& with_places) {
  const Analysis analysis = Analyze(language, text, options);
  for (Reader* each : {&reader, &with_places}) {
    ASSERT_EQ(each->Read(text), analysis.problems.empty()) << text;
    ASSERT_EQ(ShowProblems(each->problems()), ShowProblems(analysis.problems)) << text;
    if (!analysis.problems.empty()) {
      ASSERT_EQ(each->size(), 0U) << text;
      ASSERT_TRUE(each->applied().empty() && each->places().empty()) << text;
      continue;
    }
    ASSERT_EQ(each->applied().size(), analysis.applied.size()) << text;
    ASSERT_EQ(each->size(), analysis.syllables.size()) << text;
    for (std::size_t i = 0; i < each->size(); ++i) {
      ASSERT_EQ(Show(each->Syllable(i)), Show(analysis.syllables[i].syllable)) << text;
    }
  }
  ASSERT_TRUE(reader.places().empty());
  if (!analysis.problems.empty()) return;
  for (std::size_t i = 0; i < with_places.places().size(); ++i) {
    ASSERT_EQ(Show(with_places.places()[i]), Show(analysis.syllables[i].range)) << text;
  }
}

struct Agreement {
  int language;
  Notation notation;
  std::vector<std::string> words;  // that texts are made of
};

// Without it the test's name is made of all bytes, those between the members too.
void PrintTo(const Agreement& agreement, std::ostream* out) {
  *out << FactsOf(agreement.notation).name;
}

class ReaderOf : public testing::TestWithParam<Agreement> {};

TEST_P(ReaderOf, AgreesWithTheAnalysis) {
  const auto& [language, notation, words] = GetParam();
  std::mt19937 random(5);
  for (const bool drops_silently : {false, true}) {
    for (const int default_tone : {0, 4}) {
      AnalysisOptions options = In(notation);
      options.drops_silently = drops_silently;
      options.default_tone = default_tone;
      Reader reader(language, options);
      Reader with_places(language, options, true);
      int read_count = 0;
      for (int i = 0; i < 2000; ++i) {
        std::string text;
        for (auto left = random() % 5; left > 0; --left) text += words[random() % words.size()];
        if (!drops_silently) {
          ExpectOwners(text, Analyze(language, text, options), notation == Notation::kArpabet);
        }
        ExpectAgreement(language, options, text, reader, with_places);
        if (HasFatalFailure()) return;
        read_count += reader.problems().empty() ? 1 : 0;
      }
      EXPECT_GT(read_count, 100);
      EXPECT_LT(read_count, 1900);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Notations, ReaderOf,
    testing::Values(Agreement{LANGUAGE_MANDARIN,
                              Notation::kPinyin,
                              {"ni3", "hao", "nǐ", " ", "'", "r5", "xx", "X", "lu:4", "wo"}},
                    Agreement{LANGUAGE_CANTONESE,
                              Notation::kJyutping,
                              {"nei5", "hou", " ", "xx", "m4", "wan2", "gung1", "。"}},
                    Agreement{LANGUAGE_AMERICAN_ENGLISH,
                              Notation::kArpabet,
                              {"HH ", "AH0 ", "ow1 ", "T ", "XX ", "IY", " "}},
                    Agreement{LANGUAGE_CANTONESE,
                              Notation::kText,
                              {"nei5", "hou", " ", "xx3", "P", "`", "m", "\n", "wan"}},
                    Agreement{LANGUAGE_MANDARIN,
                              Notation::kCodes,
                              {"2243 ", "0\n", " 4169 ", "4170 ", "1", "\t"}},
                    Agreement{LANGUAGE_CANTONESE,
                              Notation::kIds,
                              {"13 ", "56 ", "7 ", "3 ", "\t1 ", "200 ", "0 ", "x "}},
                    Agreement{LANGUAGE_CANTONESE,
                              Notation::kPronunciation,
                              {"n ei 5, ", "h ou 7,", ",", "m 4 ,", "zz 1, ", "n  ei 5,", " "}}),
    [](const auto& test) {
      std::string name(FactsOf(test.param.notation).name);
      name[0] = static_cast<char>(name[0] - 'a' + 'A');
      return name;
    });

TEST(Reader, SaysWhatItReads) {
  Reader reader(LANGUAGE_CANTONESE);
  EXPECT_EQ(reader.notation(), Notation::kJyutping);
  EXPECT_TRUE(reader.has_codes());
  ASSERT_TRUE(reader.Read("nei5hou2"));
  EXPECT_EQ(reader.codes(), (std::vector<unsigned short>{4035, 2382}));
  EXPECT_EQ(reader.applied().size(), 1U);
  Reader english(LANGUAGE_AMERICAN_ENGLISH);
  EXPECT_FALSE(english.has_codes());
  ASSERT_TRUE(english.Read("OW1"));
  ASSERT_EQ(english.syllables().size(), 1U);
  EXPECT_EQ(english.syllables()[0].raw_tone, 1);
  EXPECT_EQ(Reader(kUnregistered).notation(), Notation::kPinyin);
}

}  // namespace
}  // namespace qeo::notation
