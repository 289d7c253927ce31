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
  static constexpr std::size_t kNowhere = 0;  ///< no syllable begins so, or goes on so
  static constexpr std::size_t kRoot = 1;
  static constexpr std::size_t kEndings = 2;  ///< the root of the same tree, read from the end
  static constexpr int kNoRow = -1;

  /// The tree of a language, made at the first call; without a branch when it has no syllables.
  /// Mandarin "E" is not in it: the library reads "e".
  static const SyllableTree& Of(int language);

  /// The letters of the longest syllable.
  std::size_t longest() const { return longest_; }

  /// The node for the letters of `node`, which may be kNowhere, and one more letter or any other
  /// byte.
  std::size_t Next(std::size_t node, char letter) const {
    return ascii::IsSmall(letter) ? nodes_[node].next[Branch(letter)] : kNowhere;
  }

  /// A letter by its place in the alphabet.
  static constexpr std::size_t Branch(char letter) {
    return static_cast<std::size_t>(letter - 'a');
  }
  static constexpr std::size_t kLetters = 26;

  /// The node that a letter leads to, or kNowhere.
  std::size_t Child(std::size_t node, std::size_t branch) const {
    return nodes_[node].next[branch];
  }

  /// Whether a letter leads on from a node.
  bool Has(std::size_t node, std::size_t branch) const {
    return (nodes_[node].branches >> branch & 1U) != 0;
  }

  /// The letters that lead on from a node, a bit each by its place.
  std::uint32_t Letters(std::size_t node) const { return nodes_[node].branches; }

  /// The syllable whose letters lead to a node, of row kNoRow when they are none.
  const Syllable& At(std::size_t node) const { return nodes_[node].syllable; }

  /// A syllable by its letters, of which the first may be a capital; of row kNoRow when they are
  /// none.
  const Syllable& Find(std::string_view syllable) const {
    std::size_t node = Next(kRoot, ascii::ToSmall(syllable[0]));
    for (std::size_t i = 1; i < syllable.size(); ++i) node = Next(node, syllable[i]);
    return At(node);
  }

  /// What a syllable costs that takes an apostrophe and has none.
  const CutCost& penalty() const { return penalty_; }

 private:
  static constexpr std::size_t kMaxNodes = 1536;

  static constexpr std::size_t kCacheLine = 64;  // which a node fills nearly

  struct alignas(kCacheLine) Node {
    std::array<std::uint16_t, kLetters> next = {};  // by letter
    Syllable syllable;
    std::uint32_t branches = 0;  // a bit for each letter that leads on
  };

  explicit SyllableTree(int language);
  void Add(std::string_view spelling, const Syllable& syllable);
  std::size_t Grow(std::size_t node, char letter);

  BoundedVector<Node, kMaxNodes> nodes_;
  std::size_t longest_ = 0;
  CutCost penalty_;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_SYLLABLE_TREE_H_
