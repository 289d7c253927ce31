// Analyze: every byte of any text is in a syllable, a separator or a problem; what it calls a
// separator is one, its syllables are the library's, its hints those of the reference form, and it
// reads what the reference form of the normaliser does.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/normalizing.h"
#include "tests/reference/suggesting.h"

namespace qeo::notation {
namespace {

using fuzzing::Expect;
using fuzzing::IsBlank;
using fuzzing::IsWithin;

constexpr int kLanguages[] = {sp::LANGUAGE_MANDARIN, sp::LANGUAGE_CANTONESE,
                              sp::LANGUAGE_AMERICAN_ENGLISH};
constexpr Cutting kCuttings[] = {Cutting::kWhole, Cutting::kForward, Cutting::kBackward,
                                 Cutting::kNone};

// How many of the records hold a byte.
template <typename Record>
std::ptrdiff_t CountOwners(const std::vector<Record>& records, std::size_t offset) {
  return std::count_if(records.begin(), records.end(),
                       [offset](const Record& record) { return IsWithin(record.range, offset); });
}

// Whether a byte may be a separator: one of the library's, or what the punctuation rule took.
bool IsSeparator(int language, const Analysis& analysis, const std::string& text, std::size_t at) {
  if (IsBlank(text[at])) return true;
  if (language == sp::LANGUAGE_AMERICAN_ENGLISH) return false;
  const bool is_punctuation = std::any_of(
      analysis.applied.begin(), analysis.applied.end(), [at](const Application& application) {
        return application.rule == Rule::kPunctuation && IsWithin(application.range, at);
      });
  return is_punctuation || text[at] == '\'' || text[at] == '`';
}

void ExpectOwners(int language, const std::string& text, const Analysis& analysis) {
  const bool is_chinese = language != sp::LANGUAGE_AMERICAN_ENGLISH;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto separators = std::count_if(analysis.separators.begin(), analysis.separators.end(),
                                          [at](Range range) { return IsWithin(range, at); });
    const auto others = CountOwners(analysis.syllables, at) + CountOwners(analysis.problems, at);
    Expect(separators + others > 0, "every byte has an owner");
    Expect(separators == 0 || others == 0, "a separator is nothing else");
    Expect(!is_chinese || separators + others == 1, "a byte has one owner in Chinese");
    Expect(separators == 0 || IsSeparator(language, analysis, text, at),
           "separators are separators");
  }
}

// With the rule off, Mandarin keeps the 0 that stands for no tone.
bool IsTone(int language, char digit) {
  const auto tone = static_cast<signed char>(digit - '0');
  const bool is_none = digit == '\0' || (digit == '0' && language == sp::LANGUAGE_MANDARIN);
  return is_none || sp::ToneAdaptation(language, tone) == tone;
}

// Asks the library for the syllables one by one.
void ExpectLibrarySyllables(int language, const Analysis& analysis) {
  std::vector<sp::SyllableInfo> records;
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    if (language == sp::LANGUAGE_AMERICAN_ENGLISH) {
      const int result = sp::pr2ph(language, syllable.spelling + ' ' + syllable.digit, records);
      Expect(result == 0 && records.size() == 1, "an English syllable parses");
      Expect(records[0].raw_tone == syllable.syllable.raw_tone, "its stress is that of the digit");
    } else {
      const char end = syllable.digit == '\0' ? ' ' : syllable.digit;
      const int result = sp::py2ph(language, syllable.spelling + end, records);
      Expect(result == 0 && records.size() == 1, "a syllable is one of the library's");
      Expect(records[0].code == syllable.syllable.code, "its code is the library's");
      Expect(syllable.row == static_cast<int>(records[0].code / 10), "its row is that of the code");
      Expect(IsTone(language, syllable.digit), "its tone needs no folding");
    }
    Expect(records[0].phones == syllable.syllable.phones, "its phones are the library's");
  }
}

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
// are none, the syllables are the text, but for what stands between them.
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

bool Overlap(Range a, Range b) { return std::max(a.offset, b.offset) < std::min(a.end(), b.end()); }

// A suggestion read alone is one syllable, or a phone.
void ExpectSuggestion(int language, const std::string& suggestion) {
  if (language == sp::LANGUAGE_AMERICAN_ENGLISH) {
    Expect(sp::GetPhoneInfoByDescription(language, suggestion)->name == suggestion,
           "a suggestion is a phone");
    return;
  }
  const Analysis read = Analyze(language, suggestion);
  Expect(read.syllables.size() == 1 && read.problems.empty(), "a suggestion is a syllable");
}

// What a hint says is not in the table is not a word that is a syllable.
void ExpectGap(int language, AnalysisOptions options, const Problem& problem) {
  options.cutting = Cutting::kNone;
  const std::string letters = std::string(problem.initial).append(problem.final);
  Expect(Analyze(language, letters, options).syllables.empty(), "a gap is not in the table");
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

void ExpectHints(int language, const std::string& text, const AnalysisOptions& options,
                 const Analysis& analysis) {
  for (const Problem& problem : analysis.problems) {
    const bool suggests = problem.hint == Hint::kSpelling || problem.hint == Hint::kAlias;
    Expect(suggests == !problem.suggestion.empty(), "a hint suggests what it is said to");
    Expect((problem.hint == Hint::kGap) == !problem.initial.empty(), "a gap has its initial");
    Expect((problem.hint == Hint::kNone) == (problem.piece.length == 0), "a hint has its piece");
    if (suggests) ExpectSuggestion(language, problem.suggestion);
    if (problem.hint == Hint::kGap) ExpectGap(language, options, problem);
    if (problem.hint != Hint::kNone) {
      Expect(problem.piece.end() <= text.size() && Overlap(problem.piece, problem.range),
             "a hint is about the problem");
    }
    const std::string bytes = text.substr(problem.range.offset, problem.range.length);
    const bool is_comparable = problem.kind == ProblemKind::kUnknownSyllable &&
                               problem.hint != Hint::kAlias && IsPlain(bytes);
    if (is_comparable) ExpectReferenceHint(language, bytes, problem);
  }
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
  if (switched < kRuleCount) options.rules = options.rules.Without(static_cast<Rule>(switched));
  const std::string text = input.Rest();
  const Analysis analysis = Analyze(language, text, options);
  ExpectOwners(language, text, analysis);
  ExpectLibrarySyllables(language, analysis);
  ExpectHints(language, text, options, analysis);
  const auto expected = Reference(language, text, options);
  const bool is_cut = options.cutting != Cutting::kNone;  // as the reference cuts
  if (expected && is_cut) ExpectReference(analysis, *expected);
  return 0;
}
