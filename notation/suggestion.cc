// Walks the tree of syllables along the letters from both ends, and at each place where these meet
// one step aside.

#include "notation/suggestion.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "notation/bounded_vector.h"
#include "notation/cut_cost.h"
#include "notation/keyboard.h"
#include "notation/rarities.h"
#include "notation/shipped_aliases.h"
#include "notation/syllable_set.h"
#include "notation/syllable_table.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {
namespace {

constexpr std::size_t kShortestMisspelt = 3;

// Slips, in sixteenths of a bit.
constexpr int kLikelySlip = 0;
constexpr int kOtherKey = 6 * kRarityBit;

// A syllable that exists but for the table is as rare as one in four thousand.
constexpr int kGapCost = 12 * kRarityBit;

// The information of a choice among as many keys as are beside a key.
constexpr int ChoiceCost(std::size_t key_count) {
  constexpr std::array<int, 7> kCosts = {0, 0, 16, 25, 32, 37, 41};  // 16 log2(n), rounded
  return kCosts[key_count];
}

// What it costs that a key, the first index, was hit for another one, the second: keys by their
// letters' places in the alphabet.
using HitCosts =
    std::array<std::array<std::uint8_t, SyllableTree::kLetters>, SyllableTree::kLetters>;

constexpr HitCosts MakeHitCosts() {
  HitCosts costs = {};
  for (auto& row : costs) {
    for (auto& cost : row) cost = kOtherKey;
  }
  for (char key = 'a'; key <= 'z'; ++key) {
    const std::string_view beside = KeysBeside(key);
    for (const char hit : beside) {
      costs[SyllableTree::Branch(hit)][SyllableTree::Branch(key)] =
          static_cast<std::uint8_t>(kLikelySlip + ChoiceCost(beside.size()));
    }
  }
  return costs;
}

constexpr HitCosts kHitCosts = MakeHitCosts();

// What is looked for by packed spellings.
template <typename Value>
class SpellingMap {
 public:
  void Insert(std::string_view spelling, const Value& value) {
    const std::size_t slot = SlotOf(Pack(spelling));
    packed_[slot] = Pack(spelling);
    values_[slot] = value;
    longest_ = std::max(longest_, spelling.size());
  }

  // Null for a spelling that was not inserted.
  const Value* Find(PackedSpelling packed) const {
    const std::size_t slot = SlotOf(packed);
    return packed_[slot] == packed ? &values_[slot] : nullptr;
  }

  // The letters of the longest one.
  std::size_t longest() const { return longest_; }

 private:
  static constexpr int kSlotBits = 7;  // at most half of the slots are taken
  static constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;

  // Where a spelling is, or else a free slot.
  std::size_t SlotOf(PackedSpelling packed) const {
    auto slot = static_cast<std::size_t>(packed * 0x9e3779b97f4a7c15U >> (64 - kSlotBits));
    while (packed_[slot] != 0 && packed_[slot] != packed) slot = (slot + 1) % kSlots;
    return slot;
  }

  std::array<PackedSpelling, kSlots> packed_ = {};  // 0 where free
  std::array<Value, kSlots> values_ = {};
  std::size_t longest_ = 0;
};

}  // namespace

// What a language has besides its syllables: the initials and finals that these are made of, as
// they are spelled, and the aliases that are shipped.
class GuessTables {
 public:
  static const GuessTables& Of(int language) {
    static const GuessTables mandarin(sp::LANGUAGE_MANDARIN);
    static const GuessTables cantonese(sp::LANGUAGE_CANTONESE);
    return language == sp::LANGUAGE_CANTONESE ? cantonese : mandarin;
  }

  const SyllableTree& tree() const { return tree_; }

  bool has_aliases() const { return aliases_.longest() > 0; }

  // What the shipped table has for letters; null when it has nothing.
  const Syllable* FindAlias(std::string_view letters) const {
    return letters.size() > aliases_.longest() ? nullptr : aliases_.Find(Pack(letters));
  }

  // Whether there is a place in a piece between what may be an initial and what may be a final.
  bool MayBeGap(const WalkedPiece& piece) const {
    return piece.ending() <= std::min(piece.begun(), initials_.longest()) && piece.size() > 1;
  }

  // The gap that a piece is spelled as, if it is one.
  Guess FindGap(const WalkedPiece& piece) const {
    const PackedSpelling packed = Pack(piece.letters());
    const std::size_t most = std::min({piece.begun(), initials_.longest(), piece.size() - 1});
    for (std::size_t length = std::max(piece.ending(), std::size_t{1}); length <= most; ++length) {
      const std::size_t bits = 8 * length;
      const ShortText* initial = initials_.Find(packed & ((PackedSpelling{1} << bits) - 1));
      if (initial == nullptr) continue;
      const ShortText* final = finals_.Find(packed >> bits);
      if (final == nullptr) continue;
      return {Hint::kGap, SyllableTree::kNoRow, initial, final, kGapCost};
    }
    return {};
  }

 private:
  explicit GuessTables(int language) : tree_(SyllableTree::Of(language)) {
    sp::SyllableInfo syllable;
    const std::vector<std::string> spellings = SyllableSpellings(language);
    for (std::size_t row = 0; row < spellings.size(); ++row) {
      syllable.phones.clear();
      sp::code2ph(language, static_cast<unsigned short>(row * kTonesPerRow), syllable);
      if (syllable.phones.size() < 2) continue;
      const std::string_view initial = syllable.phones[0]->name;
      const std::string_view final = std::string_view(spellings[row]).substr(initial.size());
      initials_.Insert(initial, ShortText(initial));
      finals_.Insert(final, ShortText(final));
    }
    if (language != sp::LANGUAGE_CANTONESE) return;
    for (const auto& [alias, meant] : kShippedAliases) {
      aliases_.Insert(alias, tree_.Find(meant));
    }
  }

