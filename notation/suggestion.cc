// Walks the tree of syllables along the letters, and at each place one step aside.

#include "notation/suggestion.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "notation/bounded_vector.h"
#include "notation/keyboard.h"
#include "notation/rarities.h"
#include "notation/shipped_aliases.h"
#include "notation/syllable_set.h"
#include "notation/syllable_table.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {
namespace {

constexpr std::size_t kShortestMisspelt = 3;

// How rare the rows of a language are.
struct Rarities {
  const std::uint8_t* rows;
  int least;
};

template <std::size_t kRows>
constexpr Rarities MakeRarities(const std::uint8_t (&rows)[kRows]) {
  int least = rows[0];
  for (const std::uint8_t row : rows) least = row < least ? row : least;
  return {rows, least};
}

constexpr Rarities kMandarin = MakeRarities(kMandarinRarities);
constexpr Rarities kCantonese = MakeRarities(kCantoneseRarities);

constexpr const Rarities& RaritiesOf(int language) {
  return language == sp::LANGUAGE_CANTONESE ? kCantonese : kMandarin;
}

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
    if (Find(Pack(text)) != nullptr) return;
    packed_.push_back(Pack(text));
    texts_.push_back(ShortText(text));
  }

  const ShortText* Find(PackedSpelling packed) const {
    const auto* found = std::find(packed_.begin(), packed_.end(), packed);
    return found == packed_.end() ? nullptr : texts_.begin() + (found - packed_.begin());
  }

 private:
  static constexpr std::size_t kMaxTexts = 64;

  BoundedVector<PackedSpelling, kMaxTexts> packed_;
  BoundedVector<ShortText, kMaxTexts> texts_;
};

// The initials and finals that syllables are made of, as they are spelled.
class SyllableParts {
 public:
  static const SyllableParts& Of(int language) {
    static const SyllableParts mandarin(sp::LANGUAGE_MANDARIN);
    static const SyllableParts cantonese(sp::LANGUAGE_CANTONESE);
    return language == sp::LANGUAGE_CANTONESE ? cantonese : mandarin;
  }

  // The gap that is spelled with these letters, if there is one.
  Guess FindGap(std::string_view letters) const {
    const PackedSpelling packed = Pack(letters);
    for (std::size_t length = 1; length <= kLongestInitial && length < letters.size(); ++length) {
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
class SlipSearch {
 public:
  SlipSearch(int language, std::string_view letters)
      : tree_(SyllableTree::Of(language)), rarities_(RaritiesOf(language)), count_(letters.size()) {
    for (std::size_t i = 0; i < count_; ++i) branches_[i] = SyllableTree::Branch(letters[i]);
    branches_[count_] = SyllableTree::kEnd;
  }

  Guess Run() {
    TryAlong([this](std::size_t node, std::size_t at) { TryLikely(node, at); });
    // Seldom can a slip that costs so much be better.
    if (best_.cost >= kOtherKey + rarities_.least) {
      TryAlong([this](std::size_t node, std::size_t at) { TryOtherKey(node, at); });
    }
    return best_;
  }

 private:
  using Branches = std::uint32_t;  // a bit each

  // Tries slips at each place that the letters before it reach.
  template <typename TryAt>
  void TryAlong(TryAt try_at) {
    std::size_t node = SyllableTree::kRoot;
    for (std::size_t at = 0;; ++at) {
      try_at(node, at);
      if (at == count_ || !tree_.Has(node, branches_[at])) return;
      node = tree_.Child(node, branches_[at]);
    }
  }

  // In each of these the letters before `at` have led to `node`.

  void TryLikely(std::size_t node, std::size_t at) {
    const std::size_t hit = branches_[at];
    for (Branches left = tree_.BranchesBefore(node, hit); left != 0; left &= left - 1) {
      Offer(tree_.Child(node, Lowest(left)), at, kLikelySlip);  // dropped
    }
    if (at == count_) return;
    const std::size_t next = branches_[at + 1];
    const Branches beside = kKeyTable.beside[hit];
    for (Branches left = tree_.BranchesBefore(node, next) & beside; left != 0; left &= left - 1) {
      Offer(tree_.Child(node, Lowest(left)), at + 1, kKeyTable.costs[Lowest(left)]);
    }
    if (next == hit) Offer(node, at + 1, kLikelySlip);  // doubled
    const bool is_transposed = next != SyllableTree::kEnd && tree_.Has(node, next) &&
                               tree_.Has(tree_.Child(node, next), hit);
    if (is_transposed) Offer(tree_.Child(tree_.Child(node, next), hit), at + 2, kLikelySlip);
  }

  void TryOtherKey(std::size_t node, std::size_t at) {
    if (at == count_) return;
    const Branches beside = kKeyTable.beside[branches_[at]];
    for (Branches left = tree_.BranchesBefore(node, branches_[at + 1]) & ~beside; left != 0;
         left &= left - 1) {
      Offer(tree_.Child(node, Lowest(left)), at + 1, kOtherKey);
    }
    Offer(node, at + 1, kOtherKey);  // one key too many
  }

  static std::size_t Lowest(Branches branches) {
    return static_cast<std::size_t>(__builtin_ctz(branches));
  }

  // Goes on from `node` with the letters from `at` on, and takes the syllable that is reached if it
  // is the likeliest; among equals the first row.
  void Offer(std::size_t node, std::size_t at, int slip) {
    for (; at < count_; ++at) {
      if (!tree_.Has(node, branches_[at])) return;
      node = tree_.Child(node, branches_[at]);
    }
    const int row = tree_.At(node).row;
    if (row == SyllableTree::kNoRow) return;
    const int cost = slip + rarities_.rows[row];
    if (cost > best_.cost || (cost == best_.cost && row >= best_.row)) return;
    best_.hint = Hint::kSpelling;
    best_.row = row;
    best_.cost = cost;
  }

  const SyllableTree& tree_;
  const Rarities& rarities_;
  std::size_t count_;
  std::array<std::size_t, kMaxPackedLength + 1> branches_ = {};  // of the letters, then kEnd
  Guess best_;
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

}  // namespace

Guess GuessSyllable(int language, std::string_view letters) {
  const SyllableTree& tree = SyllableTree::Of(language);
  if (letters.size() > tree.longest() + 1) return {};
  if (tree.Find(letters).row != SyllableTree::kNoRow) return {};
  if (language == sp::LANGUAGE_CANTONESE) {
    const int row = AliasRow(letters);
    if (row != SyllableTree::kNoRow) return {Hint::kAlias, row, {}, {}, kCantoneseRarities[row]};
  }
  const Guess gap = SyllableParts::Of(language).FindGap(letters);
  if (gap.hint == Hint::kGap || letters.size() < kShortestMisspelt) return gap;
  return SlipSearch(language, letters).Run();
}

Guess GuessMarked(int language, std::string_view letters) {
  const int row = SyllableTree::Of(language).Find(letters).row;
  if (row == SyllableTree::kNoRow) return GuessSyllable(language, letters);
  if (letters.size() == 1) return {};
  return {Hint::kSpelling, row, {}, {}, RarityOf(language, row)};
}

int RarityOf(int language, int row) { return RaritiesOf(language).rows[row]; }

}  // namespace qeo::notation::internal
