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

 private:
  void AddToRun(std::string_view letters, Problem& problem);
  void SetRunHint(const Guess& guess, Piece piece, Problem& problem) const;
  std::size_t CountMarks(Piece piece) const;
  void FindWrongMarks(std::string_view letters);

  const Guesser& guesser_;
  std::string_view text_;
  RuleSet rules_;
  Word word_;                   // that of the problem
  std::vector<RunPart> parts_;  // of the word
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_HINTS_H_