  const SyllableTree& tree_;
  SpellingMap<ShortText> initials_;
  SpellingMap<ShortText> finals_;
  SpellingMap<Syllable> aliases_;
};

namespace {

// Finds the syllable that is the least slip away from a piece. The slip is where the letters before
// it begin a syllable and those after it end one, which is seldom at more than two or three places.
class SlipSearch {
 public:
  SlipSearch(const SyllableTree& tree, const WalkedPiece& piece)
      : tree_(tree), piece_(piece), count_(piece.size()) {}

  // The guess, or none if it costs `limit` or more.
  Guess Run(int limit) {
    const int no_rank = std::min(limit, kMostCost) * kRows;
    rank_ = no_rank;
    const std::size_t first = piece_.ending() > 2 ? piece_.ending() - 2 : 0;
    for (std::size_t at = first; at <= piece_.begun(); ++at) TryAt(at);
    if (rank_ == no_rank) return {};
    return {Hint::kSpelling, rank_ % kRows, nullptr, nullptr, rank_ / kRows};
  }

 private:
  using Branches = std::uint32_t;  // a bit each

  static constexpr int kRows = 1024;      // more than a table has
  static constexpr int kMostCost = 1024;  // more than any guess costs

  // Tries the slips after the letters before `at`.
  void TryAt(std::size_t at) {
    const std::size_t node = piece_.Beginning(at);
    const Branches next = tree_.Letters(node);
    for (Branches left = next & tree_.Letters(piece_.Ending(at)); left != 0; left &= left - 1) {
      Offer(tree_.Child(node, Lowest(left)), at, kLikelySlip);  // dropped
    }
    if (at == count_) return;
    const std::size_t hit = piece_.BranchAt(at);
    for (Branches left = next & tree_.Letters(piece_.Ending(at + 1)); left != 0; left &= left - 1) {
      const std::size_t key = Lowest(left);
      Offer(tree_.Child(node, key), at + 1, kHitCosts[hit][key]);
    }
    if (at + 1 == count_) return Offer(node, count_, kOtherKey);  // one more
    // Without the letter hit the next one follows; after that the one after it, or else the former.
    const std::size_t after = piece_.BranchAt(at + 1);
    const std::size_t without = tree_.Child(node, after);
    if (at + 2 == count_ || tree_.Has(without, piece_.BranchAt(at + 2))) {
      Offer(without, at + 2, after == hit ? kLikelySlip : kOtherKey);
    }
    if (tree_.Has(without, hit)) Offer(tree_.Child(without, hit), at + 2, kLikelySlip);
  }

  static std::size_t Lowest(Branches branches) {
    return static_cast<std::size_t>(__builtin_ctz(branches));
  }

  // Goes on from `node` with the letters from `at` on, and takes the syllable that is reached if it
  // is the likeliest; among equals the first row.
  void Offer(std::size_t node, std::size_t at, int slip) {
    for (; at < count_; ++at) node = tree_.Child(node, piece_.BranchAt(at));
    const Syllable& syllable = tree_.At(node);
    const int none = syllable.row < 0 ? 2 * kMostCost * kRows : 0;
    rank_ = std::min(rank_, (slip + syllable.rarity) * kRows + syllable.row + none);
  }

  const SyllableTree& tree_;
  const WalkedPiece& piece_;
  std::size_t count_;
  int rank_ = 0;  // of the best guess: by its cost, then by its row
};

Guess OfSyllable(Hint hint, const Syllable& syllable) {
  return {hint, syllable.row, nullptr, nullptr, syllable.rarity};
}

}  // namespace

Guesser::Guesser(int language, const sp::SpMapping& set)
    : language_(language),
      set_(set),
      tables_(GuessTables::Of(language)),
      tree_(tables_.tree()),
      rarities_(CutNumbersOf(language).rarities),
      longest_(tree_.longest() + 1),
      has_aliases_(tables_.has_aliases()) {}

Guess Guesser::Of(const WalkedPiece& piece, bool is_mark_wrong, int limit) const {
  if (piece.begun() == piece.size()) {
    const Syllable& syllable = tree_.At(piece.Beginning(piece.size()));
    const bool is_meant = is_mark_wrong && piece.size() > 1;
    if (syllable.row != SyllableTree::kNoRow) {
      return is_meant ? OfSyllable(Hint::kSpelling, syllable) : Guess();
    }
  }
  const Syllable* alias = tables_.FindAlias(piece.letters());
  if (alias != nullptr) return OfSyllable(Hint::kAlias, *alias);
  if (tables_.MayBeGap(piece)) {
    const Guess gap = tables_.FindGap(piece);
    if (gap.hint == Hint::kGap) return gap;
  }
  if (piece.size() < kShortestMisspelt) return {};
  return SlipSearch(tree_, piece).Run(limit);
}

Guess Guesser::Of(std::string_view letters, bool is_mark_wrong) const {
  if (letters.size() > longest()) return {};
  const Walk forward = Walk::Forward(tree_, letters);
  const Walk backward = Walk::Backward(tree_, letters);
  return Of(WalkedPiece(letters, forward, backward), is_mark_wrong, kNoLimit);
}

}  // namespace qeo::notation::internal
