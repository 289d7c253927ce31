#ifndef NOTATION_HINTS_H_
#define NOTATION_HINTS_H_

// Adds to the problems of a Chinese text what may have been meant. Not installed.

#include <cstddef>
#include <string_view>
#include <vector>

#include "notation/records.h"
#include "notation/run_parts.h"
#include "notation/suggestion.h"
#include "notation/word.h"

namespace qeo::notation::internal {

/// Writes a guess into a problem. It is about the bytes `piece` of the text, whose tone is `digit`,
/// or kNoTone.
void SetHint(const Guesser& guesser, const Guess& guess, Range piece, char digit, Problem& problem);

/// Adds the hints to the problems that the normaliser finds in a text.
class Hints {
 public:
  /// `guesser` and `text` have to stay while this is used; `rules` are those that it was read by.
  Hints(const Guesser& guesser, std::string_view text, RuleSet rules)
      : guesser_(guesser), text_(text), rules_(rules) {}

  /// Adds its hint to a problem, if it has one.
  void Add(Problem& problem);

  /// Adds its hint to a problem that is a piece of a word, without a digit.
  void AddRun(const Word& word, Piece piece, Problem& problem);

 private:
  void AddToRun(const Word& word, std::size_t offset, std::size_t size, Problem& problem);
  void SetRunHint(const Guess& guess, Piece piece, Problem& problem) const;
  std::size_t CountMarks(Piece piece) const;
  void FindWrongMarks(std::string_view letters);

  const Guesser& guesser_;
  std::string_view text_;
  RuleSet rules_;
  Word read_;                   // that of the problem, read again
  const Word* word_ = nullptr;  // the same, or as it was read the first time
  std::size_t offset_ = 0;      // in the text of the place from which it was read
  std::vector<RunPart> parts_;  // of the word
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_HINTS_H_
