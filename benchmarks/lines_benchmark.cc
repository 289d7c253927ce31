// What the libraries take for the lines of a large file, one call a line, as the floor for the
// tool, and for many of them as one text, which has to cost the same a syllable. Writes the lines
// to files, so that the tool can be measured on the same ones.
//
//   lines_benchmark [OPTION OF GOOGLE BENCHMARK...] DIRECTORY [LINES]

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/corpus.h"
#include "notation/notation.h"
#include "phoneme/phoneme.h"

namespace qeo::benchmarks {
namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t kLines = 1000000;
constexpr std::size_t kLinesOfOneText = 100000;
constexpr std::size_t kMaxSyllables = 4;

/// Converts a line and returns the number of its syllables, or 0 when it fails.
using Convert = std::function<std::size_t(const std::string&)>;

Lines Marked(const Lines& toned) {
  Lines lines;
  std::vector<unsigned short> codes;
  for (const std::string& line : toned) {
    sp::py2code(sp::LANGUAGE_MANDARIN, line, codes);
    lines.push_back(notation::MarkedPinyin(codes, notation::Spacing::kWord).text);
  }
  return lines;
}

Lines Arpabet(const Lines& pronunciations) {
  Lines lines;
  for (const std::string& pronunciation : pronunciations) {
    lines.push_back(notation::PronunciationToArpabet(pronunciation).text);
  }
  return lines;
}

std::size_t ConvertText(const std::string& line) {
  static std::vector<unsigned short> codes;
  return sp::py2code(sp::LANGUAGE_MANDARIN, line, codes) == 0 ? codes.size() : 0;
}

std::size_t ConvertPinyin(const std::string& line) {
  const notation::Normalized normalized = notation::NormalizePinyin(line);
  return normalized.problems.empty() ? ConvertText(normalized.text) : 0;
}

std::size_t AnalyzePinyin(const std::string& line) {
  const notation::Analysis analysis = notation::Analyze(sp::LANGUAGE_MANDARIN, line);
  return analysis.problems.empty() ? analysis.syllables.size() : 0;
}

std::size_t ConvertArpabet(const std::string& line) {
  static std::vector<sp::SyllableInfo> syllables;
  const notation::Normalized normalized = notation::ArpabetToPronunciation(line);
  sp::pr2ph(sp::LANGUAGE_AMERICAN_ENGLISH, normalized.text, syllables);
  return normalized.problems.empty() ? syllables.size() : 0;
}

void Run(benchmark::State& state, const Lines& lines, const Convert& convert) {
  std::size_t syllables = 0;
  for (auto _ : state) {
    for (const std::string& line : lines) {
      const std::size_t count = convert(line);
      if (count == 0) return state.SkipWithError(("cannot read " + line).c_str());
      syllables += count;
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(syllables));
}

Lines AsOneText(const Lines& lines, const char* separator) {
  std::string text;
  for (std::size_t i = 0; i < std::min(lines.size(), kLinesOfOneText); ++i) {
    if (i != 0) text += separator;
    text += lines[i];
  }
  return {text};
}

// Writes the lines to NAME.txt, from which the tool reads them. With `separator` between them they
// are one text.
void Register(const std::string& directory, const std::string& name, Lines lines,
              const char* separator, const Convert& convert) {
  std::ofstream file(directory + '/' + name + ".txt", std::ios::binary);
  for (const std::string& line : lines) file << line << '\n';
  if (!file.flush()) {
    std::cerr << "cannot write to " << directory << '\n';
    std::exit(1);
  }
  const auto add = [&convert](const std::string& benchmark_name, Lines texts) {
    const auto run = [texts = std::move(texts), convert](benchmark::State& state) {
      Run(state, texts, convert);
    };
    benchmark::RegisterBenchmark(benchmark_name.c_str(), run)->Unit(benchmark::kMillisecond);
  };
  add(name + "/one_text", AsOneText(lines, separator));
  add(name, std::move(lines));
}

void RegisterAll(const std::string& directory, std::size_t line_count) {
  const sp::benchmarks::Corpus mandarin =
      sp::benchmarks::MakeCorpus(sp::LANGUAGE_MANDARIN, line_count, kMaxSyllables);
  const sp::benchmarks::Corpus english =
      sp::benchmarks::MakeCorpus(sp::LANGUAGE_AMERICAN_ENGLISH, line_count, kMaxSyllables);
  Register(directory, "text", mandarin.toned, "", ConvertText);
  Register(directory, "pinyin", mandarin.toned, "", ConvertPinyin);
  Register(directory, "marks", Marked(mandarin.toned), " ", ConvertPinyin);
  Register(directory, "toneless", sp::benchmarks::MakePlainWords(line_count * 9), "",
           AnalyzePinyin);
  Register(directory, "arpabet", Arpabet(english.pronunciations), " ", ConvertArpabet);
}

}  // namespace
}  // namespace qeo::benchmarks

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc < 2) {
    std::cerr << "usage: lines_benchmark [OPTION...] DIRECTORY [LINES]\n";
    return 2;
  }
  const std::size_t lines = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : qeo::benchmarks::kLines;
  qeo::benchmarks::RegisterAll(argv[1], lines);
  benchmark::RunSpecifiedBenchmarks();
}
