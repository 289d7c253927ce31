// Normalises a text, cuts what has no tones, and traces each syllable back to the bytes that it was
// read from. What is left of the text is either a problem already, or a separator.

#include "notation/analysis.h"

#include <algorithm>
#include <utility>

#include "notation/apostrophe.h"
#include "notation/characters.h"
#include "notation/cut_cost.h"
#include "notation/normalizer.h"
#include "notation/run_parts.h"
#include "notation/suggestion.h"
#include "notation/syllable_set.h"
#include "notation/syllable_table.h"
#include "notation/syllable_tree.h"
#include "notation/text_reader.h"
#include "notation/word.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using internal::ReadCharacter;
using internal::RunPart;
using internal::SyllableTree;

constexpr char kNoDigit = '\0';

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

// Whether bytes are small letters and a digit, of which no rule changes one.
bool ArePlain(std::string_view bytes) {
  const auto is_plain = [](char c) { return ascii::IsSmall(c) && c != 'v'; };
  return ascii::IsDigit(bytes.back()) && std::all_of(bytes.begin(), bytes.end() - 1, is_plain);
}

// Writes v where the letters that a rule reads as "lve" and "nve" have u.
void Respell(std::string& letters) {
  for (const std::string_view respelled : {"lue", "nue"}) {
    std::size_t at = letters.find(respelled);
    for (; at != std::string::npos; at = letters.find(respelled, at)) letters[at + 1] = 'v';
  }
}

// Writes a guess into a problem, about what is written in `piece`, with a digit or none.
void SetHint(int language, const internal::Guess& guess, Range piece, char digit,
             Problem& problem) {
  if (guess.hint == Hint::kNone) return;
  problem.hint = guess.hint;
  problem.piece = piece;
  if (guess.hint == Hint::kGap) {
    problem.initial = guess.initial;
    problem.final = guess.final;
    return;
  }
  const auto code = static_cast<unsigned short>(guess.row * internal::kTonesPerRow);
  problem.suggestion = sp::code2py(language, code, false);
  const auto tone = static_cast<unsigned>(digit - '0');
  if (digit != kNoDigit && internal::IsTone(language, tone)) problem.suggestion += digit;
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
    for (Problem& problem : analysis.problems) AddHint(problem);
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
  void AddHint(Problem& problem);
  void AddHintToRun(std::string_view letters, Problem& problem);
  void SetRunHint(const internal::Guess& guess, internal::Piece piece, Problem& problem) const;
  std::size_t CountMarks(internal::Piece piece) const;
  void FindWrongMarks(std::string_view letters);
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
  std::vector<RunPart> parts_;       // of the word or run that is looked at
  internal::Word word_;              // the same of the problem
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
  SetHint(language_, guess, {offset, pieces_[last].range.end() - offset}, kNoDigit, problem);
  return problem;
}

// Adds the hint to a problem that the normaliser found.
void SyllableReader::AddHint(Problem& problem) {
  if (problem.kind != ProblemKind::kUnknownSyllable) return;
  const std::string_view bytes = text_.substr(problem.range.offset, problem.range.length);
  if (ArePlain(bytes)) {
    const std::string_view letters = bytes.substr(0, bytes.size() - 1);
    return SetHint(language_, internal::GuessSyllable(language_, letters), problem.range,
                   bytes.back(), problem);
  }
  internal::TextReader(bytes, rules_).ReadWord(0, word_);
  std::string letters;
  for (const internal::Letter& letter : word_.letters) {
    letters += letter.letter == internal::kCircumflexE ? 'e' : letter.letter;
  }
  const bool is_run = word_.digits.count == 0;
  if (rules_.Has(Rule::kDiaeresis) && (is_run || letters.size() == 3)) Respell(letters);
  if (is_run) return AddHintToRun(letters, problem);
  SetHint(language_, internal::GuessMarked(language_, letters), problem.range,
          word_.digits.first.ascii, problem);
}

// The same, where the problem is a run of letters that may be several syllables. One that is near
// to a syllable by itself is taken for that.
void SyllableReader::AddHintToRun(std::string_view letters, Problem& problem) {
  const internal::Piece whole = {0, letters.size()};
  if (CountMarks(whole) <= 1) {
    SetRunHint(internal::GuessMarked(language_, letters), whole, problem);
    if (problem.hint != Hint::kNone) return;
  }
  internal::SplitRun(letters.size(), CutLetters(language_, letters, Cutting::kWhole), parts_);
  FindWrongMarks(letters);
  const auto wrong =
      std::find_if(parts_.begin(), parts_.end(), [](const RunPart& part) { return part.is_wrong; });
  if (wrong == parts_.end()) return;
  const auto [guess, first, last] = internal::GuessAround(
      language_, letters, parts_, static_cast<std::size_t>(wrong - parts_.begin()));
  SetRunHint(guess, {parts_[first].begin, parts_[last].end}, problem);
}

// `piece` is of the word, of which the problem is all.
void SyllableReader::SetRunHint(const internal::Guess& guess, internal::Piece piece,
                                Problem& problem) const {
  char digit = kNoDigit;
  for (std::size_t i = piece.begin; i < piece.end; ++i) {
    if (word_[i].tone != internal::kNoTone) digit = word_[i].tone;
  }
  Range range = word_.RangeOf(piece);
  range.offset += problem.range.offset;
  SetHint(language_, guess, range, digit, problem);
}

std::size_t SyllableReader::CountMarks(internal::Piece piece) const {
  const auto begin = word_.letters.begin();
  return static_cast<std::size_t>(std::count_if(
      begin + static_cast<std::ptrdiff_t>(piece.begin),
      begin + static_cast<std::ptrdiff_t>(piece.end),
      [](const internal::Letter& letter) { return letter.tone != internal::kNoTone; }));
}

// Finds the syllables of a run that its marks forbid: one with a mark more, or in a wrong place,
// and two of which the second lacks the apostrophe.
void SyllableReader::FindWrongMarks(std::string_view letters) {
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    RunPart& part = parts_[i];
    internal::ToneMarks marks;
    bool has_circumflex = false;  // which is a syllable by itself
    for (std::size_t at = part.begin; at < part.end; ++at) {
      marks.Add(word_[at]);
      has_circumflex = has_circumflex || word_[at].letter == internal::kCircumflexE;
    }
    part.mark_count = marks.count();
    part.has_wrong_mark =
        !marks.AreOfOneSyllable() || (has_circumflex && part.end - part.begin > 1);
    part.is_wrong = part.is_wrong || part.has_wrong_mark;
    const std::string_view spelling = letters.substr(part.begin, part.end - part.begin);
    if (i == 0 || part.row == SyllableTree::kNoRow) continue;
    const bool is_clear = internal::MayLackApostrophe(internal::Pack(spelling), part.mark_count > 0,
                                                      parts_[i - 1].mark_count > 0);
    if (is_clear) continue;
    part.is_wrong = true;
    parts_[i - 1].is_wrong = true;
  }
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
