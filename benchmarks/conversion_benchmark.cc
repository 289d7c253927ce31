// The conversions on random words, beside two baselines: "scan", a loop that looks every byte of
// the same texts up in a table, and "reference", the simple form of the tests. One iteration
// converts the whole corpus; output containers are reused throughout.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <string>
#include <vector>

#include "benchmarks/corpus.h"
#include "phoneme/phoneme.h"
#include "tests/allocation_counter.h"
#include "tests/reference/reference.h"

namespace qeo::sp::benchmarks {
namespace {

constexpr std::size_t kWords = 60000;
constexpr std::size_t kMaxSyllables = 6;
constexpr std::size_t kLongTextBytesPerWord = 70;  // 4 MB for kWords

using Codes = std::vector<unsigned short>;
using Syllables = std::vector<SyllableInfo>;
using Spellings = std::vector<std::string>;
using PhoneIds = std::vector<unsigned char>;

/// Sums a table's value for every byte: the least that any reader of the texts must do.
template <typename Text>
std::uint32_t Scan(const std::vector<Text>& texts, const std::array<std::uint32_t, 256>& table) {
  std::uint32_t sum = 0;
  for (const Text& text : texts) {
    for (const auto byte : text) sum += table[static_cast<unsigned char>(byte)];
  }
  return sum;
}

void BM_scan(benchmark::State& state, const std::vector<std::string>& texts,
             std::size_t syllable_count) {
  std::array<std::uint32_t, 256> table{};
  std::iota(table.begin(), table.end(), 1);
  for (auto _ : state) benchmark::DoNotOptimize(Scan(texts, table));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(syllable_count));
}

/// What a conversion of all inputs makes, counted in outputs; -1 when one fails.
template <typename Input, typename Convert>
std::int64_t Total(const std::vector<Input>& inputs, Convert& convert) {
  std::int64_t total = 0;
  for (const Input& input : inputs) {
    const int outputs = convert(input);
    if (outputs < 0) return -1;
    total += outputs;
  }
  return total;
}

template <typename Input, typename Convert>
void BM_convert(benchmark::State& state, const std::vector<Input>& inputs, std::int64_t expected,
                std::int64_t syllable_count, Convert convert) {
  if (Total(inputs, convert) != expected) {  // also gives the containers their size
    state.SkipWithError("the library and its reference form disagree");
    return;
  }
  const std::size_t before = allocations::Count();
  Total(inputs, convert);
  const auto allocations = static_cast<double>(allocations::Count() - before);
  state.counters["allocations"] = allocations / static_cast<double>(syllable_count);
  for (auto _ : state) benchmark::DoNotOptimize(Total(inputs, convert));
  state.SetItemsProcessed(state.iterations() * syllable_count);
}

/// The conversions of one implementation.
struct Form {
  const char* name;
  decltype(&py2code) to_codes;
  decltype(&py2ph) to_syllables;
  decltype(&pyw2py) to_spellings;
  int (*parse_syllables)(int, const std::string&, Syllables&);
  int (*parse_phone_ids)(int, const std::string&, PhoneIds&);
  decltype(&ph2ph) regroup;
  decltype(&code2ph) expand;
};

constexpr Form kLibrary = {"", py2code, py2ph, pyw2py, pr2ph, pr2ph, ph2ph, code2ph};
constexpr Form kReference = {"reference_",      reference::py2code, reference::py2ph,
                             reference::pyw2py, reference::pr2ph,   reference::pr2ph,
                             reference::ph2ph,  reference::code2ph};

template <typename Output>
int SizeAfter(int result, const Output& output) {
  return result < 0 ? result : static_cast<int>(output.size());
}

// Each of these makes a conversion of one input that keeps its output container between calls and
// returns how many outputs it made, or -1.

auto ToCodes(const Form& form, int language) {
  return [=, codes = Codes()](const std::string& text) mutable {
    return SizeAfter(form.to_codes(language, text, codes), codes);
  };
}

auto ToSyllables(const Form& form, int language) {
  return [=, syllables = Syllables()](const std::string& text) mutable {
    return SizeAfter(form.to_syllables(language, text, syllables), syllables);
  };
}

auto ToSpellings(const Form& form, int language, bool backward) {
  return [=, spellings = Spellings()](const std::string& word) mutable {
    return SizeAfter(form.to_spellings(language, word, spellings, backward), spellings);
  };
}

auto ParseSyllables(const Form& form, int language) {
  return [=, syllables = Syllables()](const std::string& text) mutable {
    return SizeAfter(form.parse_syllables(language, text, syllables), syllables);
  };
}

auto ParsePhoneIds(const Form& form, int language) {
  return [=, phone_ids = PhoneIds()](const std::string& text) mutable {
    phone_ids.clear();
    return SizeAfter(form.parse_phone_ids(language, text, phone_ids), phone_ids);
  };
}

auto Regroup(const Form& form, int language) {
  return [=, syllables = Syllables()](const PhoneIds& phone_ids) mutable {
    return SizeAfter(form.regroup(language, phone_ids, syllables), syllables);
  };
}

auto Expand(const Form& form, int language) {
  return [=, syllable = SyllableInfo()](const Codes& codes) mutable {
    for (const unsigned short code : codes) {
      syllable.phones.clear();
      if (form.expand(language, code, syllable) != 0) return -1;
    }
    return static_cast<int>(codes.size());
  };
}

/// Registers a conversion of `inputs` in both forms; `make` makes it from a Form.
template <typename Input, typename Make>
void Register(const std::string& name, const std::vector<Input>& inputs, std::size_t syllables,
              Make make) {
  const auto syllable_count = static_cast<std::int64_t>(syllables);
  auto reference = make(kReference);
  const std::int64_t expected = Total(inputs, reference);
  for (const Form* form : {&kLibrary, &kReference}) {
    benchmark::RegisterBenchmark((form->name + name).c_str(),
                                 [=, &inputs, convert = make(*form)](benchmark::State& state) {
                                   BM_convert(state, inputs, expected, syllable_count, convert);
                                 });
  }
}

/// Registers a conversion that one thread does and that two do at once, each all inputs with an
/// output container of its own.
template <typename Input, typename Make>
void RegisterThreads(const std::string& name, const std::vector<Input>& inputs,
                     std::size_t syllables, Make make) {
  const auto syllable_count = static_cast<std::int64_t>(syllables);
  auto reference = make(kReference);
  const std::int64_t expected = Total(inputs, reference);
  benchmark::RegisterBenchmark(("threads/" + name).c_str(),
                               [=, &inputs](benchmark::State& state) {
                                 BM_convert(state, inputs, expected, syllable_count,
                                            make(kLibrary));
                               })
      ->ThreadRange(1, 2)
      ->UseRealTime();
}

void RegisterScan(const std::string& name, const std::vector<std::string>& texts,
                  std::size_t syllable_count) {
  benchmark::RegisterBenchmark(name.c_str(), [=, &texts](benchmark::State& state) {
    BM_scan(state, texts, syllable_count);
  });
}

void RegisterRomanised(const std::string& suffix, const Corpus& corpus) {
  const int language = corpus.language;
  const std::size_t count = corpus.syllable_count;
  RegisterScan("scan/toned" + suffix, corpus.toned, count);
  RegisterScan("scan/toneless" + suffix, corpus.toneless, count);
  const auto to_codes = [=](const Form& form) { return ToCodes(form, language); };
  Register("py2code/toned" + suffix, corpus.toned, count, to_codes);
  Register("py2code/toneless" + suffix, corpus.toneless, count, to_codes);
  Register("py2ph/toned" + suffix, corpus.toned, count,
           [=](const Form& form) { return ToSyllables(form, language); });
  Register("pyw2py/forward" + suffix, corpus.toneless, count,
           [=](const Form& form) { return ToSpellings(form, language, false); });
  Register("pyw2py/backward" + suffix, corpus.toneless, count,
           [=](const Form& form) { return ToSpellings(form, language, true); });
  Register("code2ph/codes" + suffix, corpus.codes, count,
           [=](const Form& form) { return Expand(form, language); });
}

void RegisterPronunciations(const std::string& suffix, const Corpus& corpus) {
  const int language = corpus.language;
  const std::size_t count = corpus.syllable_count;
  RegisterScan("scan/pronunciation" + suffix, corpus.pronunciations, count);
  Register("pr2ph/syllables" + suffix, corpus.pronunciations, count,
           [=](const Form& form) { return ParseSyllables(form, language); });
  Register("pr2ph/bytes" + suffix, corpus.pronunciations, count,
           [=](const Form& form) { return ParsePhoneIds(form, language); });
  Register("ph2ph/bytes" + suffix, corpus.phone_ids, count,
           [=](const Form& form) { return Regroup(form, language); });
}

void RegisterTwoThreads(const Corpus& corpus) {
  const int language = corpus.language;
  const std::size_t count = corpus.syllable_count;
  RegisterThreads("py2code/toned/mandarin", corpus.toned, count,
                  [=](const Form& form) { return ToCodes(form, language); });
  RegisterThreads("py2ph/toned/mandarin", corpus.toned, count,
                  [=](const Form& form) { return ToSyllables(form, language); });
  RegisterThreads("pyw2py/forward/mandarin", corpus.toneless, count,
                  [=](const Form& form) { return ToSpellings(form, language, false); });
  RegisterThreads("pr2ph/syllables/mandarin", corpus.pronunciations, count,
                  [=](const Form& form) { return ParseSyllables(form, language); });
  RegisterThreads("pr2ph/bytes/mandarin", corpus.pronunciations, count,
                  [=](const Form& form) { return ParsePhoneIds(form, language); });
  RegisterThreads("ph2ph/bytes/mandarin", corpus.phone_ids, count,
                  [=](const Form& form) { return Regroup(form, language); });
  RegisterThreads("code2ph/codes/mandarin", corpus.codes, count,
                  [=](const Form& form) { return Expand(form, language); });
}

/// Registers words of three syllables and one text that is all those words without a separator. The
/// reference form takes a time that grows with the square of such a text: it has no place here.
void RegisterLongText(const std::string& name, const std::vector<std::string>& texts,
                      std::size_t syllables) {
  const auto syllable_count = static_cast<std::int64_t>(syllables);
  benchmark::RegisterBenchmark(name.c_str(), [=, &texts](benchmark::State& state) {
    BM_convert(state, texts, syllable_count, syllable_count, ToCodes(kLibrary, LANGUAGE_MANDARIN));
  });
}

/// A text that fails at its last syllable.
std::vector<std::string> SpoilLast(std::vector<std::string> texts) {
  for (std::string& text : texts) text += "xyz3";
  return texts;
}

void BM_failure(benchmark::State& state, const std::vector<std::string>& texts,
                std::size_t syllable_count) {
  Codes codes;
  for (auto _ : state) {
    for (const std::string& text : texts) {
      if (py2code(LANGUAGE_MANDARIN, text, codes) == 0) state.SkipWithError("a text converts");
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(syllable_count));
}

void RegisterAll(std::size_t word_count) {
  static const Corpus mandarin = MakeCorpus(LANGUAGE_MANDARIN, word_count, kMaxSyllables);
  static const Corpus cantonese = MakeCorpus(LANGUAGE_CANTONESE, word_count, kMaxSyllables);
  static const Corpus english = MakeCorpus(LANGUAGE_AMERICAN_ENGLISH, word_count, kMaxSyllables);
  RegisterRomanised("/mandarin", mandarin);
  RegisterRomanised("/cantonese", cantonese);
  RegisterPronunciations("/mandarin", mandarin);
  RegisterPronunciations("/cantonese", cantonese);
  RegisterPronunciations("/english", english);
  RegisterTwoThreads(mandarin);

  static const std::vector<std::string> words = MakePlainWords(word_count * kLongTextBytesPerWord);
  static const std::vector<std::string> text = {
      std::accumulate(words.begin(), words.end(), std::string())};
  RegisterLongText("py2code/words_of_three/mandarin", words, words.size() * 3);
  RegisterLongText("py2code/one_text_of_4_MB/mandarin", text, words.size() * 3);

  static const std::vector<std::string> spoilt = SpoilLast(mandarin.toned);
  benchmark::RegisterBenchmark("py2code/failing_at_the_end/mandarin", [=](benchmark::State& state) {
    BM_failure(state, spoilt, mandarin.syllable_count + word_count);
  });
}

}  // namespace
}  // namespace qeo::sp::benchmarks

// conversion_benchmark [OPTION...] [WORDS]: options of Google Benchmark, and the number of words.
int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const long word_count = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 0;
  qeo::sp::benchmarks::RegisterAll(word_count > 0 ? static_cast<std::size_t>(word_count)
                                                  : qeo::sp::benchmarks::kWords);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
