#ifndef PHONEME_PINYIN_SPLITTER_H_
#define PHONEME_PINYIN_SPLITTER_H_

// Romanised text to syllable pieces, in one pass and without copies.
//
// Text is cut at two levels. What is written comes first: a digit closes the piece before it,
// a capital opens one, and white space, the apostrophe and the grave accent separate pieces. A
// piece that is closed by a digit is passed on as it is, syllable or not. Any other piece that is
// not a syllable is cut by longest match against the syllables of the language, and what no match
// reaches is dropped. A piece whose letters alone are a syllable is passed on whole, also with
// other bytes between them ("n-i"); if it is the whole text, only when it begins with a capital.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "phoneme/ascii.h"
#include "phoneme/eight_bytes.h"
#include "phoneme/name_index.h"
#include "phoneme/phone_sets.h"

namespace qeo::sp::internal {

/// One piece of text, as a sink receives it.
struct SplitPiece {
  std::string_view text;  // unchanged from the input; its first byte may be a capital
  int row;                // the syllable's row, or NameIndex::kAbsent
  signed char raw_tone;   // of a syllable: the closing digit, 0 without one
};

/// A syllable found by longest match; `length` is 0 when there is none.
struct Match {
  int row;
  std::size_t length;
};

/// The longest syllable among the candidates that `candidate` gives for each length. All lengths
/// are looked up, in code without a loop: which one is found cannot be predicted, and a loop that
/// stops there costs more than it saves.
template <typename Candidate, std::size_t... kIndexes>
Match LongestMatch(const NameIndex& syllables, Candidate candidate,
                   std::index_sequence<kIndexes...> /*lengths less one*/) {
  constexpr int kRowBits = 16;
  std::uint32_t best = 0;  // length and row: one number, so that taking it needs no branch
  const auto take_longer = [&](std::uint32_t length) {
    const int row = syllables.Find(candidate(length));
    const std::uint32_t found = length << kRowBits | static_cast<std::uint16_t>(row);
    best = row != NameIndex::kAbsent ? found : best;
  };
  (take_longer(kIndexes + 1), ...);
  return {static_cast<std::uint16_t>(best), best >> kRowBits};
}

using AllLengths = std::make_index_sequence<NameIndex::kMaxNameLength>;

/// The longest syllable that begins the `letters` letters at the front of `word`.
inline Match LongestPrefix(const NameIndex& syllables, std::uint64_t word, std::size_t letters) {
  if (letters < kWordBytes) word |= ~FirstBytes(letters);  // what follows matches nothing
  return LongestMatch(
      syllables, [=](std::size_t length) { return word & FirstBytes(length); }, AllLengths());
}

/// The longest syllable that ends the `letters` letters at the back of `word`.
inline Match LongestSuffix(const NameIndex& syllables, std::uint64_t word, std::size_t letters) {
  if (letters < kWordBytes) word |= FirstBytes(kWordBytes - letters);
  return LongestMatch(
      syllables, [=](std::size_t length) { return word >> (8 * (kWordBytes - length)); },
      AllLengths());
}

/// Cuts a text for a sink, which receives each SplitPiece in order and returns false to end the
/// cutting.
template <typename Sink>
class PinyinSplitter {
 public:
  PinyinSplitter(const NameIndex& syllables, std::string_view text, Sink& sink)
      : syllables_(syllables), text_(text), words_(text), sink_(sink) {}

  void Split(bool backward) {
    std::size_t begin = 0;
    while (begin < text_.size()) {
      const std::uint64_t word = WithSmallFirst(words_.From(begin));
      const std::size_t letters = CountSmallLetters(word);
      const char next = letters < kWordBytes ? ByteAt(word, letters) : '\0';
      if (ascii::IsDigit(next) && letters - 1 < NameIndex::kMaxNameLength) {  // the common case
        const int row = syllables_.Find(word & FirstBytes(letters));
        if (!Send(begin, begin + letters + 1, row, next - '0')) return;
        begin += letters + 1;
      } else if (letters == 0 && IsSeparator(next)) {
        ++begin;
      } else {
        const Extent piece = Measure(begin, letters);
        if (!SendUncommon(begin, piece, backward)) return;
        begin = piece.end;
      }
    }
  }

