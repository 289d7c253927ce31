#ifndef NOTATION_SYLLABLE_SINK_H_
#define NOTATION_SYLLABLE_SINK_H_

// What the normaliser hands on as it reads: syllables with all that is known about them, the rules
// that made them, and what could not be read. A sink makes text or records of the syllables. Not
// installed.

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>
#include <vector>

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

  /// The end of a syllable in the text, of whose letters the end is known.
  std::size_t EndAfter(std::size_t letters_end) const {
    return end == kNowhere ? letters_end : end;
  }
};

/// Receives a text in its order.
class SyllableSink {
 public:
  /// `rules` are those in use.
  explicit SyllableSink(RuleSet rules) : rules_(rules) {}

  SyllableSink(const SyllableSink&) = delete;
  SyllableSink& operator=(const SyllableSink&) = delete;

  /// What follows is not glued to what came before; between them is what is at `offset`.
  void SetApart(std::size_t offset) { apart_ = std::min(apart_, offset); }

  /// A syllable that no rule changes, small letters and a digit, from `offset` on.
  void PutPlain(std::string_view syllable, int row, std::size_t offset) {
    Start({offset, syllable.size()});
    WritePlain(syllable, row, offset);
  }

  /// A piece as the syllable that it was read as, with its tone. A rewritten one is set apart.
  void PutSyllable(const Word& word, Piece piece, const Reading& reading, const Tone& tone);

  /// Letters of a text without tones that no reading changes. An empty piece is ignored.
  void PutLetters(const Word& word, Piece piece);

  /// Records an application in its place. Neighbouring characters of full width, and signs, are
  /// one.
  void Apply(Rule rule, Range range);

  /// Records a problem, which sets apart what is around it. Neighbouring bytes that are foreign, or
  /// that are not UTF-8, are one problem.
  void Report(ProblemKind kind, Range range);

  /// Records a piece without a digit as an unknown syllable, which sets apart.
  void ReportLetters(const Word& word, Piece piece);

 protected:
  ~SyllableSink() = default;

  std::vector<Application> applied_;
  std::vector<Problem> problems_;

 private:
  /// A syllable or a run of letters follows that is set apart; what is between is at `origin`.
  virtual void WriteSpace(std::size_t origin) = 0;
  virtual void WritePlain(std::string_view syllable, int row, std::size_t offset) = 0;
  virtual void WriteSyllable(const Word& word, Piece piece, const Reading& reading,
                             const Tone& tone) = 0;
  virtual void WriteLetters(const Word& word, Piece piece) = 0;
  /// A problem was recorded that is not a part of the one before.
  virtual void AddProblem(const Problem& problem) = 0;
  /// One was recorded that is a piece without a digit.
  virtual void AddLetters(const Problem& problem, const Word& word, Piece piece) = 0;

  void Start(Range syllable) {
    if (has_syllables_) {
      if (apart_ != kNowhere) {
        WriteSpace(apart_);
      } else if (rules_.Has(Rule::kGlued)) {  // only after a digit nothing is between
        WriteSpace(syllable.offset);
        Apply(Rule::kGlued, syllable);
      }
    }
    has_syllables_ = true;
    apart_ = kNowhere;
  }

  void ApplyLetterRules(const Letter& letter);

  RuleSet rules_;
  std::size_t apart_ = kNowhere;  // of what sets the next syllable apart, or kNowhere
  bool has_syllables_ = false;
};

/// Writes the library's notation, and where each byte comes from.
class TextSink final : public SyllableSink {
 public:
  /// `byte_count` is that of the text; the result is hardly longer.
  TextSink(RuleSet rules, std::size_t byte_count) : SyllableSink(rules) {
    result_.text.reserve(byte_count);
    result_.origins.reserve(byte_count);
  }

  /// What was written and recorded.
  Normalized Take();

 private:
  void WriteSpace(std::size_t origin) override { Append(' ', origin); }
  void WritePlain(std::string_view syllable, int row, std::size_t offset) override;
  void WriteSyllable(const Word& word, Piece piece, const Reading& reading,
                     const Tone& tone) override;
  void WriteLetters(const Word& word, Piece piece) override;
  void AddProblem(const Problem& problem) override { problems_.push_back(problem); }
  void AddLetters(const Problem& problem, const Word& /*word*/, Piece /*piece*/) override {
    problems_.push_back(problem);
  }

  void WriteFusedR(const Letter& r, const Tone& tone, std::size_t tone_origin);

  void Append(char c, std::size_t origin) {
    result_.text += c;
    result_.origins.push_back(origin);
  }

  Normalized result_;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_SYLLABLE_SINK_H_
