// Syllables in every notation that is written, and what each cannot express.

#include "notation/writer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "notation/notation.h"
#include "notation/notation_table.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using sp::LANGUAGE_AMERICAN_ENGLISH;
using sp::LANGUAGE_CANTONESE;
using sp::LANGUAGE_MANDARIN;

using Codes = std::vector<unsigned short>;
using Syllables = std::vector<sp::SyllableInfo>;

Syllables ToSyllables(int language, const Codes& codes) {
  Syllables syllables(codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) {
    EXPECT_EQ(sp::code2ph(language, codes[i], syllables[i]), 0);
  }
  return syllables;
}

// What a writer appends to "x", or "gap in syllable N: KIND".
template <typename Written>
std::string WrittenBy(Writer& writer, const Written& syllables, const Syllables& records) {
  std::string out = "x";
  const auto gap = writer.Write(syllables, out);
  if (!gap) return out.substr(1);
  EXPECT_EQ(out, "x");
  return "gap in syllable " + std::to_string(*gap) + ": " +
         std::string(GapName(writer.FindGap(records[*gap])));
}

TEST(Writer, Codes) {
  const struct {
    int language;
    Notation to;
    Codes codes;
    const char* written;
  } cases[] = {
      {LANGUAGE_MANDARIN, Notation::kText, {}, ""},
      {LANGUAGE_MANDARIN, Notation::kText, {2243, 1173}, "ni3 hao3"},
      {LANGUAGE_MANDARIN, Notation::kText, {2243, 2240}, "gap in syllable 1: bad tone"},
      {LANGUAGE_CANTONESE, Notation::kText, {4037}, "nei7"},
      {LANGUAGE_MANDARIN, Notation::kMarkedPinyin, {2243, 1175}, "nǐ hao"},
      {LANGUAGE_MANDARIN, Notation::kMarkedPinyin, {2243, 2249}, "gap in syllable 1: bad tone"},
      {LANGUAGE_MANDARIN, Notation::kPhones, {2243, 1179}, "n i h ao"},
      {LANGUAGE_MANDARIN, Notation::kPhones, {1235}, "gap in syllable 0: missing phone"},
      {LANGUAGE_MANDARIN, Notation::kTonedPhones, {2243, 1173}, "n i3 h ao3"},
      {LANGUAGE_MANDARIN, Notation::kTonedPhones, {1235}, "gap in syllable 0: missing phone"},
      {LANGUAGE_MANDARIN, Notation::kTonedPhones, {2241, 2248}, "gap in syllable 1: bad tone"},
      {LANGUAGE_CANTONESE, Notation::kTonedPhones, {3574}, "m4"},
      {LANGUAGE_CANTONESE, Notation::kTonedPhones, {4037}, "gap in syllable 0: no tone"},
      {LANGUAGE_MANDARIN, Notation::kCodes, {2243, 1235, 9}, "2243 1235 9"},
      {LANGUAGE_MANDARIN, Notation::kIds, {2243, 1179}, "24 35 3 28 43 9"},
      {LANGUAGE_MANDARIN, Notation::kIds, {1235}, "gap in syllable 0: missing phone"},
      {LANGUAGE_MANDARIN, Notation::kPronunciation, {2243, 1173}, "n i 3, h ao 3"},
      {LANGUAGE_MANDARIN, Notation::kPronunciation, {2240}, "gap in syllable 0: bad tone"},
      {LANGUAGE_CANTONESE, Notation::kPronunciation, {4037}, "gap in syllable 0: no tone"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(FactsOf(c.to).name) + " of " + c.written);
    Writer writer(c.to, c.language, true);
    const Syllables records = ToSyllables(c.language, c.codes);
    for (int time = 0; time < 2; ++time) {  // what a code looks like is kept
      EXPECT_EQ(WrittenBy(writer, c.codes, records), c.written);
    }
    EXPECT_EQ(WrittenBy(writer, records, records), c.written);
  }
}

