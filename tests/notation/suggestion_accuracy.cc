// How often the suggestion for a slip of the keyboard is the syllable that was meant.
//
//   suggestion_accuracy DIRECTORY_OF_THE_DATA
//
// Each entry of mandarin.tsv and cantonese.tsv is taken once, with one slip in one of its
// syllables, and again with one slip in each of them. A result that is a syllable is left out, as
// nobody can tell, and so is a gap of the table, of which the hint says just that. A result of one
// or two letters is left out too: nothing is suggested for it, since it is near to too many
// syllables. How many there are is printed.
//
// Prints a line for each seed. Fails when one is below the limit of its language, or further than
// two points from the mean of the seeds.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "notation/notation.h"
#include "phoneme/phoneme.h"
#include "tests/slips.h"

namespace qeo::notation {
namespace {

constexpr std::uint32_t kSeeds = 10;  // 1 to this
constexpr double kLargestDifference = 2.0;
constexpr std::size_t kReadyColumn = 2;
constexpr std::size_t kShortestMisspelt = 3;

struct Measured {
  int language;
  const char* name;
  double least_percent;
};
constexpr Measured kMeasured[] = {
    {sp::LANGUAGE_MANDARIN, "mandarin", 92.0},
    {sp::LANGUAGE_CANTONESE, "cantonese", 88.0},
};

using Entries = std::vector<std::vector<std::string>>;  // of syllables without tone

std::vector<std::string> SyllablesOf(const std::string& line) {
  std::istringstream columns(line);
  std::string ready;
  for (std::size_t i = 0; i <= kReadyColumn; ++i) std::getline(columns, ready, '\t');
  std::istringstream words(ready);
  std::vector<std::string> syllables(std::istream_iterator<std::string>(words), {});
  for (std::string& syllable : syllables) {
    syllable.resize(syllable.find_last_not_of("0123456789") + 1);
  }
  return syllables;
}

Entries ReadEntries(const std::string& path) {
  std::ifstream file(path);
  Entries entries;
  for (std::string line; std::getline(file, line);) {
    if (line.substr(0, 2) == "# ") continue;
    entries.push_back(SyllablesOf(line));
    if (entries.back().empty()) entries.pop_back();
  }
  return entries;
}

struct Score {
  int slips = 0;
  int right = 0;
  int short_results = 0;

  double percent() const { return 100.0 * right / slips; }
};

void AddSlip(int language, const std::string& meant, Slips& slips, Score& score) {
  const std::string result = slips.Slip(meant);
  const Analysis analysis = Analyze(language, result + '1');
  if (analysis.problems.empty() || analysis.problems[0].hint == Hint::kGap) return;
  if (result.size() < kShortestMisspelt) {
    ++score.short_results;
    return;
  }
  ++score.slips;
  if (analysis.problems[0].suggestion == meant + '1') ++score.right;
}

enum class Sample { kOneOfEntry, kAllOfEntry };

Score Measure(int language, const Entries& entries, Sample sample, std::uint32_t seed) {
  Score score;
  Slips slips(seed);
  for (const std::vector<std::string>& syllables : entries) {
    if (sample == Sample::kOneOfEntry) {
      AddSlip(language, syllables[slips.Below(syllables.size())], slips, score);
      continue;
    }
    for (const std::string& meant : syllables) AddSlip(language, meant, slips, score);
  }
  return score;
}

bool HoldsFor(const Measured& measured, const Entries& entries, Sample sample) {
  std::vector<double> percents;
  for (std::uint32_t seed = 1; seed <= kSeeds; ++seed) {
    const Score score = Measure(measured.language, entries, sample, seed);
    std::printf("%s, %s, seed %u: %.2f %%, %d of %d, and %d results of one or two letters\n",
                measured.name,
                sample == Sample::kOneOfEntry ? "one of an entry" : "all of an entry", seed,
                score.percent(), score.right, score.slips, score.short_results);
    percents.push_back(score.percent());
  }
  const double mean = std::accumulate(percents.begin(), percents.end(), 0.0) / kSeeds;
  const bool holds = std::all_of(percents.begin(), percents.end(), [&](double percent) {
    return percent >= measured.least_percent && std::abs(percent - mean) <= kLargestDifference;
  });
  if (!holds) {
    std::printf("%s: a seed below %.0f %%, or more than %.0f from %.2f %%\n", measured.name,
                measured.least_percent, kLargestDifference, mean);
  }
  return holds;
}

bool Holds(const std::string& directory) {
  bool holds = true;
  for (const Measured& measured : kMeasured) {
    const Entries entries = ReadEntries(directory + '/' + measured.name + ".tsv");
    for (const Sample sample : {Sample::kOneOfEntry, Sample::kAllOfEntry}) {
      holds = HoldsFor(measured, entries, sample) && holds;
    }
  }
  return holds;
}

}  // namespace
}  // namespace qeo::notation

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: suggestion_accuracy DIRECTORY\n", stderr);
    return 2;
  }
  return qeo::notation::Holds(argv[1]) ? 0 : 1;
}
