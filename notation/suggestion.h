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

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "notation/bounded_vector.h"
#include "notation/records.h"
#include "notation/syllable_set.h"
#include "notation/syllable_tree.h"
#include "phoneme/records.h"

namespace qeo::notation::internal {

/// A hint about letters, and what it costs to believe it.
struct Guess {
  Hint hint = Hint::kNone;
  int row = SyllableTree::kNoRow;      // kSpelling, kAlias: of the syllable
  const ShortText* initial = nullptr;  // kGap: as they are spelled, in static storage
  const ShortText* final = nullptr;
  int cost = std::numeric_limits<int>::max();
};

/// The nodes that letters, small ones, lead to in a tree one after the other, until they lead
/// nowhere.
class Walk {
 public:
  /// Along letters from the first to the last.
  static Walk Forward(const SyllableTree& tree, std::string_view letters) {
    return Walk(tree, SyllableTree::kRoot, letters, 0, 1);
  }

  /// Along letters from the last to the first, in the tree of endings.
  static Walk Backward(const SyllableTree& tree, std::string_view letters) {
    return Walk(tree, SyllableTree::kEndings, letters, letters.size() - 1, kBack);
  }

  Walk() = default;

  /// How many letters lead somewhere.
  std::size_t length() const { return length_; }

  /// The node after as many letters, at most two more than length(). Those beyond are not set.
  std::size_t operator[](std::size_t letters) const { return nodes_[letters]; }

 private:
  static constexpr std::size_t kBack = std::numeric_limits<std::size_t>::max();  // minus one

  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the nodes are set as far as it goes
  Walk(const SyllableTree& tree, std::size_t node, std::string_view letters, std::size_t at,
       std::size_t step) {
    std::size_t length = 0;
    nodes_[0] = static_cast<std::uint16_t>(node);
    for (; length < letters.size(); ++length, at += step) {
      node = tree.Child(node, SyllableTree::Branch(letters[at]));
      nodes_[length + 1] = static_cast<std::uint16_t>(node);
      if (node == SyllableTree::kNowhere) break;
    }
    nodes_[length + 2] = SyllableTree::kNowhere;
    length_ = length;
  }

  std::array<std::uint16_t, kMaxPackedLength + 2> nodes_;
  std::size_t length_;
};

/// Letters, small ones, that may be a syllable, and the walks from both of their ends. Pieces of a
/// text that begin or end together share walks, which then go on beyond the shorter one.
class WalkedPiece {
 public:
  WalkedPiece(std::string_view letters, const Walk& forward, const Walk& backward)
      : letters_(letters),
        forward_(forward),
        backward_(backward),
        begun_(std::min(forward.length(), letters.size())),
        ending_(letters.size() - std::min(backward.length(), letters.size())) {}

  std::string_view letters() const { return letters_; }
  std::size_t size() const { return letters_.size(); }

  /// As many of the first letters begin a syllable.
  std::size_t begun() const { return begun_; }
  /// The letters from here on end a syllable.
  std::size_t ending() const { return ending_; }

  /// The node of the letters before `at`, at most begun().
  std::size_t Beginning(std::size_t at) const { return forward_[at]; }
  /// The node of the letters from `at` on, at least ending() - 2.
  std::size_t Ending(std::size_t at) const { return backward_[letters_.size() - at]; }
  std::size_t BranchAt(std::size_t at) const { return SyllableTree::Branch(letters_[at]); }

 private:
  std::string_view letters_;
  const Walk& forward_;
  const Walk& backward_;
  std::size_t begun_;
  std::size_t ending_;
};

class GuessTables;

/// Guesses what pieces of a Mandarin or Cantonese text may be meant for.
class Guesser {
 public:
  static constexpr int kNoLimit = std::numeric_limits<int>::max();

  /// For a language and its phone set. Makes the tables that are needed at the first call.
  Guesser(int language, const sp::SpMapping& set);

  int language() const { return language_; }
  const SyllableTree& tree() const { return tree_; }

  /// The letters of the longest syllable with a slip. Longer pieces are not guessed about.
  std::size_t longest() const { return longest_; }

  /// A syllable as the library writes it.
  const char* SpellingOf(int row) const { return set_.pinyin_list[row].pinyin; }

  /// Whether one letter may be meant for anything: for what it is an alias of.
  bool has_aliases() const { return has_aliases_; }

  /// How rare a syllable is, in sixteenths of a bit; 0 of none.
  int RarityOf(int row) const { return row == SyllableTree::kNoRow ? 0 : rarities_[row]; }

  /// What letters, at most longest(), may be meant for: what the shipped alias table has, else a
  /// gap of the table, else what is one slip away. The last is not asked of one or two letters,
  /// which are near to too much. None for letters that are a syllable, unless a mark on them is
  /// wrong: two or more are then meant for that. None when it costs `limit` or more.
  Guess Of(const WalkedPiece& piece, bool is_mark_wrong, int limit) const;

  /// The same of any number of letters, at any cost.
  Guess Of(std::string_view letters, bool is_mark_wrong) const;

 private:
  int language_;
  const sp::SpMapping& set_;
  const GuessTables& tables_;
  const SyllableTree& tree_;
  const std::uint8_t* rarities_;
  std::size_t longest_;
  bool has_aliases_;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_SUGGESTION_H_
