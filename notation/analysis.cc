// Makes records of what the normaliser reads, and cuts what has no tones. What is left of the text
// is either a problem already, or a separator.

#include "notation/analysis.h"

#include <algorithm>
#include <utility>

#include "notation/cut_cost.h"
#include "notation/hints.h"
#include "notation/normalizer.h"
#include "notation/notation_table.h"
#include "notation/run_parts.h"
#include "notation/suggestion.h"
#include "notation/syllable_sink.h"
#include "notation/syllable_tree.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using internal::RunPart;
using internal::SyllableTree;

constexpr char kNoDigit = internal::kNoTone;
constexpr std::size_t kUsualSyllables = 16;  // room that hardly a line outgrows

bool EndsPhone(char c) { return c <= ' '; }  // of a known phone's letters, digits and white space

template <typename A, typename B>
bool ComesFirst(const A& a, const B& b) {
  return a.range.offset < b.range.offset;
}

// Makes records of Chinese syllables, and cuts the words that have no tones.
class RecordSink final : public internal::SyllableSink {
 public:
  RecordSink(int language, std::string_view text, RuleSet rules, RuleSet hint_rules,
             Cutting cutting)
      : SyllableSink(rules),
        language_(language),
        set_(*sp::FindPhoneSet(language)),
        cutting_(cutting),
        guesser_(language, set_),
        hints_(guesser_, text, hint_rules) {
    constexpr std::size_t kBytesASyllable = 4;
    analysis_.syllables.reserve(std::min(text.size() / kBytesASyllable + 1, kUsualSyllables));
  }

  Analysis Take() {
    analysis_.applied = std::move(applied_);
    analysis_.problems = std::move(problems_);
    return std::move(analysis_);
  }

 private:
  void WriteSpace(std::size_t /*origin*/) override {}
  void WritePlain(std::string_view syllable, int row, std::size_t offset) override {
    Add(row, syllable.back(), {offset, syllable.size()});
  }
  void WriteSyllable(const internal::Word& word, internal::Piece piece,
                     const internal::Reading& reading, const internal::Tone& tone) override;
  void WriteLetters(const internal::Word& word, internal::Piece piece) override;
  void AddProblem(const Problem& problem) override {
    problems_.push_back(problem);
    hints_.Add(problems_.back());
  }
  void AddLetters(const Problem& problem, const internal::Word& word,
                  internal::Piece piece) override {
    problems_.push_back(problem);
    hints_.AddRun(word, piece, problems_.back());
  }

  void Add(int row, char digit, Range range);
  void AddCutProblem(ProblemKind kind, std::size_t index, const internal::Word& word,
                     std::size_t begin);

  int language_;
  const sp::SpMapping& set_;
  Cutting cutting_;
  internal::Guesser guesser_;
  internal::Hints hints_;
  Analysis analysis_;
  std::string letters_;         // of the word that is cut
  std::vector<RunPart> parts_;  // of the same
};

void RecordSink::Add(int row, char digit, Range range) {
  internal::SetSyllable(language_, set_, row, digit, range, analysis_.syllables.emplace_back());
}

void RecordSink::WriteSyllable(const internal::Word& word, internal::Piece piece,
                               const internal::Reading& reading, const internal::Tone& tone) {
  const Range letters = word.RangeOf(piece);
  const std::size_t end = tone.EndAfter(letters.end());
  if (!reading.has_fused_r)
    return Add(reading.row, tone.digit, {letters.offset, end - letters.offset});
  const std::size_t r = word[piece.end - 1].offset;
  Add(reading.row, tone.digit, {letters.offset, r - letters.offset});
  const char neutral = tone.digit == kNoDigit ? kNoDigit : internal::kNeutralTone;
  Add(SyllableTree::Of(language_).Find("er").row, neutral, {r, end - r});
}

// Letters that the cut leaves out are a problem: lost, or unknown, as the whole word or together
// with the syllable before them ("nun").
void RecordSink::WriteLetters(const internal::Word& word, internal::Piece piece) {
  parts_.reserve(kUsualSyllables);
  letters_.clear();
  for (std::size_t i = piece.begin; i < piece.end; ++i) letters_ += word[i].letter;
  const std::vector<CutSyllable> cut = CutLetters(language_, letters_, cutting_);
  internal::SplitRun(letters_.size(), cut, parts_);
  const bool joins_nasals =
      cutting_ == Cutting::kWhole && internal::CutNumbersOf(language_).nasals_stand_alone;
  if (joins_nasals) internal::JoinNasals(letters_, parts_);
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    const RunPart& part = parts_[i];
    if (part.is_wrong) {
      const bool is_unknown = cut.empty() || part.is_joined;
      const auto kind = is_unknown ? ProblemKind::kUnknownSyllable : ProblemKind::kLettersLost;
      AddCutProblem(kind, i, word, piece.begin);
    } else {
      Add(part.row, kNoDigit, word.RangeOf({piece.begin + part.begin, piece.begin + part.end}));
    }
  }
}

