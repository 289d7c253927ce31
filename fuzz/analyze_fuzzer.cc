// Analyze: every byte of any text is in a syllable, a separator or a problem; what it calls a
// separator is one, its syllables are the library's, its hints those of the reference form, and it
// reads what the reference form of the normaliser does. The reader agrees with it in any notation.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/normalizing.h"
#include "tests/reference/suggesting.h"

namespace qeo::notation {
namespace {

using fuzzing::Expect;

constexpr int kLanguages[] = {sp::LANGUAGE_MANDARIN, sp::LANGUAGE_CANTONESE,
                              sp::LANGUAGE_AMERICAN_ENGLISH};
constexpr Cutting kCuttings[] = {Cutting::kWhole, Cutting::kForward, Cutting::kBackward,
                                 Cutting::kNone};

std::optional<sp::reference::Reading> Reference(int language, const std::string& text,
                                                const AnalysisOptions& options) {
  if (language == sp::LANGUAGE_MANDARIN) {
    return sp::reference::NormalizePinyin(text, options.rules);
  }
  if (language == sp::LANGUAGE_CANTONESE) {
    return sp::reference::NormalizeJyutping(text, options.rules, options.aliases);
  }
  return sp::reference::ArpabetToPronunciation(text, options.rules);
}

// A word that is cut here may have problems more, for the letters that are left out; where there
// are none, the syllables are the text, but for what is between them.
void ExpectReference(const Analysis& analysis, const sp::reference::Reading& expected) {
  std::size_t found = 0;
  for (const Problem& problem : analysis.problems) {
    if (found == expected.problems.size()) break;
    const sp::reference::Misfit& misfit = expected.problems[found];
    found += problem.kind == misfit.kind && problem.range.offset == misfit.range.offset &&
                     problem.range.length == misfit.range.length
                 ? 1
                 : 0;
  }
  Expect(found == expected.problems.size(), "the problems of the reference are found");
  if (found != analysis.problems.size()) return;
  std::string letters;
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    letters += syllable.spelling;
    if (syllable.digit != '\0') letters += syllable.digit;
  }
  const auto without_gaps = [](std::string text) {
    const auto is_gap = [](char c) { return c == ' ' || c == ','; };
    text.erase(std::remove_if(text.begin(), text.end(), is_gap), text.end());
    return text;
  };
  Expect(without_gaps(letters) == without_gaps(expected.text), "the syllables are the reference's");
}

// Whether the bytes of a problem are small letters that no rule changes, and a digit.
bool IsPlain(const std::string& bytes) {
  const auto is_plain = [](char c) { return c >= 'a' && c <= 'z' && c != 'v'; };
  return bytes.back() >= '0' && bytes.back() <= '9' &&
         std::all_of(bytes.begin(), bytes.end() - 1, is_plain);
}

void ExpectReferenceHint(int language, const std::string& bytes, const Problem& problem) {
  const std::string expected = sp::reference::Suggest(language, bytes.substr(0, bytes.size() - 1));
  std::string found = problem.suggestion.substr(0, problem.suggestion.find_first_of("1234567"));
  if (problem.hint == Hint::kGap) {
    found = "gap " + std::string(problem.initial) + '+' + std::string(problem.final);
  }
  Expect(found == expected, "the hint is the reference's");
}

// The hint of a problem for which the reference form has one.
void ExpectReferenceHints(int language, const std::string& text, const Analysis& analysis) {
  for (const Problem& problem : analysis.problems) {
    const std::string bytes = text.substr(problem.range.offset, problem.range.length);
    const bool is_comparable = problem.kind == ProblemKind::kUnknownSyllable &&
                               problem.hint != Hint::kAlias && IsPlain(bytes);
    if (is_comparable) ExpectReferenceHint(language, bytes, problem);
  }
}

// The reader has the syllables of an analysis without a problem, and else the problems.
void ExpectReader(int language, const std::string& text, const AnalysisOptions& options,
                  const Analysis& analysis) {
  Reader reader(language, options);
  Expect(reader.Read(text) == analysis.problems.empty(), "the reader reads what has no problem");
  Expect(reader.problems().size() == analysis.problems.size(), "it has the problems");
  if (!analysis.problems.empty()) return;
  Expect(reader.size() == analysis.syllables.size(), "it has the syllables");
  for (std::size_t i = 0; i < std::min(reader.size(), analysis.syllables.size()); ++i) {
    const sp::SyllableInfo& found = reader.Syllable(i);
    const sp::SyllableInfo& expected = analysis.syllables[i].syllable;
    Expect(found.phones == expected.phones && found.code == expected.code &&
               ToneDigit(found) == ToneDigit(expected),
           "its syllables are those of the analysis");
  }
}

// Every byte is in one syllable, separator or problem.
void ExpectOwners(const std::string& text, const Analysis& analysis) {
  std::size_t owned = 0;
  for (const AnalyzedSyllable& syllable : analysis.syllables) owned += syllable.range.length;
  for (const Problem& problem : analysis.problems) owned += problem.range.length;
  for (const Range& separator : analysis.separators) owned += separator.length;
  Expect(owned == text.size(), "a byte has one owner");
}

}  // namespace
}  // namespace qeo::notation

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qeo::notation;
  qeo::fuzzing::Input input(data, size);
  const int language = kLanguages[input.Choose(std::size(kLanguages))];
  AnalysisOptions options;
  options.cutting = kCuttings[input.Choose(std::size(kCuttings))];
  if (input.Choose(4) == 0) options.rules = {};
  const std::size_t switched = input.Choose(64);  // from kRuleCount on: none
  constexpr Notation kOthers[] = {Notation::kText, Notation::kCodes, Notation::kIds,
                                  Notation::kPronunciation};
  if (switched >= 60) options.notation = kOthers[switched - 60];
  if (switched < kRuleCount) options.rules = options.rules.Without(static_cast<Rule>(switched));
  const std::string text = input.Rest();
  const Analysis analysis = Analyze(language, text, options);
  ExpectReader(language, text, options, analysis);
  if (options.notation) {
    ExpectOwners(text, analysis);
    return 0;
  }
  qeo::sp::reference::ExpectSound(language, text, options, analysis, Expect);
  ExpectReferenceHints(language, text, analysis);
  const auto expected = Reference(language, text, options);
  const bool is_cut = options.cutting != Cutting::kNone;  // as the reference cuts
  if (expected && is_cut) ExpectReference(analysis, *expected);
  return 0;
}
