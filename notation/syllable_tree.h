#ifndef NOTATION_SYLLABLE_TREE_H_
#define NOTATION_SYLLABLE_TREE_H_

// The syllables of a language as a tree, one letter a branch. A node has a place for every letter,
// not only for those that it goes on with: a step is then one load, and cuts and suggestions
// consist of steps. Not installed.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "notation/bounded_vector.h"
#include "notation/cut_cost.h"
#include "phoneme/ascii.h"

namespace qeo::notation::internal {

/// What a cut has to know about a syllable.
struct Syllable {
  std::int16_t row = -1;
  std::uint8_t rarity = 0;        ///< in sixteenths of a bit
  bool takes_apostrophe = false;  ///< within a word
  bool stands_alone = false;      ///< and is never part of a longer word
};

class SyllableTree {
 public:
  static constexpr std::size_t kRoot = 0;
  static constexpr int kNoRow = -1;

  /// The tree of a language, made at the first call; without a branch when it has no syllables.
  /// Mandarin "E" is not in it: the library reads "e".
  static const SyllableTree& Of(int language);

  /// The letters of the longest syllable.
  std::size_t longest() const { return longest_; }

  /// The node of what a letter, or any other byte, makes of the letters of a node; kRoot where no
  /// syllable goes on so.
  std::size_t Next(std::size_t node, char letter) const {
    return ascii::IsSmall(letter) ? nodes_[node].next[Branch(letter)] : kRoot;
  }

  /// A letter by its place in the alphabet. kEnd stands for the end of a syllable.
  static constexpr std::size_t Branch(char letter) {
    return static_cast<std::size_t>(letter - 'a');
  }
  static constexpr std::size_t kEnd = 26;

  /// Whether a letter leads on from a node; with kEnd, whether the node is a syllable.
  bool Has(std::size_t node, std::size_t branch) const {
    return (nodes_[node].branches >> branch & 1U) != 0;
  }

  /// The node that a letter leads to, which Has.
  std::size_t Child(std::size_t node, std::size_t branch) const {
    return nodes_[node].next[branch];
  }

  /// The letters, a bit each by its place, that lead on from a node to one from which `branch`, a
  /// letter or kEnd, leads on in turn. Of the root, which has many letters, they are known.
  std::uint32_t BranchesBefore(std::size_t node, std::size_t branch) const {
    if (node == kRoot) return first_before_[branch];
    std::uint32_t before = nodes_[node].branches & ~(std::uint32_t{1} << kEnd);
    for (std::uint32_t left = before; left != 0; left &= left - 1) {
      const auto letter = static_cast<std::size_t>(__builtin_ctz(left));
      if (!Has(Child(node, letter), branch)) before &= ~(std::uint32_t{1} << letter);
    }
    return before;
  }

  /// The syllable whose letters lead to a node, of row kNoRow when they are none.
  const Syllable& At(std::size_t node) const { return nodes_[node].syllable; }

  /// A syllable by its letters, of which the first may be a capital; of row kNoRow when they are
  /// none.
  const Syllable& Find(std::string_view syllable) const {
    std::size_t node = Next(kRoot, ascii::ToSmall(syllable[0]));
    for (std::size_t i = 1; i < syllable.size() && node != kRoot; ++i) {
      node = Next(node, syllable[i]);
    }
    return At(node);
  }

  /// What a syllable costs that takes an apostrophe and has none.
  const CutCost& penalty() const { return penalty_; }

 private:
  static constexpr std::size_t kMaxNodes = 1024;

  struct Node {
    std::array<std::uint16_t, 26> next = {};  // by letter; kRoot where there is no branch
    Syllable syllable;
    std::uint32_t branches = 0;  // bits of the letters that `next` has, and of kEnd
  };

  explicit SyllableTree(int language);
  void Add(std::string_view spelling, const Syllable& syllable);

  BoundedVector<Node, kMaxNodes> nodes_;
  std::array<std::uint32_t, kEnd + 1> first_before_ = {};  // BranchesBefore of the root
  std::size_t longest_ = 0;
  CutCost penalty_;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_SYLLABLE_TREE_H_