 private:
  struct Extent {
    std::size_t end;
    bool is_closed;  // by a digit
    bool is_mixed;   // with bytes that are not letters
  };

  // The end of the letters from `begin` on. Steps of a constant length do not wait for each other,
  // so that a long text costs no more than a short one.
  std::size_t SkipLetters(std::size_t begin) const {
    for (; begin < text_.size(); begin += kWordBytes) {
      const std::size_t letters = CountSmallLetters(words_.From(begin));
      if (letters < kWordBytes) return begin + letters;
    }
    return begin;
  }

  // The piece from `begin` on, of which the first `letters` bytes are known to be letters.
  Extent Measure(std::size_t begin, std::size_t letters) const {
    std::size_t end = letters < kWordBytes ? begin + letters : SkipLetters(begin + letters);
    const std::size_t first_other = end;
    for (; end < text_.size(); ++end) {
      const char c = text_[end];
      if (ascii::IsDigit(c)) return {end + 1, true, true};
      if (IsSeparator(c) || ascii::IsCapital(c)) break;
    }
    return {end, false, first_other < end};
  }

  bool SendUncommon(std::size_t begin, const Extent& piece, bool backward) {
    const bool is_whole_text =
        begin == 0 && piece.end == text_.size() && !ascii::IsCapital(text_[0]);
    const bool is_passed_on = piece.is_mixed && !is_whole_text && LettersAreKnown(begin, piece.end);
    if (piece.is_closed || is_passed_on) return Send(begin, piece.end, NameIndex::kAbsent, 0);
    return backward ? CutBackward(begin, piece.end) : CutForward(begin, piece.end);
  }

  bool LettersAreKnown(std::size_t begin, std::size_t end) const {
    std::uint64_t packed = 0;
    std::size_t letters = 0;
    for (std::size_t i = begin; i < end; ++i) {
      const char c = ascii::ToSmall(text_[i]);
      if (!ascii::IsSmall(c)) continue;
      if (letters == NameIndex::kMaxNameLength) return false;
      packed |= std::uint64_t{static_cast<unsigned char>(c)} << (8 * letters++);
    }
    return letters > 0 && syllables_.Find(packed) != NameIndex::kAbsent;
  }

  bool CutForward(std::size_t begin, std::size_t end) {
    while (begin < end) {
      const Match match =
          LongestPrefix(syllables_, words_.From(begin) | kSmallLetters, end - begin);
      if (match.length == 0) break;
      if (!Send(begin, begin + match.length, match.row, 0)) return false;
      begin += match.length;
    }
    return true;
  }

  bool CutBackward(std::size_t begin, std::size_t end) {
    while (begin < end) {
      const Match match = LongestSuffix(syllables_, words_.UpTo(end) | kSmallLetters, end - begin);
      if (match.length == 0) break;
      if (!Send(end - match.length, end, match.row, 0)) return false;
      end -= match.length;
    }
    return true;
  }

  bool Send(std::size_t begin, std::size_t end, int row, int raw_tone) {
    return sink_(
        SplitPiece{{text_.data() + begin, end - begin}, row, static_cast<signed char>(raw_tone)});
  }

  // Turns letters into small letters, and nothing else into a letter.
  static constexpr std::uint64_t kSmallLetters = Repeat(0x20);

  const NameIndex& syllables_;
  std::string_view text_;
  EightByteReader words_;
  Sink& sink_;
};

/// Cuts `text` and calls `sink` with each SplitPiece; stops when it returns false. With `backward`
/// a cut by longest match starts at the end of its piece and sends the last syllable first.
template <typename Sink>
void SplitPinyin(const NameIndex& syllables, std::string_view text, bool backward, Sink sink) {
  PinyinSplitter<Sink>(syllables, text, sink).Split(backward);
}

}  // namespace qeo::sp::internal

#endif  // PHONEME_PINYIN_SPLITTER_H_
