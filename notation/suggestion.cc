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

// The keys by their letters' places in the alphabet.
struct KeyTable {
  std::array<std::uint32_t, SyllableTree::kEnd> beside = {};  // the keys beside each, a bit each
  std::array<int, SyllableTree::kEnd> costs = {};             // of hitting one beside it instead
};

constexpr KeyTable MakeKeyTable() {
  KeyTable table;
  for (char key = 'a'; key <= 'z'; ++key) {
    const std::string_view beside = KeysBeside(key);
    for (const char other : beside) {
      table.beside[SyllableTree::Branch(key)] |= std::uint32_t{1} << SyllableTree::Branch(other);
    }
    table.costs[SyllableTree::Branch(key)] = kLikelySlip + ChoiceCost(beside.size());
  }
  return table;
}

constexpr KeyTable kKeyTable = MakeKeyTable();

// Texts that are looked for by their packed spellings.
class Spellings {
 public:
  void Insert(std::string_view text) {
    const std::size_t slot = SlotOf(Pack(text));
    packed_[slot] = Pack(text);
    texts_[slot] = ShortText(text);
  }

  const ShortText* Find(PackedSpelling packed) const {
    const std::size_t slot = SlotOf(packed);
    return packed_[slot] == packed ? &texts_[slot] : nullptr;
  }

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
  std::array<ShortText, kSlots> texts_;
};

// The initials and finals that syllables are made of, as they are spelled.
class SyllableParts {
 public:
  static const SyllableParts& Of(int language) {
    static const SyllableParts mandarin(sp::LANGUAGE_MANDARIN);
    static const SyllableParts cantonese(sp::LANGUAGE_CANTONESE);
    return language == sp::LANGUAGE_CANTONESE ? cantonese : mandarin;
  }

  // The gap that is spelled with these letters, if there is one. Its initial has at least `least`
  // letters, and at most `most`.
  Guess FindGap(std::string_view letters, std::size_t least, std::size_t most) const {
    const PackedSpelling packed = Pack(letters);
    for (std::size_t length = std::max(least, std::size_t{1});
         length <= std::min(most, kLongestInitial) && length < letters.size(); ++length) {
      const std::size_t bits = 8 * length;
      const ShortText* initial = initials_.Find(packed & ((PackedSpelling{1} << bits) - 1));
      if (initial == nullptr) continue;
      const ShortText* final = finals_.Find(packed >> bits);
      if (final == nullptr) continue;
      return {Hint::kGap, SyllableTree::kNoRow, initial->view(), final->view(), kGapCost};
    }
    return {};
  }

 private:
  static constexpr std::size_t kLongestInitial = 2;

  explicit SyllableParts(int language) {
    sp::SyllableInfo syllable;
    const std::vector<std::string> spellings = SyllableSpellings(language);
    for (std::size_t row = 0; row < spellings.size(); ++row) {
      syllable.phones.clear();
      sp::code2ph(language, static_cast<unsigned short>(row * kTonesPerRow), syllable);
      if (syllable.phones.size() < 2) continue;
      const std::string_view initial = syllable.phones[0]->name;
      initials_.Insert(initial);
      finals_.Insert(std::string_view(spellings[row]).substr(initial.size()));
    }
  }

  Spellings initials_;
  Spellings finals_;
};

// Finds the syllable that is the least slip away from letters, at most as many as can be packed.
// The slip is where the letters before it begin a syllable and those after it end one, which is
// seldom at more than two or three places.
class SlipSearch {
 public:
  SlipSearch(const SyllableTree& tree, std::string_view letters)
      : tree_(tree), count_(letters.size()), ending_(count_) {
    for (std::size_t i = 0; i < count_; ++i) {
      branches_[i] = static_cast<std::uint8_t>(SyllableTree::Branch(letters[i]));
    }
    for (; begun_ < count_ && Has(nodes_[begun_], begun_); ++begun_) {
      nodes_[begun_ + 1] = Child(nodes_[begun_], begun_);
    }
    endings_[count_] = SyllableTree::kEndings;
    for (; ending_ > 0 && Has(endings_[ending_], ending_ - 1); --ending_) {
      endings_[ending_ - 1] = Child(endings_[ending_], ending_ - 1);
    }
  }

  // As many of the first letters begin a syllable.
  std::size_t begun() const { return begun_; }
  // The letters from here on end a syllable.
  std::size_t ending() const { return ending_; }

  bool IsSyllable() const {
    return begun_ == count_ && tree_.Has(nodes_[begun_], SyllableTree::kEnd);
  }

  // The guess, or none if it costs `limit` or more.
  Guess Run(int limit) {
    cost_ = limit;
    for (std::size_t at = ending_; at <= begun_; ++at) TryDropped(at);
    for (std::size_t at = Before(2); at <= begun_ && at + 2 <= count_; ++at) TryTransposed(at);
    for (std::size_t at = Before(1); at <= begun_ && at + 1 <= count_; ++at) TryHit(at);
    if (row_ == SyllableTree::kNoRow) return {};
    return {Hint::kSpelling, row_, {}, {}, cost_};
  }

 private:
  using Branches = std::uint32_t;  // a bit each

  // The first place of a slip that makes as many letters.
  std::size_t Before(std::size_t slip_letters) const {
    return ending_ > slip_letters ? ending_ - slip_letters : 0;
  }

  // In each of these the slip is at `at`.

  void TryDropped(std::size_t at) {
    const std::size_t node = nodes_[at];
    if (!MayBeBetter(node, at, kLikelySlip)) return;
    const Branches dropped = tree_.Letters(node) & tree_.Letters(endings_[at]);
    for (Branches left = dropped; left != 0; left &= left - 1) {
      Offer(tree_.Child(node, Lowest(left)), at, kLikelySlip);
    }
  }

