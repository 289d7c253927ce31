// Tries every syllable's worth of neighbouring parts around the one that is wrong.

#include "notation/run_parts.h"

#include <cstdint>
#include <limits>

#include "notation/apostrophe.h"
#include "notation/cut_cost.h"
#include "notation/syllable_set.h"

namespace qeo::notation::internal {
namespace {

std::string_view LettersOf(std::string_view letters, const RunPart& first, const RunPart& last) {
  return letters.substr(first.begin, last.end - first.begin);
}

// What a guess leaves wrong and what it costs; the least is best.
struct Weight {
  std::ptrdiff_t wrong_letters;  // less those of the guess
  int cost;                      // less that of the syllables it replaces
};

// Whether letters begin with one of m, n, ng, hm and hng.
bool BeginsWithNasal(std::string_view letters) {
  const std::size_t at = letters[0] == 'h' ? 1 : 0;
  return at < letters.size() && IsNasal(Pack(letters.substr(at, 1)));
}

class PartsSearch {
 public:
  PartsSearch(int language, std::string_view letters, const std::vector<RunPart>& parts)
      : language_(language),
        rarities_(CutNumbersOf(language).rarities),
        longest_(SyllableTree::Of(language).longest() + 1),
        letters_(letters),
        parts_(parts) {}

  PartsGuess Around(std::size_t wrong) {
    Try(wrong, wrong);
    const bool is_clear = parts_.size() == 1 || parts_[wrong].end - parts_[wrong].begin > 1;
    if (is_clear && best_.guess.hint == Hint::kAlias) return best_;
    for (std::size_t count = 2; count <= kMostParts; ++count) {
      for (std::size_t before = 0; before < count; ++before) {
        const std::size_t last = wrong - before + count - 1;
        if (before <= wrong && last < parts_.size()) Try(wrong - before, last);
      }
    }
    return best_;
  }

 private:
  static constexpr std::size_t kMostParts = 3;  // "zhogn" is cut zh, o, gn

  void Try(std::size_t first, std::size_t last) {
    const std::string_view letters = LettersOf(letters_, parts_[first], parts_[last]);
    if (letters.size() > longest_) return;
    Weight weight = {0, 0};
    const bool is_marked_wrong = first == last && parts_[first].has_wrong_mark;
    std::size_t mark_count = 0;
    for (std::size_t i = first; i <= last; ++i) {
      const RunPart& part = parts_[i];
      mark_count += part.mark_count;
      if (part.is_wrong) weight.wrong_letters -= static_cast<std::ptrdiff_t>(part.end - part.begin);
      if (part.row != SyllableTree::kNoRow) weight.cost -= rarities_[part.row];
    }
    const bool is_known = first == last && parts_[first].row != SyllableTree::kNoRow;
    if ((is_known && !is_marked_wrong) || mark_count > 1) return;
    const int limit = LimitOf(weight);
    const Guess guess = is_marked_wrong ? GuessMarked(language_, letters, limit)
                                        : GuessSyllable(language_, letters, limit);
    if (guess.hint == Hint::kNone || guess.cost >= limit) return;
    weight.cost += guess.cost;
    best_ = {guess, first, last};
    best_weight_ = weight;
  }

  // What a guess has to cost less than to be the best one, with the weight that it has without
  // that.
  int LimitOf(const Weight& weight) const {
    constexpr int kNone = std::numeric_limits<int>::max();
    if (best_.guess.hint == Hint::kNone) return kNone;
    if (weight.wrong_letters != best_weight_.wrong_letters) {
      return weight.wrong_letters < best_weight_.wrong_letters ? kNone : 0;
    }
    return best_weight_.cost - weight.cost;
  }

  int language_;
  const std::uint8_t* rarities_;
  std::size_t longest_;  // a syllable with a slip
  std::string_view letters_;
  const std::vector<RunPart>& parts_;
  PartsGuess best_;
  Weight best_weight_ = {0, 0};
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

PartsGuess GuessAround(int language, std::string_view letters, const std::vector<RunPart>& parts,
                       std::size_t wrong) {
  return PartsSearch(language, letters, parts).Around(wrong);
}

}  // namespace qeo::notation::internal
