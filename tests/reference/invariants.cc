// What must hold for every result of notation. Byte by byte: it need not be fast.

#include "tests/reference/invariants.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "phoneme/phoneme.h"
#include "tests/reference/normalizing_bytes.h"

namespace qeo::sp::reference {
namespace {

using notation::Analysis;
using notation::AnalysisOptions;
using notation::AnalyzedSyllable;
using notation::Application;
using notation::Cutting;
using notation::Hint;
using notation::Normalized;
using notation::Problem;
using notation::ProblemKind;
using notation::Range;
using notation::Rule;

bool IsSmallLetter(char c) { return 'a' <= c && c <= 'z'; }
bool IsSeparator(char c) { return IsBlank(c) || c == '\'' || c == '`'; }

// Ranges

Range RangeOf(Range range) { return range; }

template <typename Record>
Range RangeOf(const Record& record) {
  return record.range;
}

// How many of the records hold a byte.
template <typename Record>
std::ptrdiff_t CountAt(const std::vector<Record>& records, std::size_t offset) {
  return std::count_if(records.begin(), records.end(), [offset](const Record& record) {
    const Range range = RangeOf(record);
    return offset >= range.offset && offset - range.offset < range.length;
  });
}

template <typename Record>
void ExpectRangesInOrder(std::size_t size, const std::vector<Record>& records, Expect expect) {
  std::size_t last = 0;
  for (const Record& record : records) {
    const Range range = RangeOf(record);
    expect(range.offset >= last, "ranges are in text order");
    expect(range.length > 0, "ranges are not empty");
    expect(range.offset < size && range.length <= size - range.offset, "ranges are in the text");
    last = range.offset;
  }
}

bool Overlap(Range a, Range b) { return std::max(a.offset, b.offset) < std::min(a.end(), b.end()); }

// Texts with origins

bool IsOrigin(const Normalized& result, std::size_t offset) {
  return std::binary_search(result.origins.begin(), result.origins.end(), offset);
}

// Returns whether each byte has an origin.
bool ExpectWellFormed(const std::string& input, const Normalized& result, Expect expect) {
  ExpectRangesInOrder(input.size(), result.applied, expect);
  ExpectRangesInOrder(input.size(), result.problems, expect);
  expect(std::is_sorted(result.origins.begin(), result.origins.end()), "origins never fall");
  const auto is_inside = [&input](std::size_t origin) { return origin < input.size(); };
  const bool are_inside = std::all_of(result.origins.begin(), result.origins.end(), is_inside);
  expect(are_inside, "an origin is in the input");
  expect(result.origins.size() == result.text.size(), "each byte has an origin");
  return are_inside && result.origins.size() == result.text.size();
}

// Small letters, digits that close them, and single spaces between them.
void ExpectLibraryNotation(const std::string& text, Expect expect) {
  char last = ' ';
  for (const char c : text) {
    expect(IsSmallLetter(c) || (IsDigit(c) && IsSmallLetter(last)) || (c == ' ' && last != ' '),
           "the text is in the library's notation");
    last = c;
  }
  expect(text.empty() || last != ' ', "the text does not end in a space");
}

// Each byte but a space is a byte of the input in small, the tone of the letter before it, or what
// a rule made.
void ExpectOrigins(const std::string& input, const Normalized& result, Expect expect) {
  for (std::size_t i = 0; i < result.text.size(); ++i) {
    const std::size_t origin = result.origins[i];
    if (result.text[i] == ' ') continue;
    expect(CountAt(result.problems, origin) == 0, "nothing comes from a problem");
    const bool is_tone_of_letter =
        IsDigit(result.text[i]) && i > 0 && result.origins[i - 1] == origin;
    expect(is_tone_of_letter || result.text[i] == Small(input[origin]) ||
               CountAt(result.applied, origin) > 0,
           "what differs from the input was made by a rule");
  }
}

void ExpectOwners(const std::string& input, const Normalized& result, Expect expect) {
  for (std::size_t i = 0; i < input.size(); ++i) {
    expect(IsSeparator(input[i]) || IsOrigin(result, i) || CountAt(result.applied, i) > 0 ||
               CountAt(result.problems, i) > 0,
           "no byte is lost");
  }
}

void ExpectLibraryReads(int language, const std::string& text, Expect expect) {
  std::vector<unsigned short> codes = {999};
  expect(py2code(language, text, codes) == 0, "the library reads the text");
  if (std::none_of(text.begin(), text.end(), IsDigit)) return;
  std::size_t runs = 0;
  char last = ' ';
  for (const char c : text) {
    if (IsSmallLetter(c) && !IsSmallLetter(last)) ++runs;
    last = c;
  }
  expect(codes.size() == runs, "each run of letters is a syllable");
}

// Analyses

bool IsSeparatorAt(int language, const Analysis& analysis, const std::string& text,
                   std::size_t at) {
  if (language == LANGUAGE_AMERICAN_ENGLISH) return IsBlank(text[at]);
  std::vector<Range> punctuation;
  for (const Application& application : analysis.applied) {
    if (application.rule == Rule::kPunctuation) punctuation.push_back(application.range);
  }
  return IsSeparator(text[at]) || CountAt(punctuation, at) > 0;
}

void ExpectOwners(int language, const std::string& text, const Analysis& analysis, Expect expect) {
  const bool is_english = language == LANGUAGE_AMERICAN_ENGLISH;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto syllables = CountAt(analysis.syllables, at);
    const auto problems = CountAt(analysis.problems, at);
    const auto separators = CountAt(analysis.separators, at);
    expect(syllables <= 1, "no byte is in two syllables");
    expect(problems <= 1, "no byte is in two problems");
    expect(syllables + problems + separators > 0, "every byte has an owner");
    expect(separators == 0 || syllables + problems + separators == 1,
           "a separator is nothing else");
    expect(is_english || syllables + problems + separators == 1, "a byte has one owner in Chinese");
    expect(separators == 0 || IsSeparatorAt(language, analysis, text, at),
           "separators are separators");
  }
}

// With the rule off, Mandarin keeps the 0 that is written for no tone.
bool IsTone(int language, char digit) {
  const auto tone = static_cast<signed char>(digit - '0');
  const bool is_none = digit == '\0' || (digit == '0' && language == LANGUAGE_MANDARIN);
  return is_none || ToneAdaptation(language, tone) == tone;
}

void ExpectLibraryPhones(const AnalyzedSyllable& syllable, Expect expect) {
  std::vector<SyllableInfo> records;
  const std::string text = syllable.spelling + ' ' + syllable.digit;
  const bool is_one = pr2ph(LANGUAGE_AMERICAN_ENGLISH, text, records) == 0 && records.size() == 1;
  expect(is_one, "an English syllable parses");
  expect(syllable.row == -1, "an English syllable has no row");
  if (!is_one) return;
  expect(records[0].raw_tone == syllable.syllable.raw_tone, "its stress is that of the digit");
  expect(records[0].phones == syllable.syllable.phones, "its phones are the library's");
}

void ExpectLibrarySyllable(int language, const AnalyzedSyllable& syllable, Expect expect) {
  std::vector<SyllableInfo> records;
  const char end = syllable.digit == '\0' ? ' ' : syllable.digit;
  const bool is_one = py2ph(language, syllable.spelling + end, records) == 0 && records.size() == 1;
  expect(is_one, "a syllable is one of the library's");
  expect(IsTone(language, syllable.digit), "its tone needs no folding");
  if (!is_one) return;
  expect(records[0].code == syllable.syllable.code, "its code is the library's");
  expect(records[0].phones == syllable.syllable.phones, "its phones are the library's");
  const auto code = static_cast<unsigned short>(records[0].code);
  expect(syllable.row == code / kTonesPerRow, "its row is that of the code");
  expect(code2py(language, code, false) == syllable.spelling, "its spelling is the library's");
  const bool has_tone = syllable.digit != '\0' && syllable.digit != '0';
  expect(!has_tone || code2py(language, code, true) == syllable.spelling + syllable.digit,
         "its tone is the library's");
}

// A suggestion read alone is one syllable, or a phone.
void ExpectSuggestion(int language, const Problem& problem, Expect expect) {
  const std::string& suggestion = problem.suggestion;
  if (language == LANGUAGE_AMERICAN_ENGLISH) {
    expect(problem.kind == ProblemKind::kUnknownPhone, "what is suggested is a phone");
    expect(GetPhoneInfoByDescription(language, suggestion)->name == suggestion,
           "a suggestion is a phone");
    return;
  }
  const Analysis read = notation::Analyze(language, suggestion);
  expect(read.problems.empty() && read.syllables.size() == 1 &&
             read.syllables[0].range.length == suggestion.size(),
         "a suggestion is a syllable");
}

// What a hint says is not in the table is not a word that is a syllable.
void ExpectGap(int language, const AnalysisOptions& options, const Problem& problem,
               Expect expect) {
  AnalysisOptions uncut;
  uncut.cutting = Cutting::kNone;
  uncut.rules = options.rules;
  const std::string letters = std::string(problem.initial).append(problem.final);
  expect(notation::Analyze(language, letters, uncut).syllables.empty(),
         "a gap is not in the table");
}

void ExpectHint(int language, const std::string& text, const AnalysisOptions& options,
                const Problem& problem, Expect expect) {
  const bool suggests = problem.hint == Hint::kSpelling || problem.hint == Hint::kAlias;
  expect(suggests == !problem.suggestion.empty(), "a hint suggests what it is said to");
  expect((problem.hint == Hint::kGap) == !problem.initial.empty(), "a gap has its initial");
  expect((problem.hint == Hint::kGap) == !problem.final.empty(), "a gap has its final");
  expect((problem.hint == Hint::kNone) == (problem.piece.length == 0), "a hint has its piece");
  if (suggests) ExpectSuggestion(language, problem, expect);
  if (problem.hint == Hint::kGap) ExpectGap(language, options, problem, expect);
  if (problem.hint == Hint::kNone) return;
  expect(problem.piece.end() <= text.size() && Overlap(problem.piece, problem.range),
         "a hint is about the problem");
  expect(problem.kind == ProblemKind::kUnknownSyllable ||
             problem.kind == ProblemKind::kLettersLost ||
             problem.kind == ProblemKind::kUnknownPhone,
         "a hint is about letters");
}

}  // namespace

