// Reads a problem's letters again, and guesses about the part of them that is wrong.

#include "notation/hints.h"

#include <algorithm>
#include <string>

#include "notation/apostrophe.h"
#include "notation/characters.h"
#include "notation/cutting.h"
#include "notation/syllable_set.h"
#include "notation/syllable_table.h"
#include "notation/syllable_tree.h"
#include "notation/text_reader.h"
#include "phoneme/ascii.h"

namespace qeo::notation::internal {
namespace {

// Whether bytes are small letters and a digit, of which no rule changes one.
bool ArePlain(std::string_view bytes) {
  const auto is_plain = [](char c) { return ascii::IsSmall(c) && c != 'v'; };
  return ascii::IsDigit(bytes.back()) && std::all_of(bytes.begin(), bytes.end() - 1, is_plain);
}

// Writes v where the letters that a rule reads as "lve" and "nve" have u.
void Respell(std::string& letters) {
  for (std::size_t i = 2; i < letters.size(); ++i) {
    const bool follows_initial = letters[i - 2] == 'l' || letters[i - 2] == 'n';
    if (follows_initial && letters[i - 1] == 'u' && letters[i] == 'e') letters[i - 1] = 'v';
  }
}

// The first letters of a word.
std::string SmallLetters(const Word& word, std::size_t size) {
  std::string letters;
  for (std::size_t i = 0; i < size; ++i) {
    letters += word[i].letter == kCircumflexE ? 'e' : word[i].letter;
  }
  return letters;
}

}  // namespace

void SetHint(const Guesser& guesser, const Guess& guess, Range piece, char digit,
             Problem& problem) {
  if (guess.hint == Hint::kNone) return;
  problem.hint = guess.hint;
  problem.piece = piece;
  if (guess.hint == Hint::kGap) {
    problem.initial = guess.initial->view();
    problem.final = guess.final->view();
    return;
  }
  problem.suggestion = guesser.SpellingOf(guess.row);
  const auto tone = static_cast<unsigned>(digit - '0');
  if (digit != kNoTone && IsTone(guesser.language(), tone)) problem.suggestion += digit;
}

void Hints::Add(Problem& problem) {
  if (problem.kind != ProblemKind::kUnknownSyllable) return;
  const std::string_view bytes = text_.substr(problem.range.offset, problem.range.length);
  if (ArePlain(bytes)) {
    const std::string_view letters = bytes.substr(0, bytes.size() - 1);
    return SetHint(guesser_, guesser_.Of(letters, false), problem.range, bytes.back(), problem);
  }
  TextReader(bytes, rules_).ReadWord(0, read_);
  if (read_.digits.count == 0) {
    return AddToRun(read_, problem.range.offset, read_.size(), problem);
  }
  std::string letters = SmallLetters(read_, read_.size());
  if (rules_.Has(Rule::kDiaeresis) && letters.size() == 3) Respell(letters);
  SetHint(guesser_, guesser_.Of(letters, true), problem.range, read_.digits.first.ascii, problem);
}

// A piece within a word is read by itself, where other letters before it do not count.
void Hints::AddRun(const Word& word, Piece piece, Problem& problem) {
  if (piece.begin > 0) return Add(problem);
  AddToRun(word, 0, piece.end, problem);
}

// Adds its hint to a problem that is a run of letters, the first of a word, which may be several
// syllables. One that is near to a syllable by itself is taken for that.
void Hints::AddToRun(const Word& word, std::size_t offset, std::size_t size, Problem& problem) {
  word_ = &word;
  offset_ = offset;
  std::string letters = SmallLetters(word, size);
  if (rules_.Has(Rule::kDiaeresis)) Respell(letters);
  const Piece whole = {0, letters.size()};
  if (CountMarks(whole) <= 1) {
    SetRunHint(guesser_.Of(letters, true), whole, problem);
    if (problem.hint != Hint::kNone) return;
  }
  SplitRun(letters.size(), CutLetters(guesser_.language(), letters, Cutting::kWhole), parts_);
  FindWrongMarks(letters);
  const auto wrong =
      std::find_if(parts_.begin(), parts_.end(), [](const RunPart& part) { return part.is_wrong; });
  if (wrong == parts_.end()) return;
  const auto [guess, first, last] =
      GuessAround(guesser_, letters, parts_, static_cast<std::size_t>(wrong - parts_.begin()));
  SetRunHint(guess, {parts_[first].begin, parts_[last].end}, problem);
}

// Writes a guess about a piece of the word, which is the whole problem, with the tone of its mark.
void Hints::SetRunHint(const Guess& guess, Piece piece, Problem& problem) const {
  char digit = kNoTone;
  for (std::size_t i = piece.begin; i < piece.end; ++i) {
    if ((*word_)[i].tone != kNoTone) digit = (*word_)[i].tone;
  }
  Range range = word_->RangeOf(piece);
  range.offset += offset_;
  SetHint(guesser_, guess, range, digit, problem);
}

std::size_t Hints::CountMarks(Piece piece) const {
  const auto begin = word_->letters.begin();
  return static_cast<std::size_t>(
      std::count_if(begin + static_cast<std::ptrdiff_t>(piece.begin),
                    begin + static_cast<std::ptrdiff_t>(piece.end),
                    [](const Letter& letter) { return letter.tone != kNoTone; }));
}

// Finds the syllables of a run that its marks forbid: one with a mark more, or in a wrong place,
// and two of which the second lacks the apostrophe.
void Hints::FindWrongMarks(std::string_view letters) {
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    RunPart& part = parts_[i];
    ToneMarks marks;
    bool has_circumflex = false;  // which is a syllable by itself
    for (std::size_t at = part.begin; at < part.end; ++at) {
      marks.Add((*word_)[at]);
      has_circumflex = has_circumflex || (*word_)[at].letter == kCircumflexE;
    }
    part.mark_count = marks.count();
    part.has_wrong_mark =
        !marks.AreOfOneSyllable() || (has_circumflex && part.end - part.begin > 1);
    part.is_wrong = part.is_wrong || part.has_wrong_mark;
    const std::string_view spelling = letters.substr(part.begin, part.end - part.begin);
    if (i == 0 || part.row == SyllableTree::kNoRow) continue;
    const bool is_clear =
        MayLackApostrophe(Pack(spelling), part.mark_count > 0, parts_[i - 1].mark_count > 0);
    if (is_clear) continue;
    part.is_wrong = true;
    parts_[i - 1].is_wrong = true;
  }
}

}  // namespace qeo::notation::internal
