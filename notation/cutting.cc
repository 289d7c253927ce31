// Cuts a text by looking at it from the end: what is known from one place on follows from the
// syllables that begin there and from what is known after each of them.

#include "notation/cutting.h"

#include <algorithm>
#include <array>

#include "notation/cut_cost.h"
#include "notation/syllable_set.h"
#include "notation/syllable_table.h"
#include "notation/syllable_tree.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using internal::CutCost;
using internal::kMaxSyllableLength;
using internal::Syllable;
using internal::SyllableTree;

// A set of lengths of syllables: bit n is set for n letters.
using Lengths = std::uint16_t;
static_assert(kMaxSyllableLength < std::numeric_limits<Lengths>::digits, "a length has no bit");

constexpr bool Has(Lengths lengths, std::size_t length) {
  return (unsigned{lengths} >> length & 1U) != 0;
}

// Calls `found` with each syllable at the front of a text and its length, the shortest first, and
// returns their lengths.
template <typename Found>
Lengths FindAt(const SyllableTree& tree, std::string_view text, Found found) {
  unsigned lengths = 0;
  std::size_t node = SyllableTree::kRoot;
  for (std::size_t i = 0; i < text.size(); ++i) {
    node = tree.Next(node, i == 0 ? ascii::ToSmall(text[i]) : text[i]);
    if (node == SyllableTree::kNowhere) break;
    const Syllable& syllable = tree.At(node);
    if (syllable.row == SyllableTree::kNoRow) continue;
    lengths |= 1U << (i + 1);
    found(i + 1, syllable);
  }
  return static_cast<Lengths>(lengths);
}

// How good a cut is, the least first. Of equal ones the first in which a syllable is longer is
// better.
struct Rank {
  std::size_t left_out = 0;  // letters
  std::size_t syllables = 0;
  CutCost cost;

  bool operator<(const Rank& other) const {
    if (left_out != other.left_out) return left_out < other.left_out;
    if (syllables != other.syllables) return syllables < other.syllables;
    return cost < other.cost;
  }
};

// One text, and what is asked about it.
class Cutter {
 public:
  Cutter(const SyllableTree& tree, std::string_view text)
      : tree_(tree), text_(text), places_(text.size()) {
    RestAt(text.size()).count = 1;
    for (std::size_t begin = text.size(); begin > 0; --begin) LookAt(begin - 1);
  }

  bool covers() const { return rests_[0].rank.left_out == 0; }
  std::uint64_t count() const { return rests_[0].count; }

  std::vector<CutSyllable> Best() const {
    std::vector<CutSyllable> cut;
    cut.reserve(rests_[0].rank.syllables);
    for (std::size_t begin = 0; begin < text_.size();) {
      const std::size_t length = places_[begin].first;
      if (length != 0) cut.push_back(SyllableAt(begin, length));
      begin += std::max(length, kLetterLeftOut);
    }
    return cut;
  }

  std::vector<std::vector<CutSyllable>> First(std::size_t max_cuts) const;

  std::vector<CutSyllable> Forward() const;
  std::vector<CutSyllable> Backward() const;
  std::vector<CutSyllable> WholeWords() const;

  bool DirectionsDiffer() const {
    const auto same = [](const CutSyllable& a, const CutSyllable& b) { return a.row == b.row; };
    if (!std::all_of(text_.begin(), text_.end(), ascii::IsLetter)) return false;
    const std::vector<CutSyllable> forward = Forward();
    const std::vector<CutSyllable> backward = Backward();
    return !std::equal(forward.begin(), forward.end(), backward.begin(), backward.end(), same);
  }

 private:
  static constexpr std::size_t kLetterLeftOut = 1;

  // A place where a syllable may begin.
  struct Place {
    Lengths lengths = 0;     // of the syllables here, whether they fit or not
    std::uint8_t first = 0;  // of those the best cut's, or 0 when it leaves the letter out
  };

  // What is known from one place of the text on.
  struct Rest {
    std::uint64_t count = 0;  // cuts that cover all of it
    Rank rank;                // of the best cut
  };

