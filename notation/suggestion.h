#ifndef NOTATION_SUGGESTION_H_
#define NOTATION_SUGGESTION_H_

// What letters that are not a syllable of a Chinese language may be meant for. Not installed.
//
// A slip of the keyboard and a syllable are weighed together: the syllable is suggested for which
// its frequency times the likeliness of the slip is the greatest. Both are kept as information, in
// sixteenths of a bit, so that the product is a sum and the greatest is the least. The slips:
//
// - A letter is dropped, doubled or transposed with the next one: each is likely, and costs
// nothing.
// - A key beside the right one is hit: as likely, but it is one of the two to six keys beside that
//   key, and costs the information of the choice.
// - Any other key is hit, in the place of a letter or beside it: rare, and costs six bits. Another
//   letter of 26 at one of four places is a choice of about as much.

#include <cstddef>
#include <limits>
#include <string_view>

#include "notation/records.h"
#include "notation/syllable_tree.h"

namespace qeo::notation::internal {

/// A hint about letters, and what it costs to believe it.
struct Guess {
  Hint hint = Hint::kNone;
  int row = SyllableTree::kNoRow;  // kSpelling, kAlias: of the syllable
  std::string_view initial;        // kGap: as they are spelled, in static storage
  std::string_view final;
  int cost = std::numeric_limits<int>::max();
};

/// Makes the tables that guesses about a language need, unless they are made.
void MakeGuessTables(int language);

/// What `letters`, small ones, may be meant for in Mandarin or Cantonese: what the shipped alias
/// table has, else a gap of the table, else what is one slip away. The last is not asked of one or
/// two letters, which are near to too much. None for letters that are a syllable. A guess that
/// costs `limit` or more is not searched for to the end: what is returned then is none, or costs
/// that much.
Guess GuessSyllable(int language, std::string_view letters,
                    int limit = std::numeric_limits<int>::max());

/// The same of letters with a wrong mark: two or more that are a syllable are meant for that.
Guess GuessMarked(int language, std::string_view letters,
                  int limit = std::numeric_limits<int>::max());

}  // namespace qeo::notation::internal

#endif  // NOTATION_SUGGESTION_H_
