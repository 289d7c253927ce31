// Tries every syllable's worth of neighbouring parts around the one that is wrong.

#include "notation/run_parts.h"

#include <array>
#include <cstdint>

#include "notation/apostrophe.h"
#include "notation/cut_cost.h"
#include "notation/syllable_set.h"

namespace qeo::notation::internal {
namespace {

std::string_view LettersOf(std::string_view letters, const RunPart& first, const RunPart& last) {
  return letters.substr(first.begin, last.end - first.begin);
}

// Whether letters begin with one of m, n, ng, hm and hng.
bool BeginsWithNasal(std::string_view letters) {
  const std::size_t at = letters[0] == 'h' ? 1 : 0;
  return at < letters.size() && IsNasal(Pack(letters.substr(at, 1)));
}

// One wrong letter weighs more than all that can be said about a syllable.
constexpr int kLetterWeight = 1 << 12;

// Neighbours of the wrong part on one side of it, none or some, which a piece takes in.
struct Neighbours {
  std::size_t letter_count;
  std::size_t mark_count;
  int weight;  // of what is not left when they are replaced: wrong letters, and syllables
  Walk walk;   // from this end of the piece, which all pieces share that end so
};

// Looks at the pieces of a run that have its wrong part in them.
class PartsSearch {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): neighbours are read when they are known
  PartsSearch(const Guesser& guesser, std::string_view letters, const std::vector<RunPart>& parts,
              std::size_t wrong)
      : guesser_(guesser),
        letters_(letters),
        parts_(parts),
        index_(wrong),
        wrong_(parts[wrong]),
        length_(wrong_.end - wrong_.begin) {}

  PartsGuess Run() {
    if (length_ > guesser_.longest()) return best_;
    weight_ = WeightOf(wrong_);
    before_[0] = {0, 0, 0, Walk::Forward(guesser_.tree(), letters_.substr(wrong_.begin))};
    after_[0] = {0, 0, 0, Walk::Backward(guesser_.tree(), letters_.substr(0, wrong_.end))};
    const bool is_right = wrong_.row != SyllableTree::kNoRow && !wrong_.has_wrong_mark;
    if (!is_right && (length_ > 1 || guesser_.has_aliases())) Try(0, 0);
    const bool is_clear = parts_.size() == 1 || length_ > 1;
    if (is_clear && best_.guess.hint == Hint::kAlias) return best_;
    AddBefore();
    AddAfter();
    Try(0, 1);
    Try(1, 0);
    Try(0, 2);
    Try(1, 1);
    Try(2, 0);
    return best_;
  }

 private:
  static constexpr std::size_t kMostParts = 3;       // "zhogn" is cut zh, o, gn
  using Sides = std::array<Neighbours, kMostParts>;  // by the number of parts

  int WeightOf(const RunPart& part) const {
    const int letters = part.is_wrong ? static_cast<int>(part.end - part.begin) : 0;
    return letters * kLetterWeight + guesser_.RarityOf(part.row);
  }

  void AddBefore() {
    for (; before_count_ < kMostParts && before_count_ <= index_; ++before_count_) {
      const RunPart& part = parts_[index_ - before_count_];
      if (!Add(part, before_, before_count_)) return;
      before_[before_count_].walk = Walk::Forward(guesser_.tree(), letters_.substr(part.begin));
    }
  }

  void AddAfter() {
    for (; after_count_ < kMostParts && index_ + after_count_ < parts_.size(); ++after_count_) {
      const RunPart& part = parts_[index_ + after_count_];
      if (!Add(part, after_, after_count_)) return;
      after_[after_count_].walk = Walk::Backward(guesser_.tree(), letters_.substr(0, part.end));
    }
  }

  // Makes as many neighbours of one less and a part. False when they do not fit into a piece.
  bool Add(const RunPart& part, Sides& sides, std::size_t count) const {
    const Neighbours& others = sides[count - 1];
    const std::size_t letter_count = others.letter_count + part.end - part.begin;
    if (letter_count + length_ > guesser_.longest()) return false;
    sides[count].letter_count = letter_count;
    sides[count].mark_count = others.mark_count + part.mark_count;
    sides[count].weight = others.weight + WeightOf(part);
    return true;
  }

  // Guesses about the wrong part with so many neighbours, where there are as many that fit.
  void Try(std::size_t before_count, std::size_t after_count) {
    if (before_count >= before_count_ || after_count >= after_count_) return;
    const Neighbours& before = before_[before_count];
    const Neighbours& after = after_[after_count];
    const std::size_t length = before.letter_count + length_ + after.letter_count;
    const std::size_t mark_count = before.mark_count + wrong_.mark_count + after.mark_count;
    if (length > guesser_.longest() || mark_count > 1) return;
    const WalkedPiece piece({letters_.data() + wrong_.begin - before.letter_count, length},
                            before.walk, after.walk);
    const int weight = before.weight + weight_ + after.weight;
    const int limit = best_weight_ + weight;
    const bool is_mark_wrong = wrong_.has_wrong_mark && before_count + after_count == 0;
    const Guess guess = guesser_.Of(piece, is_mark_wrong, limit);
    if (guess.cost >= limit) return;
    best_ = {guess, index_ - before_count, index_ + after_count};
    best_weight_ = guess.cost - weight;
  }

  const Guesser& guesser_;
  std::string_view letters_;
  const std::vector<RunPart>& parts_;
  std::size_t index_;  // of the wrong part
  const RunPart& wrong_;
  std::size_t length_;  // of the wrong part
  int weight_ = 0;      // of the same
  Sides before_;
  Sides after_;
  std::size_t before_count_ = 1;  // of before_, as far as these fit into a piece
  std::size_t after_count_ = 1;
  PartsGuess best_;
  int best_weight_ = Guesser::kNoLimit / 2;  // what it costs less the weight of what it replaces
};

}  // namespace

void SplitRun(std::size_t letter_count, const std::vector<CutSyllable>& cut,
              std::vector<RunPart>& parts) {
  parts.clear();
  std::size_t placed = 0;
  const auto leave_out = [&](std::size_t end) {
    if (placed < end) parts.push_back({placed, end, SyllableTree::kNoRow, true});
  };
  for (const CutSyllable& syllable : cut) {
    leave_out(syllable.range.offset);
    placed = syllable.range.end();
    parts.push_back({syllable.range.offset, placed, syllable.row, false});
  }
  leave_out(letter_count);
}

void JoinNasals(std::string_view letters, std::vector<RunPart>& parts) {
  std::size_t kept = 0;
  for (const RunPart& part : parts) {
    const bool is_joined = part.is_wrong && BeginsWithNasal(LettersOf(letters, part, part));
    if (!is_joined || kept == 0) {
      parts[kept++] = part;
      continue;
    }
    RunPart& syllable = parts[kept - 1];
    syllable = {syllable.begin, part.end, SyllableTree::kNoRow, true, true, false, 0};
  }
  parts.resize(kept);
}

PartsGuess GuessAround(const Guesser& guesser, std::string_view letters,
                       const std::vector<RunPart>& parts, std::size_t wrong) {
  return PartsSearch(guesser, letters, parts, wrong).Run();
}

}  // namespace qeo::notation::internal
