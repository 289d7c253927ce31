// The tables of rarities against the data that they were made from.

#include "notation/rarities.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "tests/testing.h"

namespace qeo::notation::internal {
namespace {

// Counts the letters between the digits and spaces of the ready forms, without splitting them.
std::map<std::string, int> CountSyllables(const std::string& language) {
  std::map<std::string, int> counts;
  for (const sp::Row& row : sp::ReadTsv(PHONEME_DATA_DIR "/" + language + ".tsv", 5)) {
    std::string letters;
    for (const char c : row[2] + ' ') {
      if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) {
        letters += c;
      } else if (!letters.empty()) {
        ++counts[letters];
        letters.clear();
      }
    }
  }
  return counts;
}

struct Case {
  sp::Language language;
  std::vector<std::uint8_t> rarities;
  int syllables;  // in the data
  int lacking;    // rows that are not
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.language.name; }

class Rarities : public testing::TestWithParam<Case> {};

TEST_P(Rarities, AreThoseOfTheData) {
  const Case& c = GetParam();
  const std::vector<sp::GoldenSyllable> rows = c.language.syllables();
  ASSERT_EQ(c.rarities.size(), rows.size());
  std::map<std::string, int> counts = CountSyllables(c.language.name);
  int syllables = 0;
  for (const auto& [spelling, count] : counts) syllables += count;
  EXPECT_EQ(syllables, c.syllables);
  int lacking = 0;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const int count = counts[rows[row].spelling];
    lacking += count == 0 ? 1 : 0;
    const double probability = (count + 1.0) / (syllables + static_cast<double>(rows.size()));
    const double sixteenths = -kRarityBit * std::log2(probability);
    EXPECT_NEAR(c.rarities[row], std::min(sixteenths, 255.0), 0.5) << rows[row].spelling;
  }
  EXPECT_EQ(lacking, c.lacking);
}

std::vector<std::uint8_t> Mandarin() {
  return {std::begin(kMandarinRarities), std::end(kMandarinRarities)};
}
std::vector<std::uint8_t> Cantonese() {
  return {std::begin(kCantoneseRarities), std::end(kCantoneseRarities)};
}

INSTANTIATE_TEST_SUITE_P(Languages, Rarities,
                         testing::Values(Case{sp::kMandarin, Mandarin(), 9843, 2},
                                         Case{sp::kCantonese, Cantonese(), 7404, 0}),
                         [](const auto& of_case) {
                           return std::string(of_case.param.language.name);
                         });

}  // namespace
}  // namespace qeo::notation::internal