  // A cut that covers all from one place on: its first syllable, and which of the cuts listed
  // after that goes on.
  struct Branch {
    Rank rank;
    std::size_t length = 0;
    std::size_t next = 0;
  };
  using Branches = std::vector<Branch>;

  // Only as many rests are kept as a syllable can reach; the first place's is rests_[0].
  Rest& RestAt(std::size_t place) { return rests_[place % rests_.size()]; }

  void LookAt(std::size_t begin);
  void TrySyllable(std::size_t begin, std::size_t length, const Syllable& syllable, Rest& best);
  Branches Merge(const std::vector<Branches>& branches, std::size_t begin,
                 std::size_t max_cuts) const;

  // A word begins with the text, after a byte that is not a letter, and with a capital.
  bool BeginsWord(std::size_t place) const {
    return place == 0 || ascii::IsCapital(text_[place]) || !ascii::IsLetter(text_[place - 1]);
  }
  bool EndsWord(std::size_t end) const {
    return end == text_.size() || !ascii::IsSmall(text_[end]);
  }

  // Whether a syllable of the language is one in its place of the text.
  bool Fits(std::size_t begin, std::size_t length, const Syllable& syllable) const {
    return !syllable.stands_alone || (BeginsWord(begin) && EndsWord(begin + length));
  }

  // Of a cut that begins with a syllable, and of which the rest is known.
  Rank WithSyllable(std::size_t begin, const Syllable& syllable, Rank rank) const {
    ++rank.syllables;
    rank.cost.rarity += syllable.rarity;
    if (syllable.takes_apostrophe && !BeginsWord(begin)) rank.cost += tree_.penalty();
    return rank;
  }

  std::size_t LongestAt(std::size_t begin) const {
    std::size_t length = tree_.longest();
    while (length > 0 && !Has(places_[begin].lengths, length)) --length;
    return length;
  }

  std::size_t LongestBefore(std::size_t end) const {
    std::size_t length = std::min(tree_.longest(), end);
    while (length > 0 && !Has(places_[end - length].lengths, length)) --length;
    return length;
  }

  const Syllable& Find(std::size_t begin, std::size_t length) const {
    return tree_.Find(text_.substr(begin, length));
  }
  CutSyllable SyllableAt(std::size_t begin, std::size_t length) const {
    return {{begin, length}, Find(begin, length).row};
  }

  const SyllableTree& tree_;
  std::string_view text_;
  std::vector<Place> places_;
  std::array<Rest, internal::kMaxPackedLength> rests_ = {};
};

void Cutter::LookAt(std::size_t begin) {
  Rest best = {0, RestAt(begin + kLetterLeftOut).rank};
  ++best.rank.left_out;
  places_[begin].lengths = FindAt(
      tree_, text_.substr(begin),
      [&](auto length, const Syllable& syllable) { TrySyllable(begin, length, syllable, best); });
  RestAt(begin) = best;
}

// Looks whether the best cut from `begin` on begins with a syllable. It is longer than those tried
// before.
void Cutter::TrySyllable(std::size_t begin, std::size_t length, const Syllable& syllable,
                         Rest& best) {
  if (!Fits(begin, length, syllable)) return;
  const Rest& rest = RestAt(begin + length);
  best.count += std::min(rest.count, kUncountedCuts - best.count);
  const Rank rank = WithSyllable(begin, syllable, rest.rank);
  if (best.rank < rank) return;
  best.rank = rank;
  places_[begin].first = static_cast<std::uint8_t>(length);
}

std::vector<std::vector<CutSyllable>> Cutter::First(std::size_t max_cuts) const {
  std::vector<std::vector<CutSyllable>> cuts;
  if (max_cuts == 0) return cuts;
  std::vector<Branches> branches(text_.size() + 1);
  branches[text_.size()].emplace_back();
  for (std::size_t begin = text_.size(); begin > 0; --begin) {
    branches[begin - 1] = Merge(branches, begin - 1, max_cuts);
  }
  for (const Branch& first : branches[0]) {
    std::vector<CutSyllable>& cut = cuts.emplace_back();
    cut.reserve(first.rank.syllables);
    const Branch* branch = &first;
    for (std::size_t begin = 0; begin < text_.size();) {
      cut.push_back(SyllableAt(begin, branch->length));
      begin += branch->length;
      branch = &branches[begin][branch->next];
    }
  }
  return cuts;
}