// Adds a part of the word that is cut as a problem with its hint. The first part begins at `begin`.
void RecordSink::AddCutProblem(ProblemKind kind, std::size_t index, const internal::Word& word,
                               std::size_t begin) {
  const auto range_of = [&](std::size_t first, std::size_t last) {
    return word.RangeOf({begin + parts_[first].begin, begin + parts_[last].end});
  };
  Problem& problem = problems_.emplace_back();
  problem.kind = kind;
  problem.range = range_of(index, index);
  const auto [guess, first, last] = internal::GuessAround(guesser_, letters_, parts_, index);
  internal::SetHint(guesser_, guess, range_of(first, last), kNoDigit, problem);
}

Analysis ReadChinese(const internal::ChineseNotation& notation, std::string_view text,
                     RuleSet hint_rules, const AnalysisOptions& options) {
  const RuleSet rules = notation.rules.Common(options.rules);
  RecordSink sink(notation.language, text, rules, hint_rules, options.cutting);
  internal::Normalize(notation, text, rules, options.aliases, options.cutting == Cutting::kNone,
                      sink);
  return sink.Take();
}

// What is in no syllable and no problem.
void AddSeparators(std::string_view text, Analysis& analysis) {
  std::size_t owned = 0;  // up to here every byte has an owner
  const auto own = [&analysis, &owned](Range range) {
    if (owned < range.offset) analysis.separators.push_back({owned, range.offset - owned});
    owned = std::max(owned, range.end());
  };
  auto problem = analysis.problems.begin();
  for (const AnalyzedSyllable& syllable : analysis.syllables) {
    for (; problem != analysis.problems.end() && ComesFirst(*problem, syllable); ++problem) {
      own(problem->range);
    }
    own(syllable.range);
  }
  for (; problem != analysis.problems.end(); ++problem) own(problem->range);
  own({text.size(), 0});
}

}  // namespace

void internal::SetSyllable(int language, const sp::SpMapping& set, int row, char digit, Range range,
                           AnalyzedSyllable& syllable) {
  const sp::PinyinInfo& info = set.pinyin_list[row];
  syllable.spelling = info.pinyin;
  syllable.digit = digit;
  syllable.range = range;
  syllable.row = row;
  sp::SyllableInfo& record = syllable.syllable;
  record.language = language;
  record.tone =
      sp::ToneAdaptation(language, static_cast<signed char>(digit == kNoDigit ? 0 : digit - '0'));
  record.code = static_cast<std::uint32_t>(row * sp::kTonesPerRow + record.tone);
  const sp::PhoneInfo* const phones[] = {info.initial_phone, info.final_phone};
  const bool has_initial = info.initial_phone != nullptr;
  const bool has_final = info.final_phone != nullptr;
  record.phones.assign(phones + (has_initial ? 0 : 1), phones + (has_final ? 2 : 1));
}

Analysis internal::ReadPinyin(int /*language*/, std::string_view text,
                              const AnalysisOptions& options) {
  return ReadChinese(kPinyin, text, options.rules, options);
}

Analysis internal::ReadJyutping(int /*language*/, std::string_view text,
                                const AnalysisOptions& options) {
  return ReadChinese(kJyutping, text, options.rules.Without(Rule::kDiaeresis), options);
}

Analysis internal::ReadArpabet(int /*language*/, std::string_view text,
                               const AnalysisOptions& options) {
  Normalized normalized = ArpabetToPronunciation(text, options.rules);
  std::vector<sp::SyllableInfo> records;
  sp::pr2ph(sp::LANGUAGE_AMERICAN_ENGLISH, normalized.text, records);
  Analysis analysis;
  std::size_t begin = 0;  // of the syllable in the normalised text: "hh ax 0"
  for (sp::SyllableInfo& record : records) {
    const std::size_t comma = std::min(normalized.text.find(',', begin), normalized.text.size());
    const std::size_t digit = comma - 1;
    std::size_t end = normalized.origins[digit];
    while (end < text.size() && !EndsPhone(text[end])) ++end;
    const std::size_t offset = normalized.origins[begin];
    analysis.syllables.push_back({normalized.text.substr(begin, digit - 1 - begin),
                                  normalized.text[digit],
                                  {offset, end - offset},
                                  -1,
                                  std::move(record)});
    begin = comma + 2;
  }
  analysis.applied = std::move(normalized.applied);
  analysis.problems = std::move(normalized.problems);
  return analysis;
}

void internal::TakeDefaultTone(int default_tone, sp::SyllableInfo& syllable) {
  const int none = sp::TonesOf(syllable.language).none;
  if (syllable.tone == none) {
    syllable.tone = static_cast<std::int8_t>(default_tone);
    syllable.code += static_cast<std::uint32_t>(default_tone - none);
  } else if (syllable.raw_tone == none) {
    syllable.raw_tone = static_cast<std::uint8_t>(default_tone);
  }
}

Analysis Analyze(int language, std::string_view text, const AnalysisOptions& options) {
  const Notation notation =
      options.notation.value_or(OwnNotation(language).value_or(Notation::kPinyin));
  Analysis analysis =
      internal::RowOf(notation).read(ServingLanguage(notation, language), text, options);
  if (options.default_tone != 0) {
    for (AnalyzedSyllable& syllable : analysis.syllables) {
      internal::TakeDefaultTone(options.default_tone, syllable.syllable);
    }
  }
  AddSeparators(text, analysis);
  return analysis;
}

}  // namespace qeo::notation
