// Finds the best cut from the last letter to the first.

#include "notation/piece_cutter.h"

#include <algorithm>
#include <tuple>

#include "notation/apostrophe.h"

namespace qeo::notation::internal {
namespace {

constexpr std::size_t kUsualSyllables = 4;  // room that hardly a piece outgrows
constexpr std::size_t kLetterLeftOut = 1;

}  // namespace

bool PieceCutter::Rank::operator<(const Rank& other) const {
  return std::tie(left_out, syllables, rewritten, cost) <
         std::tie(other.left_out, other.syllables, other.rewritten, other.cost);
}

const std::vector<Piece>& PieceCutter::Cut(const Word& word, Piece piece, bool text_has_marks) {
  text_has_marks_ = text_has_marks;
  syllables_.clear();
  syllables_.reserve(kUsualSyllables);
  if (!Cover(word, piece)) return syllables_;
  std::size_t marks = 0;
  for (Piece syllable = piece; syllable.begin < piece.end; syllable.begin = syllable.end) {
    const std::size_t length = lengths_[syllable.begin - piece.begin][marks];
    syllable.end = syllable.begin + std::max(length, kLetterLeftOut);
    if (length == 0) continue;
    syllables_.push_back(syllable);
    marks = word.HasToneMark(syllable) ? 1 : 0;
  }
  return syllables_;
}

// Fills lengths_. False when there is no cut.
bool PieceCutter::Cover(const Word& word, Piece piece) {
  RankRing ranks = {};
  lengths_.assign(piece.size(), {});
  for (std::size_t begin = piece.size(); begin-- > 0;) {
    ranks[begin % ranks.size()] = WithoutLetter(ranks[(begin + kLetterLeftOut) % ranks.size()]);
    PackedSpelling letters = 0;
    std::size_t node = SyllableTree::kRoot;  // of the letters
    ToneMarks marks;
    const std::size_t longest = std::min(kMaxPackedLength, piece.size() - begin);
    bool goes_on = true;  // a rule adds one letter to a syllable, as in "dianr"
    for (std::size_t length = 1; length <= longest && goes_on; ++length) {
      const Letter& letter = word[piece.begin + begin + length - 1];
      letters |= PackLetter(letter.letter, length - 1);
      marks.Add(letter);
      node = tree_.Next(node, letter.letter);
      goes_on = node != SyllableTree::kNowhere || readings_.MayGoOn(letters);
      if (!marks.AreOfOneSyllable() || StandsAlone(letters)) continue;
      const Reading reading = ReadingOf(letters, length, node);
      if (reading.IsKnown()) TrySyllable(begin, length, reading, letters, marks.count(), ranks);
    }
  }
  return ranks[0][0].left_out != kUncut;
}

// The ranks of cuts that leave out the letter before them.
PieceCutter::Ranks PieceCutter::WithoutLetter(Ranks ranks) const {
  for (Rank& rank : ranks) rank.left_out = text_has_marks_ ? kUncut : rank.left_out + 1;
  return ranks;
}

// Whether letters of a text without tones are a syllable only as a whole word, which this is not:
// the normaliser does not ask for a cut of one syllable.
bool PieceCutter::StandsAlone(PackedSpelling letters) const {
  return !text_has_marks_ && numbers_.nasals_stand_alone && IsNasal(letters);
}

// The reading of letters. Most need no rule, and their syllable is already known from the tree.
Reading PieceCutter::ReadingOf(PackedSpelling letters, std::size_t count, std::size_t node) const {
  const Syllable& syllable = tree_.At(node);
  if (!readings_.MayRewrite(letters, count, syllable.row >= 0)) {
    Reading reading;
    if (syllable.row < 0) return reading;
    reading.spelling = letters;
    reading.row = syllable.row;
    reading.rarity = syllable.rarity;
    return reading;
  }
  return readings_.OfLetters(letters, count);
}

// Looks whether the best cut from `begin` on begins with these letters.
void PieceCutter::TrySyllable(std::size_t begin, std::size_t length, const Reading& reading,
                              PackedSpelling letters, std::size_t marks, RankRing& ranks) {
  Rank rank = ranks[(begin + length) % ranks.size()][marks];
  if (rank.left_out == kUncut) return;
  rank.syllables += reading.has_fused_r ? 2 : 1;
  if (reading.IsRewritten()) ++rank.rewritten;
  rank.cost.rarity += reading.rarity;
  const bool lacks_apostrophe = begin > 0 && TakesApostrophe(letters);
  if (lacks_apostrophe) rank.cost += numbers_.penalty;
  for (const std::size_t marks_before : {0U, 1U}) {
    const bool is_clear = !lacks_apostrophe || !text_has_marks_ ||
                          MayLackApostrophe(letters, marks > 0, marks_before > 0);
    Rank& best = ranks[begin % ranks.size()][marks_before];
    if (!is_clear || best < rank) continue;
    best = rank;  // also when it is equal: its first syllable is longer
    lengths_[begin][marks_before] = static_cast<std::uint8_t>(length);
  }
}

}  // namespace qeo::notation::internal