void ExpectSound(int language, const std::string& input, const Normalized& result, Expect expect) {
  ExpectLibraryNotation(result.text, expect);
  ExpectLibraryReads(language, result.text, expect);
  if (!ExpectWellFormed(input, result, expect)) return;
  ExpectOrigins(input, result, expect);
  ExpectOwners(input, result, expect);
}

void ExpectPlacedArpabet(const std::string& input, const Normalized& result, Expect expect) {
  ExpectWellFormed(input, result, expect);
  for (std::size_t i = 0; i < input.size(); ++i) {
    if (IsBlank(input[i])) continue;
    const bool is_stress = '0' <= input[i] && input[i] <= '2' && i > 0 && IsOrigin(result, i - 1);
    const auto problems = CountAt(result.problems, i);
    expect(problems <= 1, "no byte is in two problems");
    expect(problems == 1 || IsOrigin(result, i) || is_stress, "no byte is lost");
    expect(problems == 0 || !IsOrigin(result, i), "nothing comes from a problem");
  }
}

void ExpectPlacedPronunciation(const std::string& input, const Normalized& result, Expect expect) {
  ExpectWellFormed(input, result, expect);
  for (std::size_t i = 0; i < input.size(); ++i) {
    if (IsBlank(input[i]) || input[i] == ',') continue;
    // A stress digit at the end of its syllable has the origin of a phone.
    const bool is_stress = '0' <= input[i] && input[i] <= '2' && i > 0 && IsBlank(input[i - 1]);
    expect(is_stress || IsOrigin(result, i) || CountAt(result.problems, i) > 0, "no byte is lost");
  }
}

void ExpectSound(int language, const std::string& text, const AnalysisOptions& options,
                 const Analysis& analysis, Expect expect) {
  ExpectRangesInOrder(text.size(), analysis.syllables, expect);
  ExpectRangesInOrder(text.size(), analysis.applied, expect);
  ExpectRangesInOrder(text.size(), analysis.problems, expect);
  ExpectRangesInOrder(text.size(), analysis.separators, expect);
  ExpectOwners(language, text, analysis, expect);
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    if (language == LANGUAGE_AMERICAN_ENGLISH) {
      ExpectLibraryPhones(syllable, expect);
    } else {
      ExpectLibrarySyllable(language, syllable, expect);
    }
  }
  for (const Problem& problem : analysis.problems) {
    ExpectHint(language, text, options, problem, expect);
  }
}

}  // namespace qeo::sp::reference