  void TryTransposed(std::size_t at) {
    if (!MayBeBetter(nodes_[at], at + 2, kLikelySlip) || !Has(nodes_[at], at + 1)) return;
    const std::size_t node = Child(nodes_[at], at + 1);
    if (Has(node, at)) Offer(Child(node, at), at + 2, kLikelySlip);
  }

  // Another key than the right one is hit, or one more.
  void TryHit(std::size_t at) {
    const std::size_t node = nodes_[at];
    if (!MayBeBetter(node, at + 1, kLikelySlip)) return;
    const std::size_t hit = branches_[at];
    const bool is_doubled = at + 1 < count_ && branches_[at + 1] == hit;
    Offer(node, at + 1, is_doubled ? kLikelySlip : kOtherKey);
    Branches right = tree_.Letters(node) & tree_.Letters(endings_[at + 1]);
    if (!MayBeBetter(node, at + 1, kOtherKey)) right &= kKeyTable.beside[hit];
    for (Branches left = right; left != 0; left &= left - 1) {
      const std::size_t key = Lowest(left);
      const bool is_beside = (kKeyTable.beside[hit] >> key & 1U) != 0;
      Offer(tree_.Child(node, key), at + 1, is_beside ? kKeyTable.costs[key] : kOtherKey);
    }
  }

  static std::size_t Lowest(Branches branches) {
    return static_cast<std::size_t>(__builtin_ctz(branches));
  }

  bool Has(std::size_t node, std::size_t at) const { return tree_.Has(node, branches_[at]); }
  std::uint16_t Child(std::size_t node, std::size_t at) const {
    return static_cast<std::uint16_t>(tree_.Child(node, branches_[at]));
  }

  // Whether a syllable that begins as the node and ends as the letters from `at` on may be better
  // than the best, or as good, after a slip.
  bool MayBeBetter(std::size_t node, std::size_t at, int slip) const {
    return slip + std::max(tree_.Least(node), tree_.Least(endings_[at])) <= cost_;
  }

  // Goes on from `node` with the letters from `at` on, and takes the syllable that is reached if it
  // is the likeliest; among equals the first row.
  void Offer(std::size_t node, std::size_t at, int slip) {
    if (!MayBeBetter(node, at, slip)) return;
    for (; at < count_; ++at) {
      if (!Has(node, at)) return;
      node = Child(node, at);
    }
    const auto& [row, rarity, takes_apostrophe, stands_alone] = tree_.At(node);
    if (row == SyllableTree::kNoRow) return;
    const int cost = slip + rarity;
    if (cost > cost_ || (cost == cost_ && row >= row_)) return;
    row_ = row;
    cost_ = cost;
  }

  const SyllableTree& tree_;
  std::size_t count_;
  std::size_t begun_ = 0;
  std::size_t ending_;
  std::array<std::uint8_t, kMaxPackedLength> branches_ = {};      // of the letters
  std::array<std::uint16_t, kMaxPackedLength + 1> nodes_ = {};    // up to each letter
  std::array<std::uint16_t, kMaxPackedLength + 1> endings_ = {};  // from each letter on
  int row_ = SyllableTree::kNoRow;                                // of the best guess
  int cost_ = 0;  // of it, or what a guess has to be below
};

// The row of what the shipped table has for letters, or kNoRow.
int AliasRow(std::string_view letters) {
  const PackedSpelling packed = Pack(letters);
  const auto* found =
      std::find_if(std::begin(kShippedAliases), std::end(kShippedAliases),
                   [packed](const ShippedAlias& alias) { return alias.spelling == packed; });
  if (found == std::end(kShippedAliases)) return SyllableTree::kNoRow;
  return SyllableTree::Of(sp::LANGUAGE_CANTONESE).Find(found->syllable).row;
}

// How rare a syllable is, in sixteenths of a bit.
int RarityOf(int language, int row) { return CutNumbersOf(language).rarities[row]; }

}  // namespace

void MakeGuessTables(int language) {
  static_cast<void>(SyllableTree::Of(language));
  static_cast<void>(SyllableParts::Of(language));
}

Guess GuessSyllable(int language, std::string_view letters, int limit) {
  const SyllableTree& tree = SyllableTree::Of(language);
  if (letters.size() > tree.longest() + 1 || limit <= tree.Least(SyllableTree::kRoot)) return {};
  SlipSearch search(tree, letters);
  if (search.IsSyllable()) return {};
  if (language == sp::LANGUAGE_CANTONESE) {
    const int row = AliasRow(letters);
    if (row != SyllableTree::kNoRow) return {Hint::kAlias, row, {}, {}, RarityOf(language, row)};
  }
  const bool is_long = letters.size() >= kShortestMisspelt;
  const Guess misspelt = is_long ? search.Run(limit) : Guess();
  // A gap comes first, but need not be looked for where neither would be taken.
  if (misspelt.hint == Hint::kNone && limit <= kGapCost) return {};
  const Guess gap = SyllableParts::Of(language).FindGap(letters, search.ending(), search.begun());
  return gap.hint == Hint::kGap ? gap : misspelt;
}

Guess GuessMarked(int language, std::string_view letters, int limit) {
  const int row = SyllableTree::Of(language).Find(letters).row;
  if (row == SyllableTree::kNoRow) return GuessSyllable(language, letters, limit);
  if (letters.size() == 1) return {};
  return {Hint::kSpelling, row, {}, {}, RarityOf(language, row)};
}

}  // namespace qeo::notation::internal