TEST(Writer, SyllablesWithoutCodes) {
  const struct {
    int language;
    Notation to;
    std::string pronunciation;
    const char* written;
  } cases[] = {
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kArpabet, "", ""},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kArpabet, "hh ax 0, l ow 1", "HH AH0 L OW1"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kArpabet, "ax 1, ah 0, ah 2", "AX1 AH0 AH2"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kArpabet, "t 0, s uw 2", "T S UW2"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kArpabet, "t 1", "gap in syllable 0: bad tone"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kArpabet, "aa 1, aa 3", "gap in syllable 1: bad tone"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kArpabet, "aa iy 1", "gap in syllable 0: bad tone"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kTonedPhones, "hh ax 0, t 0", "hh ax0 t"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kPronunciation, "hh ax 0, t 0", "hh ax 0, t 0"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kPronunciation, "hh ax 3",
       "gap in syllable 0: bad tone"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kPhones, "hh ax 3", "hh ax"},
      {LANGUAGE_AMERICAN_ENGLISH, Notation::kIds, "hh ax 3", "33 16 3"},
      {LANGUAGE_MANDARIN, Notation::kTonedPhones, "zh 1", "gap in syllable 0: bad tone"},
      {LANGUAGE_MANDARIN, Notation::kTonedPhones, "n i 3, m 2", "n i3 m2"},
      {9999, Notation::kArpabet, "l ow 1", "L OW1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(FactsOf(c.to).name) + " of " + c.pronunciation);
    Syllables syllables;
    ASSERT_EQ(sp::pr2ph(c.language, c.pronunciation, syllables), 0);
    Writer writer(c.to, c.language, false);
    EXPECT_EQ(WrittenBy(writer, syllables, syllables), c.written);
  }
}

TEST(Writer, TakesAnyDigitWhereTheLibraryDoes) {
  const Codes codes = {2243, 2249};
  const struct {
    Notation to;
    const char* written;
  } cases[] = {
      {Notation::kText, "ni3 ni9"},
      {Notation::kPronunciation, "n i 3, n i 9"},
      {Notation::kMarkedPinyin, "gap in syllable 1: bad tone"},
      {Notation::kTonedPhones, "gap in syllable 1: bad tone"},
  };
  for (const auto& c : cases) {
    Writer writer(c.to, LANGUAGE_MANDARIN, true, true);
    EXPECT_EQ(WrittenBy(writer, codes, ToSyllables(LANGUAGE_MANDARIN, codes)), c.written);
  }
}

TEST(Writer, CodesOutsideTheTableHaveAGap) {
  for (const Notation to : {Notation::kText, Notation::kCodes, Notation::kIds}) {
    Writer writer(to, LANGUAGE_MANDARIN, true);
    std::string out = "x";
    EXPECT_EQ(writer.Write(Codes{2243, 4170, 2243}, out), 1U);
    EXPECT_EQ(out, "x");
  }
}

// More than are put together before they are appended.
TEST(Writer, LongTexts) {
  Writer writer(Notation::kText, LANGUAGE_MANDARIN, true);
  const Codes codes(1000, 2243);
  std::string expected;
  for (std::size_t i = 0; i < codes.size(); ++i) expected += i == 0 ? "ni3" : " ni3";
  std::string out;
  EXPECT_EQ(writer.Write(codes, out), std::nullopt);
  EXPECT_EQ(out, expected);
}

TEST(Writer, AppendsOneSyllable) {
  const Syllables syllables = ToSyllables(LANGUAGE_MANDARIN, {2243, 1235});
  const Writer writer(Notation::kPronunciation, LANGUAGE_MANDARIN, true);
  std::string out = "x, ";
  EXPECT_TRUE(writer.Append(syllables[0], out));
  EXPECT_EQ(out, "x, n i 3");
  EXPECT_FALSE(writer.Append(syllables[1], out));
  EXPECT_EQ(out, "x, n i 3");
  EXPECT_STREQ(writer.MissingName(syllables[1]), "ng");
  EXPECT_EQ(writer.MissingName(syllables[0]), nullptr);
  EXPECT_EQ(Writer(Notation::kIds, LANGUAGE_MANDARIN, false).MissingName(syllables[1]), nullptr);
}

