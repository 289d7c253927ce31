#ifndef NOTATION_SYLLABLE_WRITER_H_
#define NOTATION_SYLLABLE_WRITER_H_

// Writes syllables in the library's notation, and records where each byte comes from, what rules
// changed, and what could not be written. Not installed.

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>
#include <utility>

#include "notation/readings.h"
#include "notation/records.h"
#include "notation/word.h"

namespace qeo::notation::internal {

inline constexpr char kNeutralTone = '5';
inline constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

/// The tone of a syllable.
struct Tone {
  char digit = kNoTone;
  std::size_t origin = kNowhere;  // kNowhere: as the last letter's
  std::size_t end = kNowhere;     // of its digit in the text
};

class SyllableWriter {
 public:
  explicit SyllableWriter(RuleSet rules) : rules_(rules) {}

  /// Makes room for the result of a text of as many bytes.
  void Reserve(std::size_t byte_count) {
    result_.text.reserve(byte_count);
    result_.origins.reserve(byte_count);
  }

  /// A space goes before the next syllable; it stands for what is at `offset`.
  void SetApart(std::size_t offset) { space_ = std::min(space_, offset); }

  /// Appends a syllable that no rule changes, with its digit, from `offset` on.
  void PutPlain(std::string_view syllable, std::size_t offset) {
    Start({offset, syllable.size()});
    result_.text.append(syllable);
    for (std::size_t i = 0; i < syllable.size(); ++i) result_.origins.push_back(offset + i);
  }

  /// Appends a piece as the syllable that it was read as, with its tone. What is rewritten stands
  /// apart.
  void PutSyllable(const Word& word, Piece piece, const Reading& reading, Tone tone);

  /// Appends letters that no reading changes. None is nothing.
  void PutLetters(const Word& word, Piece piece);

  /// Records an application in its place. Neighbouring characters of full width, and signs, are
  /// one.
  void Apply(Rule rule, Range range);

  /// Records a problem, which sets apart. Neighbouring bytes that are foreign, or no UTF-8, are
  /// one.
  void Report(ProblemKind kind, Range range);

  /// What was written and recorded.
  Normalized Take() { return std::move(result_); }

 private:
  void Start(Range syllable) {
    if (!result_.text.empty()) {
      if (space_ != kNowhere) {
        Append(' ', space_);
      } else if (rules_.Has(Rule::kGlued)) {  // all but a digit leaves a space due behind it
        Append(' ', syllable.offset);
        Apply(Rule::kGlued, syllable);
      }
    }
    space_ = kNowhere;
  }

  void Append(char c, std::size_t origin) {
    result_.text += c;
    result_.origins.push_back(origin);
  }

  void PutFusedR(const Letter& r, Tone tone);
  void ApplyLetterRules(const Letter& letter);

  RuleSet rules_;
  std::size_t space_ = kNowhere;  // the origin of a space that is due, or kNowhere
  Normalized result_;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_SYLLABLE_WRITER_H_
