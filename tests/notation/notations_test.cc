// The table of notations: what is known of each.

#include "notation/notations.h"

#include <gtest/gtest.h>

#include <string_view>

#include "notation/notation.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using sp::LANGUAGE_AMERICAN_ENGLISH;
using sp::LANGUAGE_CANTONESE;
using sp::LANGUAGE_MANDARIN;

TEST(FactsOf, EveryNotation) {
  const struct {
    Notation notation;
    std::string_view name;
    std::string_view title;
    int language;
    bool has_codes;
    bool is_read;
    bool is_written;
  } cases[] = {
      {Notation::kPinyin, "pinyin", "Pinyin", LANGUAGE_MANDARIN, true, true, false},
      {Notation::kMarkedPinyin, "marks", "Pinyin with tone marks", LANGUAGE_MANDARIN, true, false,
       true},
      {Notation::kJyutping, "jyutping", "Jyutping", LANGUAGE_CANTONESE, true, true, false},
      {Notation::kArpabet, "arpabet", "ARPAbet", LANGUAGE_AMERICAN_ENGLISH, false, true, true},
      {Notation::kText, "text", "romanised text", 0, true, true, true},
      {Notation::kPhones, "phones", "phones", 0, false, false, true},
      {Notation::kTonedPhones, "toned-phones", "toned phones", 0, false, false, true},
      {Notation::kCodes, "codes", "syllable codes", 0, true, true, true},
      {Notation::kIds, "ids", "phone-id bytes", 0, false, true, true},
      {Notation::kPronunciation, "pronunciation", "pronunciations", 0, false, true, true},
  };
  ASSERT_EQ(std::size(cases), AllNotations().size());
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const auto& c = cases[i];
    SCOPED_TRACE(c.name);
    EXPECT_EQ(AllNotations()[i], c.notation);
    const NotationFacts& facts = FactsOf(c.notation);
    EXPECT_EQ(facts.notation, c.notation);
    EXPECT_EQ(facts.name, c.name);
    EXPECT_EQ(facts.title, c.title);
    EXPECT_EQ(facts.language, c.language);
    EXPECT_EQ(facts.has_codes, c.has_codes);
    EXPECT_EQ(facts.is_read, c.is_read);
    EXPECT_EQ(facts.is_written, c.is_written);
    EXPECT_EQ(NotationOfName(c.name), c.notation);
  }
}

TEST(FactsOf, RulesAreThoseThatCount) {
  for (const Notation notation : AllNotations()) {
    const RuleSet rules = FactsOf(notation).rules;
    for (int i = 0; i < kRuleCount; ++i) {
      const Rule rule = static_cast<Rule>(i);
      const bool counts = (notation == Notation::kPinyin && kPinyinRules.Has(rule)) ||
                          (notation == Notation::kJyutping && kJyutpingRules.Has(rule)) ||
                          (notation == Notation::kArpabet &&
                           (kArpabetRules.Has(rule) || rule == Rule::kSecondStress));
      EXPECT_EQ(rules.Has(rule), counts) << FactsOf(notation).name << ' ' << RuleName(rule);
    }
  }
}

TEST(NotationOfName, OtherTextsHaveNone) {
  for (const std::string_view name : {"", "Pinyin", "pinyin ", "zhuyin", "tone-mark"}) {
    EXPECT_EQ(NotationOfName(name), std::nullopt) << name;
  }
}

TEST(OwnNotation, OfEveryLanguage) {
  EXPECT_EQ(OwnNotation(LANGUAGE_MANDARIN), Notation::kPinyin);
  EXPECT_EQ(OwnNotation(LANGUAGE_CANTONESE), Notation::kJyutping);
  EXPECT_EQ(OwnNotation(LANGUAGE_AMERICAN_ENGLISH), Notation::kArpabet);
  for (const int id : {0, -1, 9999, 20001}) EXPECT_EQ(OwnNotation(id), std::nullopt) << id;
}

TEST(ServingLanguage, OfANotation) {
  const struct {
    Notation notation;
    int language;
    int serving;
  } cases[] = {
      {Notation::kPinyin, LANGUAGE_CANTONESE, LANGUAGE_MANDARIN},
      {Notation::kArpabet, 9999, LANGUAGE_AMERICAN_ENGLISH},
      {Notation::kText, LANGUAGE_CANTONESE, LANGUAGE_CANTONESE},
      {Notation::kText, 9999, LANGUAGE_MANDARIN},
      {Notation::kCodes, 9999, LANGUAGE_MANDARIN},
      {Notation::kIds, 9999, LANGUAGE_AMERICAN_ENGLISH},
      {Notation::kPronunciation, LANGUAGE_MANDARIN, LANGUAGE_MANDARIN},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ServingLanguage(c.notation, c.language), c.serving)
        << FactsOf(c.notation).name << ' ' << c.language;
  }
}

}  // namespace
}  // namespace qeo::notation
