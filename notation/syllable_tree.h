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

  /// The syllable whose letters lead to a node, of row kNoRow when they are none.
  const Syllable& At(std::size_t node) const { return nodes_[node].syllable; }

  /// A syllable by its letters, of which the first may be a capital.
  const Syllable& Find(std::string_view syllable) const {
    std::size_t node = Next(kRoot, ascii::ToSmall(syllable[0]));
    for (const char letter : syllable.substr(1)) node = Next(node, letter);
    return At(node);
  }

  /// What a syllable costs that takes an apostrophe and has none.
  const CutCost& penalty() const { return penalty_; }

 private:
  static constexpr std::size_t kMaxNodes = 1024;

  struct Node {
    std::array<std::uint16_t, 26> next = {};  // by letter; kRoot where there is no branch
    Syllable syllable;
  };

  static std::size_t Branch(char letter) { return static_cast<std::size_t>(letter - 'a'); }

  explicit SyllableTree(int language);
  void Add(std::string_view spelling, const Syllable& syllable);

  BoundedVector<Node, kMaxNodes> nodes_;
  std::size_t longest_ = 0;
  CutCost penalty_;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_SYLLABLE_TREE_H_
