// Normalises a text, cuts what has no tones, and traces each syllable back to the bytes that it was
// read from. What is left of the text is either a problem already, or a separator.

#include "notation/analysis.h"

#include <algorithm>
#include <utility>

#include "notation/characters.h"
#include "notation/cut_cost.h"
#include "notation/hints.h"
#include "notation/normalizer.h"
#include "notation/run_parts.h"
#include "notation/suggestion.h"
#include "notation/syllable_table.h"
#include "notation/syllable_tree.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using internal::ReadCharacter;
using internal::RunPart;
using internal::SyllableTree;

constexpr char kNoDigit = internal::kNoTone;

bool EndsPhone(char c) { return c <= ' '; }  // of a known phone's letters, digits and white space

template <typename A, typename B>
bool ComesFirst(const A& a, const B& b) {
  return a.range.offset < b.range.offset;
}

// Those of the normaliser are in order already, and mostly all there are.
void SortProblems(std::vector<Problem>& problems) {
  const auto comes_first = ComesFirst<Problem, Problem>;
  if (std::is_sorted(problems.begin(), problems.end(), comes_first)) return;
  std::stable_sort(problems.begin(), problems.end(), comes_first);
}

// Reads Chinese.
class SyllableReader {
 public:
  SyllableReader(int language, std::string_view text, const AnalysisOptions& options)
      : language_(language == sp::LANGUAGE_CANTONESE ? language : sp::LANGUAGE_MANDARIN),
        rules_(language == sp::LANGUAGE_CANTONESE ? options.rules.Without(Rule::kDiaeresis)
                                                  : options.rules),
        cutting_(options.cutting),
        text_(text),
        normalized_(
            Normalize(language == sp::LANGUAGE_CANTONESE ? internal::kJyutping : internal::kPinyin,
                      text, options.rules, options.aliases, options.cutting == Cutting::kNone)) {}

  Analysis Read() {
    Analysis analysis;
    analysis.problems = std::move(normalized_.problems);
    FindPieces();
    internal::Hints hints(language_, text_, rules_);
    for (Problem& problem : analysis.problems) hints.Add(problem);
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      const std::size_t limit =
          i + 1 < pieces_.size() ? OriginOf(pieces_[i + 1].begin) : text_.size();
      pieces_[i].range = RangeOf(pieces_[i], limit);
    }
    for (std::size_t i = 0; i < pieces_.size(); ++i) Place(i, analysis);
    SortProblems(analysis.problems);
    AddSyllableRecords(analysis.syllables);
    analysis.applied = std::move(normalized_.applied);
    return analysis;
  }

 private:
  enum class PieceKind { kSyllable, kLost, kUnknown };

  // Letters of the normalised text, and the digit after them.
  struct ReadPiece {
    PieceKind kind;
    std::size_t begin;
    std::size_t end;
    char digit;
    Range range = {};  // in the text
  };

  // A guess about some neighbouring pieces, of which one, a problem, is `piece`.
  struct PieceGuess {
    std::size_t piece;
    internal::Guess guess;
    std::size_t first;
    std::size_t last;
  };

  void FindPieces();
  void CutWord(std::size_t begin, std::size_t end);
  Range RangeOf(const ReadPiece& piece, std::size_t limit);
  void Place(std::size_t index, Analysis& analysis);
  Problem ProblemOf(std::size_t index, ProblemKind kind);
  void AddSyllableRecords(std::vector<AnalyzedSyllable>& syllables) const;

  std::size_t OriginOf(std::size_t index) const { return normalized_.origins[index]; }
  std::string LettersOf(const ReadPiece& piece) const {
    return normalized_.text.substr(piece.begin, piece.end - piece.begin);
  }

  int language_;
  RuleSet rules_;
  Cutting cutting_;
  std::string_view text_;
  Normalized normalized_;
  std::vector<ReadPiece> pieces_;
  std::vector<PieceGuess> guesses_;  // in the order of the pieces
  std::size_t next_guess_ = 0;       // the first that is not of a piece before the next one
  std::size_t next_applied_ = 0;     // the first application that is not before the next piece
  std::vector<RunPart> parts_;       // of the word that is looked at
};

void SyllableReader::FindPieces() {
  const std::string& text = normalized_.text;
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t end = begin;
    while (end < text.size() && text[end] != ' ' && !ascii::IsDigit(text[end])) ++end;
    if (end < text.size() && ascii::IsDigit(text[end])) {
      pieces_.push_back({PieceKind::kSyllable, begin, end, text[end]});
      ++end;
    } else {
      CutWord(begin, end);
    }
    begin = end < text.size() && text[end] == ' ' ? end + 1 : end;
  }
}

// Cuts letters without a tone. Those that the cut leaves out are pieces too: lost, or unknown with
// the syllable that they follow ("nun"), or as the whole word.
void SyllableReader::CutWord(std::size_t begin, std::size_t end) {
  const std::string_view word = std::string_view(normalized_.text).substr(begin, end - begin);
  const std::vector<CutSyllable> cut = CutLetters(language_, word, cutting_);
  internal::SplitRun(word.size(), cut, parts_);
  const bool joins_nasals =
      cutting_ == Cutting::kWhole && internal::CutNumbersOf(language_).nasals_stand_alone;
  if (joins_nasals) internal::JoinNasals(word, parts_);
  const std::size_t first = pieces_.size();
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    const RunPart& part = parts_[i];
    const PieceKind wrong = cut.empty() || part.is_joined ? PieceKind::kUnknown : PieceKind::kLost;
    pieces_.push_back({part.is_wrong ? wrong : PieceKind::kSyllable, begin + part.begin,
                       begin + part.end, kNoDigit});
    if (!part.is_wrong) continue;
    const internal::PartsGuess guess = internal::GuessAround(language_, word, parts_, i);
    guesses_.push_back({first + i, guess.guess, first + guess.first, first + guess.last});
  }
}

