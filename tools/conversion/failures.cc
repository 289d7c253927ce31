#include "tools/conversion/failures.h"

#include "tools/conversion/languages.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

using notation::Gap;
using notation::Problem;
using notation::ProblemKind;

constexpr std::string_view kBlanks = "\t\r\n ";  // those around the syllables of a pronunciation

// The number of the syllable of a pronunciation that has the byte at `offset`.
std::size_t SyllableNumber(std::string_view text, std::size_t offset) {
  std::size_t number = 1;
  for (std::size_t begin = 0, comma = text.find(','); comma < offset;
       begin = comma + 1, comma = text.find(',', begin)) {
    if (text.substr(begin, comma - begin).find_first_not_of(kBlanks) != text.npos) ++number;
  }
  return number;
}

// Whether nothing of a syllable of a pronunciation is before `offset`.
bool BeginsSyllable(std::string_view text, std::size_t offset) {
  const std::size_t before = text.substr(0, offset).find_last_not_of(kBlanks);
  return before == text.npos || text[before] == ',';
}

std::string DetailInPronunciation(const Problem& problem, std::string_view text) {
  std::string detail = Described(problem, text);
  if (problem.kind == ProblemKind::kBadTone) {
    const bool is_whole = BeginsSyllable(text, problem.range.offset);
    const char* expected = is_whole ? "phones and a tone digit" : "a tone digit";
    detail = std::string("expected ") + expected + ", found " + detail;
  }
  return detail + " (syllable " + std::to_string(SyllableNumber(text, problem.range.offset)) + ')';
}

}  // namespace

notation::Range PlaceOf(const Problem& problem) {
  const bool is_in_syllable = problem.hint == notation::Hint::kNone && problem.piece.length != 0;
  return is_in_syllable ? problem.piece : problem.range;
}

std::string DetailOf(Notation from, const Problem& problem, std::string_view text) {
  if (problem.kind == ProblemKind::kPhonesLost) return "after the last closing byte";
  Problem placed = problem;
  placed.range = PlaceOf(problem);
  return from == Notation::kPronunciation ? DetailInPronunciation(placed, text)
                                          : Described(placed, text);
}

Failure FailureOf(Notation from, const std::vector<Problem>& problems, std::string_view text) {
  const Problem& first = problems.front();
  const std::string_view kind = notation::ProblemName(first.kind);
  std::string message = DetailOf(from, first, text);
  const bool says_what_is_wrong =
      from == Notation::kPronunciation && first.kind == ProblemKind::kBadTone;
  if (!says_what_is_wrong) message.insert(0, std::string(kind) + ' ');
  if (problems.size() > 1) message += ", and " + std::to_string(problems.size() - 1) + " more";
  return {kind, std::move(message), PlaceOf(first)};
}

std::string DetailOf(const notation::Writer& writer, Gap gap, const sp::SyllableInfo& syllable) {
  switch (gap) {
    case Gap::kMissingPhone:
      return std::string(": no phone is named \"") + writer.MissingName(syllable) + '"';
    case Gap::kNoTone:
      return ": --default-tone sets one";
    case Gap::kBadTone:
      return ": " + DescribeTones(syllable.language);
    case Gap::kToneWithoutFinal:
      return ": no final or vowel carries it";
    case Gap::kManyFinals:
      return ": more than one final or vowel would carry it";
    case Gap::kNoSpelling:
      return ": text does not read it back";
    default:
      return "";
  }
}

Failure GapFailure(const Conversion& conversion, const notation::Writer& writer,
                   std::string_view text) {
  const notation::Analysis analysis =
      notation::Analyze(conversion.language, text, conversion.reading);
  Failure failure;
  std::string detail;
  std::size_t count = 0;
  for (std::size_t i = 0; i < analysis.syllables.size(); ++i) {
    const notation::AnalyzedSyllable& syllable = analysis.syllables[i];
    const Gap gap = writer.FindGap(syllable.syllable);
    if (gap == Gap::kNone || count++ != 0) continue;
    failure.kind = notation::GapName(gap);
    failure.place = syllable.range;
    failure.message = std::string(failure.kind) + ' ' +
                      Quoted(text.substr(syllable.range.offset, syllable.range.length)) +
                      " (syllable " + std::to_string(i + 1);
    detail = ')' + DetailOf(writer, gap, syllable.syllable);
  }
  if (count > 1) failure.message += " and " + std::to_string(count - 1) + " more";
  failure.message += detail;
  return failure;
}

}  // namespace qeo::tool
