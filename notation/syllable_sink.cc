#include "notation/syllable_sink.h"

#include <utility>

#include "notation/syllable_set.h"

namespace qeo::notation::internal {
namespace {

constexpr std::string_view kFullWidthColon = "\uFF1A";

// Adds a range to the one that it follows on directly, if it does.
bool Join(Range range, Range& last) {
  if (last.end() != range.offset) return false;
  last.length += range.length;
  return true;
}

}  // namespace

void SyllableSink::PutSyllable(const Word& word, Piece piece, const Reading& reading,
                               const Tone& tone) {
  const Range letters = word.RangeOf(piece);
  const std::size_t end = tone.EndAfter(letters.end());
  if (reading.IsRewritten()) SetApart(letters.offset);
  Start({letters.offset, end - letters.offset});
  for (std::size_t i = piece.begin; i < piece.end; ++i) ApplyLetterRules(word[i]);
  WriteSyllable(word, piece, reading, tone);
  if (!reading.IsRewritten()) return;
  if (reading.is_lone_r) Apply(Rule::kErhua, letters);
  if (reading.is_alias) Apply(Rule::kAlias, letters);
  if (reading.is_respelled) Apply(Rule::kDiaeresis, word[piece.begin + 1].range());
  const std::size_t r = word[piece.end - 1].offset;
  if (reading.has_fused_r) Apply(Rule::kFusedErhua, {r, end - r});
  SetApart(end);
}

void SyllableSink::PutLetters(const Word& word, Piece piece) {
  if (piece.size() == 0) return;
  Start(word.RangeOf(piece));
  for (std::size_t i = piece.begin; i < piece.end; ++i) ApplyLetterRules(word[i]);
  WriteLetters(word, piece);
}

void SyllableSink::ApplyLetterRules(const Letter& letter) {
  if (letter.is_full_width) {
    Apply(Rule::kFullWidth, letter.range());
  } else if (letter.has_full_width_colon) {
    Apply(Rule::kFullWidth,
          {letter.range().end() - kFullWidthColon.size(), kFullWidthColon.size()});
  }
  if (letter.has_diaeresis) Apply(Rule::kDiaeresis, letter.range());
  if (letter.is_variant || letter.tone != kNoTone) Apply(Rule::kToneMark, letter.range());
}

void SyllableSink::Apply(Rule rule, Range range) {
  const bool is_joined = rule == Rule::kFullWidth || rule == Rule::kPunctuation;
  const bool is_same = !applied_.empty() && applied_.back().rule == rule;
  if (is_joined && is_same && Join(range, applied_.back().range)) return;
  auto place = applied_.end();  // those after it are of the same syllable, so they are few
  while (place != applied_.begin() && (place - 1)->range.offset > range.offset) --place;
  applied_.insert(place, {rule, range});
}

void SyllableSink::Report(ProblemKind kind, Range range) {
  SetApart(range.offset);
  const bool is_joined = kind == ProblemKind::kForeignText || kind == ProblemKind::kInvalidUtf8;
  const bool is_same = !problems_.empty() && problems_.back().kind == kind;
  if (is_joined && is_same && Join(range, problems_.back().range)) return;
  AddProblem({kind, range, {}});
}

void SyllableSink::ReportLetters(const Word& word, Piece piece) {
  const Range range = word.RangeOf(piece);
  SetApart(range.offset);
  AddLetters({ProblemKind::kUnknownSyllable, range, {}}, word, piece);
}

void TextSink::WritePlain(std::string_view syllable, int /*row*/, std::size_t offset) {
  result_.text.append(syllable);
  for (std::size_t i = 0; i < syllable.size(); ++i) result_.origins.push_back(offset + i);
}

void TextSink::WriteSyllable(const Word& word, Piece piece, const Reading& reading,
                             const Tone& tone) {
  const bool is_replaced = reading.is_lone_r || reading.is_alias;
  std::size_t origin = word[piece.begin].offset;
  std::size_t index = piece.begin;
  for (PackedSpelling left = reading.spelling; left != 0; left >>= 8U) {
    if (!is_replaced) origin = word[index++].offset;
    Append(UnpackLetter(left, 0), origin);
  }
  if (tone.origin != kNowhere) origin = tone.origin;
  if (reading.has_fused_r) return WriteFusedR(word[piece.end - 1], tone, origin);
  if (tone.digit != kNoTone) Append(tone.digit, origin);
}

// The tone of the syllable that ends in r, then the syllable that r is.
void TextSink::WriteFusedR(const Letter& r, const Tone& tone, std::size_t tone_origin) {
  if (tone.digit != kNoTone) Append(tone.digit, std::min(tone_origin, r.offset));
  for (const char c : std::string_view(" er")) Append(c, r.offset);
  if (tone.digit != kNoTone) Append(kNeutralTone, r.offset);
}

void TextSink::WriteLetters(const Word& word, Piece piece) {
  for (std::size_t i = piece.begin; i < piece.end; ++i) Append(word[i].letter, word[i].offset);
}

Normalized TextSink::Take() {
  result_.applied = std::move(applied_);
  result_.problems = std::move(problems_);
  return std::move(result_);
}

}  // namespace qeo::notation::internal
