#ifndef NOTATION_RUN_PARTS_H_
#define NOTATION_RUN_PARTS_H_

// A run of letters as the parts that a cut makes of it, and which of them a hint is about: letters
// that a cut leaves out are seldom what is wrong ("yai" is cut ya and i, and meant is "yao"). Not
// installed.

#include <cstddef>
#include <string_view>
#include <vector>

#include "notation/cutting.h"
#include "notation/suggestion.h"

namespace qeo::notation::internal {

/// Letters of a run: a syllable, or what the cut leaves out between two.
struct RunPart {
  std::size_t begin = 0;
  std::size_t end = 0;
  int row = SyllableTree::kNoRow;  // that when it is left out
  bool is_wrong = false;           // left out, or a syllable that the marks of the run forbid
  bool is_joined = false;          // a syllable, and letters left out after it
  bool has_wrong_mark = false;     // on the wrong letter, or one that no syllable has
  std::size_t mark_count = 0;
};

/// Fills `parts` with those of a run of so many letters.
void SplitRun(std::size_t letter_count, const std::vector<CutSyllable>& cut,
              std::vector<RunPart>& parts);

/// Makes a syllable and letters that the cut leaves out after it one part that is wrong when those
/// begin with a nasal ("nun" is not nu and n), in a language whose nasals stand alone.
void JoinNasals(std::string_view letters, std::vector<RunPart>& parts);

/// A guess about some neighbouring parts, `first` to `last`.
struct PartsGuess {
  Guess guess;
  std::size_t first = 0;
  std::size_t last = 0;
};

/// The best guess about one to three parts that are together one syllable with at most one mark,
/// and of which parts[wrong] is one: the guess with the most wrong letters, then the one that is
/// likeliest with the syllables that it leaves as they are. An alias for parts[wrong] comes first,
/// unless that is one letter among others.
PartsGuess GuessAround(const Guesser& guesser, std::string_view letters,
                       const std::vector<RunPart>& parts, std::size_t wrong);

}  // namespace qeo::notation::internal

#endif  // NOTATION_RUN_PARTS_H_