// The bytes of the text that a piece was read from: up to the end of the character that its last
// byte comes from, and what rules took with it, "u:" and the r of "dianr". It ends at `limit`.
Range SyllableReader::RangeOf(const ReadPiece& piece, std::size_t limit) {
  const std::size_t begin = OriginOf(piece.begin);
  const std::size_t last = OriginOf(piece.digit == kNoDigit ? piece.end - 1 : piece.end);
  std::size_t end = ReadCharacter(text_, last).range.end();
  const std::vector<Application>& applied = normalized_.applied;
  for (; next_applied_ < applied.size(); ++next_applied_) {
    const auto& [rule, range] = applied[next_applied_];
    if (range.offset >= limit) break;
    const bool is_letters = rule != Rule::kPunctuation && rule != Rule::kAbbreviation;
    if (is_letters) end = std::max(end, range.end());
  }
  return {begin, std::min(end, limit) - begin};
}

void SyllableReader::Place(std::size_t index, Analysis& analysis) {
  const ReadPiece& piece = pieces_[index];
  switch (piece.kind) {
    case PieceKind::kSyllable:
      analysis.syllables.push_back({LettersOf(piece), piece.digit, piece.range, 0, {}});
      return;
    case PieceKind::kLost:
      analysis.problems.push_back(ProblemOf(index, ProblemKind::kLettersLost));
      return;
    case PieceKind::kUnknown:
      analysis.problems.push_back(ProblemOf(index, ProblemKind::kUnknownSyllable));
      return;
  }
}

// Letters that a cut left out, as a problem with its hint; each has a guess.
Problem SyllableReader::ProblemOf(std::size_t index, ProblemKind kind) {
  Problem problem = {kind, pieces_[index].range, {}};
  const auto& [piece, guess, first, last] = guesses_[next_guess_++];
  const std::size_t offset = pieces_[first].range.offset;
  internal::SetHint(language_, guess, {offset, pieces_[last].range.end() - offset}, kNoDigit,
                    problem);
  return problem;
}

// Asks the library for all syllables at once.
void SyllableReader::AddSyllableRecords(std::vector<AnalyzedSyllable>& syllables) const {
  std::string text;
  for (const AnalyzedSyllable& syllable : syllables) {
    text += syllable.spelling;
    text += syllable.digit == kNoDigit ? ' ' : syllable.digit;
  }
  std::vector<sp::SyllableInfo> records;
  sp::py2ph(language_, text, records);
  for (std::size_t i = 0; i < records.size(); ++i) {
    syllables[i].row = static_cast<int>(records[i].code) / internal::kTonesPerRow;
    syllables[i].syllable = std::move(records[i]);
  }
}

// Reads ARPAbet.
Analysis AnalyzeArpabet(std::string_view text, RuleSet rules) {
  Normalized normalized = ArpabetToPronunciation(text, rules);
  std::vector<sp::SyllableInfo> records;
  sp::pr2ph(sp::LANGUAGE_AMERICAN_ENGLISH, normalized.text, records);
  Analysis analysis;
  std::size_t begin = 0;  // of the syllable in the normalised text: "hh ax 0"
  for (sp::SyllableInfo& record : records) {
    const std::size_t comma = std::min(normalized.text.find(',', begin), normalized.text.size());
    const std::size_t digit = comma - 1;
    std::size_t end = normalized.origins[digit];
    while (end < text.size() && !EndsPhone(text[end])) ++end;
    const std::size_t offset = normalized.origins[begin];
    analysis.syllables.push_back({normalized.text.substr(begin, digit - 1 - begin),
                                  normalized.text[digit],
                                  {offset, end - offset},
                                  -1,
                                  std::move(record)});
    begin = comma + 2;
  }
  analysis.applied = std::move(normalized.applied);
  analysis.problems = std::move(normalized.problems);
  return analysis;
}

// What is in no syllable and no problem.
void AddSeparators(std::string_view text, Analysis& analysis) {
  std::size_t owned = 0;  // up to here every byte has an owner
  const auto own = [&analysis, &owned](Range range) {
    if (owned < range.offset) analysis.separators.push_back({owned, range.offset - owned});
    owned = std::max(owned, range.end());
  };
  auto problem = analysis.problems.begin();
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    for (; problem != analysis.problems.end() && ComesFirst(*problem, syllable); ++problem) {
      own(problem->range);
    }
    own(syllable.range);
  }
  for (; problem != analysis.problems.end(); ++problem) own(problem->range);
  own({text.size(), 0});
}

}  // namespace

Analysis Analyze(int language, std::string_view text, const AnalysisOptions& options) {
  Analysis analysis = language == sp::LANGUAGE_AMERICAN_ENGLISH
                          ? AnalyzeArpabet(text, options.rules)
                          : SyllableReader(language, text, options).Read();
  AddSeparators(text, analysis);
  return analysis;
}

}  // namespace qeo::notation
