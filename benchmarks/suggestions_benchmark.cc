// What a hint costs, for each problem: the time of Analyze for misspelt syllables less that of the
// normaliser, which finds the same problems without hints. It finds none in words without tones:
// there, less that of Analyze for the same words, spelled right.
//
//   suggestions_benchmark [OPTION OF GOOGLE BENCHMARK...] [SYLLABLES]

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "notation/notation.h"
#include "phoneme/phoneme.h"
#include "tests/slips.h"

namespace qeo::notation {
namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t kSyllables = 100000;
constexpr std::size_t kSyllablesOfLine = 4;
constexpr std::uint32_t kSeed = 1;

std::string RandomSyllable(int language, Slips& slips) {
  const sp::SpMapping& set = *sp::FindPhoneSet(language);
  const std::string spelling = set.pinyin_list[slips.Below(set.pinyin_count)].pinyin;
  return spelling == "E" ? "e" : spelling;
}

Hint HintOf(int language, const std::string& text) {
  const Analysis analysis = Analyze(language, text);
  return analysis.problems.empty() ? Hint::kNone : analysis.problems[0].hint;
}

// Lines of several syllables, each with a slip that has a suggestion.
Lines Misspelt(int language, std::size_t syllable_count) {
  Slips slips(kSeed);
  Lines lines;
  for (std::size_t count = 0; count < syllable_count;) {
    const std::string result = slips.Slip(RandomSyllable(language, slips)) + '3';
    if (HintOf(language, result) != Hint::kSpelling) continue;
    if (count++ % kSyllablesOfLine == 0) lines.emplace_back();
    lines.back() += result;
  }
  return lines;
}

// The same as words with a mark, "zhōgn" after its last vowel's letter.
Lines MisspeltMarks(std::size_t word_count) {
  constexpr std::string_view kMacron = "\u0304";
  Slips slips(kSeed);
  Lines lines;
  while (lines.size() < word_count) {
    std::string word = slips.Slip(RandomSyllable(sp::LANGUAGE_MANDARIN, slips));
    const std::size_t vowel = word.find_last_of("aeiou");
    if (vowel == std::string::npos) continue;
    word.insert(vowel + 1, kMacron);
    if (HintOf(sp::LANGUAGE_MANDARIN, word) == Hint::kSpelling) lines.push_back(word);
  }
  return lines;
}

// Words of three syllables without tones, of which the second has a slip, and the same without it.
struct Words {
  Lines misspelt;
  Lines right;
};

Words Toneless(int language, std::size_t word_count) {
  Slips slips(kSeed);
  Words words;
  while (words.misspelt.size() < word_count) {
    const std::string first = RandomSyllable(language, slips);
    const std::string second = RandomSyllable(language, slips);
    const std::string third = RandomSyllable(language, slips);
    const std::string right = first + second + third;
    const std::string misspelt = first + slips.Slip(second) + third;
    const Analysis analysis = Analyze(language, misspelt);
    const bool is_hint =
        analysis.problems.size() == 1 && analysis.problems[0].hint == Hint::kSpelling;
    if (!is_hint || !Analyze(language, right).problems.empty()) continue;
    words.misspelt.push_back(misspelt);
    words.right.push_back(right);
  }
  return words;
}

std::size_t Normalize(int language, const std::string& line) {
  const Normalized normalized =
      language == sp::LANGUAGE_CANTONESE ? NormalizeJyutping(line) : NormalizePinyin(line);
  return normalized.problems.size();
}

// In seconds of the processor: other processes do not count.
double TimeOf(const Lines& lines, std::size_t& problems,
              const std::function<std::size_t(const std::string&)>& read) {
  const std::clock_t begin = std::clock();
  problems = 0;
  for (const std::string& line : lines) problems += read(line);
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

// Without lines that are right the normaliser reads those with problems.
void Run(benchmark::State& state, int language, const Lines& lines, const Lines& right) {
  const auto normalize = [language](const std::string& line) { return Normalize(language, line); };
  const auto analyze = [language](const std::string& line) {
    return Analyze(language, line).problems.size();
  };
  std::size_t problems = 0;
  for (auto _ : state) {
    std::size_t expected = 0;
    const double without =
        right.empty() ? TimeOf(lines, expected, normalize) : TimeOf(right, expected, analyze);
    const double with = TimeOf(lines, problems, analyze);
    if (right.empty() != (problems == expected)) return state.SkipWithError("other problems");
    state.SetIterationTime(with - without);
  }
  const double hints = static_cast<double>(state.iterations()) * static_cast<double>(problems);
  state.counters["hint"] =
      benchmark::Counter(hints, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void Register(const char* name, int language, Lines lines, Lines right = {}) {
  const auto run = [language, lines = std::move(lines), right = std::move(right)](
                       benchmark::State& state) { Run(state, language, lines, right); };
  benchmark::RegisterBenchmark(name, run)->UseManualTime()->Unit(benchmark::kMillisecond);
}

void RegisterAll(std::size_t count) {
  Register("digits/mandarin", sp::LANGUAGE_MANDARIN, Misspelt(sp::LANGUAGE_MANDARIN, count));
  Register("digits/cantonese", sp::LANGUAGE_CANTONESE, Misspelt(sp::LANGUAGE_CANTONESE, count));
  Register("marks/mandarin", sp::LANGUAGE_MANDARIN, MisspeltMarks(count));
  for (const auto& [name, language] : {std::pair("toneless/mandarin", sp::LANGUAGE_MANDARIN),
                                       std::pair("toneless/cantonese", sp::LANGUAGE_CANTONESE)}) {
    Words words = Toneless(language, count);
    Register(name, language, std::move(words.misspelt), std::move(words.right));
  }
}

}  // namespace
}  // namespace qeo::notation

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  qeo::notation::RegisterAll(argc > 1 ? std::strtoul(argv[1], nullptr, 10)
                                      : qeo::notation::kSyllables);
  benchmark::RunSpecifiedBenchmarks();
}
