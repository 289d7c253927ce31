// Cuts a text by looking at it from the end: what is known from one place on follows from the
// syllables that begin there and from what is known behind each of them.

#include "notation/cutting.h"

#include <algorithm>
#include <array>
#include <utility>

#include "notation/syllable_table.h"
#include "notation/syllable_tree.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using internal::kMaxSyllableLength;
using internal::SyllableTree;

// Lengths of syllables: bit n stands for n letters.
using Lengths = std::uint16_t;
static_assert(kMaxSyllableLength < std::numeric_limits<Lengths>::digits, "a length has no bit");

constexpr bool Has(Lengths lengths, std::size_t length) {
  return (unsigned{lengths} >> length & 1U) != 0;
}

// The lengths of the syllables at the front of a text.
Lengths LengthsAt(const SyllableTree& tree, std::string_view text) {
  unsigned lengths = 0;
  std::size_t node = SyllableTree::kRoot;
  for (std::size_t i = 0; i < text.size(); ++i) {
    node = tree.Next(node, i == 0 ? ascii::ToSmall(text[i]) : text[i]);
    if (node == SyllableTree::kRoot) break;
    if (tree.RowAt(node) != SyllableTree::kNoRow) lengths |= 1U << (i + 1);
  }
  return static_cast<Lengths>(lengths);
}

// One text, and what is asked about it.
class Cutter {
 public:
  Cutter(const SyllableTree& tree, std::string_view text)
      : tree_(tree), text_(text), lengths_(text.size()), first_(text.size()) {
    RestAt(text.size()).count = 1;
    for (std::size_t begin = text.size(); begin > 0; --begin) LookAt(begin - 1);
  }

  bool covers() const { return rests_[0].left_out == 0; }
  std::uint64_t count() const { return rests_[0].count; }

  std::vector<CutSyllable> Best() const {
    std::vector<CutSyllable> cut;
    cut.reserve(rests_[0].syllables);
    for (std::size_t begin = 0; begin < text_.size();) {
      const std::size_t length = first_[begin];
      if (length != 0) cut.push_back(SyllableAt(begin, length));
      begin += std::max(length, kLetterLeftOut);
    }
    return cut;
  }

  std::vector<std::vector<CutSyllable>> First(std::size_t max_cuts) const;

  std::vector<CutSyllable> Forward() const;
  std::vector<CutSyllable> Backward() const;

  bool DirectionsDiffer() const {
    const auto same = [](const CutSyllable& a, const CutSyllable& b) { return a.row == b.row; };
    if (!std::all_of(text_.begin(), text_.end(), ascii::IsLetter)) return false;
    const std::vector<CutSyllable> forward = Forward();
    const std::vector<CutSyllable> backward = Backward();
    return !std::equal(forward.begin(), forward.end(), backward.begin(), backward.end(), same);
  }

 private:
  static constexpr std::size_t kLetterLeftOut = 1;

  // What is known from one place of the text on.
  struct Rest {
    std::uint64_t count = 0;  // cuts that cover all of it
    // The best cut:
    std::size_t left_out = 0;
    std::size_t syllables = 0;
  };

  // A cut that covers all from one place on: its first syllable, and which of the cuts listed
  // behind that goes on.
  struct Branch {
    std::size_t syllables = 0;
    std::size_t length = 0;
    std::size_t next = 0;
  };
  using Branches = std::vector<Branch>;

  // Only as many rests are kept as a syllable can reach; the first place's is rests_[0].
  Rest& RestAt(std::size_t place) { return rests_[place % rests_.size()]; }

  void LookAt(std::size_t begin);
  Branches Merge(const std::vector<Branches>& branches, std::size_t begin,
                 std::size_t max_cuts) const;
  std::size_t LongestAt(std::size_t begin) const {
    std::size_t length = tree_.longest();
    while (length > 0 && !Has(lengths_[begin], length)) --length;
    return length;
  }

  std::size_t LongestBefore(std::size_t end) const {
    std::size_t length = std::min(tree_.longest(), end);
    while (length > 0 && !Has(lengths_[end - length], length)) --length;
    return length;
  }

  int RowAt(std::size_t begin, std::size_t length) const {
    return tree_.Row(text_.substr(begin, length));
  }
  CutSyllable SyllableAt(std::size_t begin, std::size_t length) const {
    return {{begin, length}, RowAt(begin, length)};
  }

  const SyllableTree& tree_;
  std::string_view text_;
  std::vector<Lengths> lengths_;     // of the syllables at each place
  std::vector<std::uint8_t> first_;  // of those the best cut's, or 0 when it leaves the letter out
  std::array<Rest, kMaxSyllableLength + 1> rests_ = {};
};

void Cutter::LookAt(std::size_t begin) {
  lengths_[begin] = LengthsAt(tree_, text_.substr(begin));
  const Rest& behind_letter = RestAt(begin + kLetterLeftOut);
  Rest best = {0, behind_letter.left_out + 1, behind_letter.syllables};
  for (std::size_t length = 1; Lengths(lengths_[begin] >> length) != 0; ++length) {
    if (!Has(lengths_[begin], length)) continue;
    const Rest& rest = RestAt(begin + length);
    best.count += std::min(rest.count, kUncountedCuts - best.count);
    const bool is_better = std::make_pair(rest.left_out, rest.syllables + 1) <=
                           std::make_pair(best.left_out, best.syllables);
    if (!is_better) continue;  // equal is better: it is longer
    best.left_out = rest.left_out;
    best.syllables = rest.syllables + 1;
    first_[begin] = static_cast<std::uint8_t>(length);
  }
  RestAt(begin) = best;
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
    cut.reserve(first.syllables);
    const Branch* branch = &first;
    for (std::size_t begin = 0; begin < text_.size();) {
      cut.push_back(SyllableAt(begin, branch->length));
      begin += branch->length;
      branch = &branches[begin][branch->next];
    }
  }
  return cuts;
}

// The cuts behind each syllable that begins here are in order, so theirs are merged.
Cutter::Branches Cutter::Merge(const std::vector<Branches>& branches, std::size_t begin,
                               std::size_t max_cuts) const {
  Branches merged;
  std::array<std::size_t, kMaxSyllableLength + 1> next = {};  // by length
  while (merged.size() < max_cuts) {
    Branch best;
    for (std::size_t length = LongestAt(begin); length > 0; --length) {
      if (!Has(lengths_[begin], length)) continue;
      const Branches& behind = branches[begin + length];
      if (next[length] == behind.size()) continue;
      const std::size_t syllables = behind[next[length]].syllables + 1;
      if (best.length == 0 || syllables < best.syllables) best = {syllables, length, next[length]};
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

// The longest matches from the end, in text order. What stands in front of the last one is dropped
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
  }
  return {};
}

}  // namespace qeo::notation
