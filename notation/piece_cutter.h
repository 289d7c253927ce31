#ifndef NOTATION_PIECE_CUTTER_H_
#define NOTATION_PIECE_CUTTER_H_

// Cuts a piece without a digit into syllables. The marks on its letters, and the apostrophes that
// it lacks, say where it can be cut; cut_cost.h says what is best. Not installed.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "notation/cut_cost.h"
#include "notation/readings.h"
#include "notation/syllable_set.h"
#include "notation/syllable_tree.h"
#include "notation/word.h"

namespace qeo::notation::internal {

class PieceCutter {
 public:
  /// `readings` has to stay while this is used.
  PieceCutter(int language, const Readings& readings)
      : numbers_(CutNumbersOf(language)), tree_(SyllableTree::Of(language)), readings_(readings) {}

  /// The syllables of the best cut: the fewest letters left out, then the fewest syllables, where a
  /// fused r counts as one, then the fewest of them rewritten, then the least cost, then the
  /// longest syllables first. In a text with tone marks the cut leaves out no letter (it is empty
  /// when every cut leaves out one), an apostrophe may be missing only where the letters have one
  /// meaning, and nasals are syllables like others. Valid until the next call.
  const std::vector<Piece>& Cut(const Word& word, Piece piece, bool text_has_marks);

 private:
  static constexpr std::size_t kUncut = std::numeric_limits<std::size_t>::max();

  // How good a cut is; the least is best.
  struct Rank {
    std::size_t left_out = 0;  // letters, or kUncut
    std::size_t syllables = 0;
    std::size_t rewritten = 0;
    CutCost cost;

    bool operator<(const Rank& other) const;
  };

  // The rank of the best cut after a syllable without a tone mark, and after one with a mark.
  using Ranks = std::array<Rank, 2>;

  // The ranks at as many letters as a syllable reaches, by their index; the first letter's is [0].
  using RankRing = std::array<Ranks, kMaxPackedLength + 1>;

  bool Cover(const Word& word, Piece piece);
  Ranks WithoutLetter(Ranks ranks) const;
  Reading ReadingOf(PackedSpelling letters, std::size_t count, std::size_t node) const;
  void TrySyllable(std::size_t begin, std::size_t length, const Reading& reading,
                   PackedSpelling letters, std::size_t marks, RankRing& ranks);
  bool StandsAlone(PackedSpelling letters) const;

  const CutNumbers numbers_;
  const SyllableTree& tree_;
  const Readings& readings_;
  bool text_has_marks_ = false;
  // For each letter of a piece the length of the syllable that begins there in the best cut, after
  // a syllable without a tone mark and after one with a mark. 0 where the letter is left out.
  std::vector<std::array<std::uint8_t, 2>> lengths_;
  std::vector<Piece> syllables_;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_PIECE_CUTTER_H_
