#include "notation/syllable_writer.h"

#include <vector>

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

void SyllableWriter::PutSyllable(const Word& word, Piece piece, const Reading& reading, Tone tone) {
  const Range letters = word.RangeOf(piece);
  const std::size_t end = tone.end == kNowhere ? letters.end() : tone.end;
  if (reading.IsRewritten()) SetApart(letters.offset);
  Start({letters.offset, end - letters.offset});
  for (std::size_t i = piece.begin; i < piece.end; ++i) ApplyLetterRules(word[i]);
  const bool is_replaced = reading.is_lone_r || reading.is_alias;
  std::size_t origin = letters.offset;
  std::size_t index = piece.begin;
  for (PackedSpelling left = reading.spelling; left != 0; left >>= 8U) {
    if (!is_replaced) origin = word[index++].offset;
    Append(UnpackLetter(left, 0), origin);
  }
  if (reading.is_lone_r) Apply(Rule::kErhua, letters);
  if (reading.is_alias) Apply(Rule::kAlias, letters);
  if (reading.is_respelled) Apply(Rule::kDiaeresis, word[piece.begin + 1].range());
  if (tone.origin == kNowhere) tone.origin = origin;
  if (reading.has_fused_r) {
    PutFusedR(word[piece.end - 1], tone);
  } else if (tone.digit != kNoTone) {
    Append(tone.digit, tone.origin);
  }
  if (reading.IsRewritten()) SetApart(end);
}

// The tone of the syllable that ends in r, then the syllable that r is.
void SyllableWriter::PutFusedR(const Letter& r, Tone tone) {
  const std::size_t end = tone.end == kNowhere ? r.range().end() : tone.end;
  if (tone.digit != kNoTone) Append(tone.digit, std::min(tone.origin, r.offset));
  for (const char c : std::string_view(" er")) Append(c, r.offset);
  if (tone.digit != kNoTone) Append(kNeutralTone, r.offset);
  Apply(Rule::kFusedErhua, {r.offset, end - r.offset});
}

void SyllableWriter::PutLetters(const Word& word, Piece piece) {
  if (piece.size() == 0) return;
  Start(word.RangeOf(piece));
  for (std::size_t i = piece.begin; i < piece.end; ++i) {
    ApplyLetterRules(word[i]);
    Append(word[i].letter, word[i].offset);
  }
}

void SyllableWriter::ApplyLetterRules(const Letter& letter) {
  if (letter.is_full_width) {
    Apply(Rule::kFullWidth, letter.range());
  } else if (letter.has_full_width_colon) {
    Apply(Rule::kFullWidth,
          {letter.range().end() - kFullWidthColon.size(), kFullWidthColon.size()});
  }
  if (letter.has_diaeresis) Apply(Rule::kDiaeresis, letter.range());
  if (letter.is_variant || letter.tone != kNoTone) Apply(Rule::kToneMark, letter.range());
}

void SyllableWriter::Apply(Rule rule, Range range) {
  std::vector<Application>& applied = result_.applied;
  const bool is_joined = rule == Rule::kFullWidth || rule == Rule::kPunctuation;
  const bool is_same = !applied.empty() && applied.back().rule == rule;
  if (is_joined && is_same && Join(range, applied.back().range)) return;
  auto place = applied.end();  // those behind it are of the same syllable, so they are few
  while (place != applied.begin() && (place - 1)->range.offset > range.offset) --place;
  applied.insert(place, {rule, range});
}

void SyllableWriter::Report(ProblemKind kind, Range range) {
  SetApart(range.offset);
  std::vector<Problem>& problems = result_.problems;
  const bool is_joined = kind == ProblemKind::kForeignText || kind == ProblemKind::kInvalidUtf8;
  const bool is_same = !problems.empty() && problems.back().kind == kind;
  if (is_joined && is_same && Join(range, problems.back().range)) return;
  problems.push_back({kind, range, {}});
}

}  // namespace qeo::notation::internal
