// Grows the tree, syllable by syllable.

#include "notation/syllable_tree.h"

#include <algorithm>
#include <string>
#include <vector>

#include "notation/apostrophe.h"
#include "notation/syllable_set.h"
#include "notation/syllable_table.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {

const SyllableTree& SyllableTree::Of(int language) {
  static const SyllableTree mandarin(sp::LANGUAGE_MANDARIN);
  static const SyllableTree cantonese(sp::LANGUAGE_CANTONESE);
  static const SyllableTree american_english(sp::LANGUAGE_AMERICAN_ENGLISH);
  if (language == sp::LANGUAGE_CANTONESE) return cantonese;
  return language == sp::LANGUAGE_AMERICAN_ENGLISH ? american_english : mandarin;
}

SyllableTree::SyllableTree(int language) {
  for (std::size_t node = kNowhere; node <= kEndings; ++node) nodes_.push_back({});
  const CutNumbers numbers = CutNumbersOf(language);
  penalty_ = numbers.penalty;
  const std::vector<std::string> spellings = SyllableSpellings(language);
  for (std::size_t row = 0; row < spellings.size(); ++row) {
    const PackedSpelling packed = Pack(spellings[row]);
    Add(spellings[row], {static_cast<std::int16_t>(row), numbers.rarities[row],
                         TakesApostrophe(packed), numbers.nasals_stand_alone && IsNasal(packed)});
  }
}

void SyllableTree::Add(std::string_view spelling, const Syllable& syllable) {
  if (!std::all_of(spelling.begin(), spelling.end(), ascii::IsSmall)) return;  // "E": read as "e"
  std::size_t node = kRoot;
  for (const char letter : spelling) node = Grow(node, letter);
  nodes_[node].syllable = syllable;
  std::size_t ending = kEndings;
  for (std::size_t i = spelling.size(); i > 0; --i) ending = Grow(ending, spelling[i - 1]);
  longest_ = std::max(longest_, spelling.size());
}

// The node that a letter of a syllable leads to.
std::size_t SyllableTree::Grow(std::size_t node, char letter) {
  if (Next(node, letter) == kNowhere) {
    nodes_[node].next[Branch(letter)] = static_cast<std::uint16_t>(nodes_.size());
    nodes_[node].branches |= std::uint32_t{1} << Branch(letter);
    nodes_.push_back({});
  }
  return Next(node, letter);
}

}  // namespace qeo::notation::internal