// The cuts after each syllable that begins here are in order, so theirs are merged.
Cutter::Branches Cutter::Merge(const std::vector<Branches>& branches, std::size_t begin,
                               std::size_t max_cuts) const {
  Branches merged;
  std::array<std::size_t, kMaxSyllableLength + 1> next = {};  // by length
  while (merged.size() < max_cuts) {
    Branch best;
    for (std::size_t length = LongestAt(begin); length > 0; --length) {
      if (!Has(places_[begin].lengths, length)) continue;
      const Syllable& syllable = Find(begin, length);
      const Branches& after = branches[begin + length];
      if (next[length] == after.size() || !Fits(begin, length, syllable)) continue;
      const Rank rank = WithSyllable(begin, syllable, after[next[length]].rank);
      if (best.length == 0 || rank < best.rank) best = {rank, length, next[length]};
    }
    if (best.length == 0) break;
    ++next[best.length];
    merged.push_back(best);
  }
  return merged;
}

// The longest matches from the front. What follows the last one is dropped up to the next capital.
std::vector<CutSyllable> Cutter::Forward() const {
  std::vector<CutSyllable> cut;
  for (std::size_t begin = 0; begin < text_.size();) {
    const std::size_t length = LongestAt(begin);
    if (length != 0) cut.push_back(SyllableAt(begin, length));
    begin += std::max(length, kLetterLeftOut);
    while (length == 0 && begin < text_.size() && !ascii::IsCapital(text_[begin])) ++begin;
  }
  return cut;
}

// The longest matches from the end, in text order. What is before the last one is dropped
// down to the capital that opened it.
std::vector<CutSyllable> Cutter::Backward() const {
  std::vector<CutSyllable> cut;
  for (std::size_t end = text_.size(); end > 0;) {
    const std::size_t length = LongestBefore(end);
    if (length != 0) cut.push_back(SyllableAt(end - length, length));
    end -= std::max(length, kLetterLeftOut);
    while (length == 0 && end > 0 && !ascii::IsCapital(text_[end])) --end;
  }
  std::reverse(cut.begin(), cut.end());
  return cut;
}

// The words that are syllables.
std::vector<CutSyllable> Cutter::WholeWords() const {
  std::vector<CutSyllable> cut;
  for (std::size_t begin = 0; begin < text_.size();) {
    std::size_t end = begin + 1;
    while (ascii::IsLetter(text_[begin]) && !EndsWord(end)) ++end;
    const std::size_t length = end - begin;
    if (length <= tree_.longest() && Has(places_[begin].lengths, length)) {
      cut.push_back(SyllableAt(begin, length));
    }
    begin = end;
  }
  return cut;
}

}  // namespace

Cut CutWhole(int language, std::string_view letters, std::size_t max_cuts) {
  const Cutter cutter(SyllableTree::Of(language), letters);
  Cut cut;
  cut.covers = cutter.covers();
  cut.syllables = cutter.Best();
  cut.count = cutter.count();
  cut.cuts = cutter.First(max_cuts);
  cut.directions_differ = cutter.DirectionsDiffer();
  return cut;
}

std::vector<CutSyllable> CutLetters(int language, std::string_view letters, Cutting cutting) {
  const Cutter cutter(SyllableTree::Of(language), letters);
  switch (cutting) {
    case Cutting::kWhole:
      return cutter.Best();
    case Cutting::kForward:
      return cutter.Forward();
    case Cutting::kBackward:
      return cutter.Backward();
    case Cutting::kNone:
      return cutter.WholeWords();
  }
  return {};
}

}  // namespace qeo::notation