// A name that is not in small letters is not read back; a syllable may be without phones.
TEST(Writer, SyllablesWithoutSpellingOrPhones) {
  sp::SyllableInfo syllable;
  syllable.language = LANGUAGE_MANDARIN;
  syllable.tone = 1;
  const struct {
    Notation to;
    std::uint32_t code;
    Gap gap;
  } cases[] = {
      {Notation::kText, 11, Gap::kNone},       {Notation::kText, 65535, Gap::kNoSpelling},
      {Notation::kPhones, 11, Gap::kNoPhones}, {Notation::kTonedPhones, 11, Gap::kNoPhones},
      {Notation::kIds, 11, Gap::kNone},        {Notation::kPronunciation, 11, Gap::kNoPhones},
      {Notation::kCodes, 65535, Gap::kNone},
  };
  for (const auto& c : cases) {
    syllable.code = c.code;
    EXPECT_EQ(Writer(c.to, LANGUAGE_MANDARIN, true).FindGap(syllable), c.gap)
        << FactsOf(c.to).name << ' ' << c.code;
  }
  std::vector<std::string> unspelled;
  const sp::SpMapping& mandarin = *sp::FindPhoneSet(LANGUAGE_MANDARIN);
  const Writer writer(Notation::kText, LANGUAGE_MANDARIN, true);
  for (std::uint64_t row = 0; row < mandarin.pinyin_count; ++row) {
    const auto code = static_cast<unsigned short>(row * sp::kTonesPerRow + 1);
    const Syllables syllables = ToSyllables(LANGUAGE_MANDARIN, {code});
    if (writer.FindGap(syllables[0]) != Gap::kNone) {
      EXPECT_EQ(writer.FindGap(syllables[0]), Gap::kNoSpelling);
      unspelled.emplace_back(mandarin.pinyin_list[row].pinyin);
    }
  }
  EXPECT_EQ(unspelled, std::vector<std::string>{"E"});
}

TEST(MissingName, IsTheFirstThatHasNoPhone) {
  const sp::PhoneInfo* const phone = sp::GetPhoneInfoById(LANGUAGE_MANDARIN, 1);
  const struct {
    sp::PinyinInfo row;
    const char* missing;
  } cases[] = {
      {{0, "ba", "b", "a", phone, phone}, nullptr},   {{0, "a", "", "a", nullptr, phone}, nullptr},
      {{0, "m", "m", "", phone, nullptr}, nullptr},   {{0, "ng", "", "ng", nullptr, nullptr}, "ng"},
      {{0, "hng", "h", "ng", phone, nullptr}, "ng"},  {{0, "xa", "x", "a", nullptr, phone}, "x"},
      {{0, "xng", "x", "ng", nullptr, nullptr}, "x"},
  };
  for (const auto& c : cases) EXPECT_STREQ(internal::MissingName(c.row), c.missing) << c.row.pinyin;
}

TEST(GapName, OfEveryKind) {
  EXPECT_EQ(GapName(Gap::kNone), "");
  EXPECT_EQ(GapName(Gap::kNoPhones), "no phones");
  EXPECT_EQ(GapName(Gap::kMissingPhone), "missing phone");
  EXPECT_EQ(GapName(Gap::kNoTone), "no tone");
  EXPECT_EQ(GapName(Gap::kBadTone), "bad tone");
  EXPECT_EQ(GapName(Gap::kToneWithoutFinal), "bad tone");
  EXPECT_EQ(GapName(Gap::kManyFinals), "bad tone");
  EXPECT_EQ(GapName(Gap::kNoSpelling), "no spelling");
  EXPECT_EQ(GapName(static_cast<Gap>(99)), "");
}

TEST(ProblemName, OfEveryKind) {
  const std::string_view names[] = {
      "unknown syllable",      "letters lost",          "bad tone",
      "foreign text",          "unknown phone",         "invalid UTF-8",
      "unknown syllable code", "unknown phone-id byte", "phones lost"};
  ASSERT_EQ(std::size(names), static_cast<std::size_t>(kProblemKindCount));
  for (int i = 0; i < kProblemKindCount; ++i) {
    EXPECT_EQ(ProblemName(static_cast<ProblemKind>(i)), names[i]);
  }
}

}  // namespace
}  // namespace qeo::notation
