// Normalises a text, cuts what has no tones, and traces each syllable back to the bytes that it was
// read from. What is left of the text is either a problem already, or a separator.

#include "notation/analysis.h"

#include <algorithm>
#include <utility>

#include "notation/apostrophe.h"
#include "notation/characters.h"
#include "notation/cut_cost.h"
#include "notation/nearest_name.h"
#include "notation/normalizer.h"
#include "notation/syllable_table.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

using internal::Character;
using internal::CharacterKind;
using internal::ReadCharacter;
using internal::SpellingTable;

constexpr char kNoDigit = '\0';

bool EndsPhone(char c) { return c <= ' '; }  // of a known phone's letters, digits and white space

template <typename A, typename B>
bool ComesFirst(const A& a, const B& b) {
  return a.range.offset < b.range.offset;
}

// Known syllables of a Chinese language, for suggestions.
const SpellingTable& SpellingsOf(int language) {
  using internal::MakeSpellingTable;
  static const SpellingTable mandarin = MakeSpellingTable(sp::LANGUAGE_MANDARIN);
  static const SpellingTable cantonese = MakeSpellingTable(sp::LANGUAGE_CANTONESE);
  return language == sp::LANGUAGE_CANTONESE ? cantonese : mandarin;
}

// A syllable that is one edit away from the letters of `text`, with the tone of these if it is one.
std::string SuggestSyllable(int language, std::string_view text) {
  std::string letters;
  char digit = kNoDigit;
  for (std::size_t at = 0; at < text.size() && letters.size() <= internal::kMaxSyllableLength;) {
    const Character character = ReadCharacter(text, at);
    at = character.range.end();
    if (character.kind == CharacterKind::kDigit) digit = character.ascii;
    if (character.kind != CharacterKind::kLetter) continue;
    letters += character.ascii == internal::kCircumflexE ? 'e' : character.ascii;
    if (character.tone != internal::kNoTone) digit = character.tone;
  }
  internal::NearestName nearest(letters);
  for (const internal::ShortText& known : SpellingsOf(language)) nearest.Offer(known.view());
  std::string suggestion(nearest.best());
  const auto tone = static_cast<unsigned>(digit - '0');
  if (!suggestion.empty() && digit != kNoDigit && internal::IsTone(language, tone)) {
    suggestion += digit;
  }
  return suggestion;
}

// Reads Chinese.
class SyllableReader {
 public:
  SyllableReader(int language, std::string_view text, const AnalysisOptions& options)
      : language_(language),
        cutting_(options.cutting),
        text_(text),
        normalized_(
            Normalize(language == sp::LANGUAGE_CANTONESE ? internal::kJyutping : internal::kPinyin,
                      text, options.rules, options.aliases, options.cutting == Cutting::kNone)) {}

  Analysis Read() {
    Analysis analysis;
    analysis.problems = std::move(normalized_.problems);
    FindPieces();
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      const std::size_t limit =
          i + 1 < pieces_.size() ? OriginOf(pieces_[i + 1].begin) : text_.size();
      Place(pieces_[i], RangeOf(pieces_[i], limit), analysis);
    }
    for (Problem& problem : analysis.problems) Suggest(problem);
    std::stable_sort(analysis.problems.begin(), analysis.problems.end(),
                     ComesFirst<Problem, Problem>);
    AddSyllableRecords(analysis.syllables);
    analysis.applied = std::move(normalized_.applied);
    return analysis;
  }

 private:
  enum class PieceKind { kSyllable, kLost, kUnknown };

  // Letters of the normalised text, and the digit behind them.
  struct Piece {
    PieceKind kind;
    std::size_t begin;
    std::size_t end;
    char digit;
  };

  void FindPieces();
  void CutWord(std::size_t begin, std::size_t end);
  void LeaveOut(std::size_t word, std::size_t begin, std::size_t end);
  Range RangeOf(const Piece& piece, std::size_t limit);
  void Place(const Piece& piece, Range range, Analysis& analysis) const;
  void Suggest(Problem& problem) const;
  void AddSyllableRecords(std::vector<AnalyzedSyllable>& syllables) const;

  std::size_t OriginOf(std::size_t index) const { return normalized_.origins[index]; }
  std::string LettersOf(const Piece& piece) const {
    return normalized_.text.substr(piece.begin, piece.end - piece.begin);
  }

  int language_;
  Cutting cutting_;
  std::string_view text_;
  Normalized normalized_;
  std::vector<Piece> pieces_;
  std::size_t next_applied_ = 0;  // the first application that is not in front of the next piece
};

void SyllableReader::FindPieces() {
  const std::string& text = normalized_.text;
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t end = begin;
    while (end < text.size() && text[end] != ' ' && !ascii::IsDigit(text[end])) ++end;
    if (end < text.size() && ascii::IsDigit(text[end])) {
      pieces_.push_back({PieceKind::kSyllable, begin, end, text[end]});
      ++end;
    } else {
      CutWord(begin, end);
    }
    begin = end < text.size() && text[end] == ' ' ? end + 1 : end;
  }
}

// Cuts letters without a tone. Those that the cut leaves out are pieces too: lost, or unknown with
// the syllable that they follow, as "nun", or as the whole word.
void SyllableReader::CutWord(std::size_t begin, std::size_t end) {
  const std::string_view word = std::string_view(normalized_.text).substr(begin, end - begin);
  const std::vector<CutSyllable> cut = CutLetters(language_, word, cutting_);
  std::size_t placed = begin;
  for (const CutSyllable& syllable : cut) {
    const std::size_t offset = begin + syllable.range.offset;
    LeaveOut(begin, placed, offset);
    placed = offset + syllable.range.length;
    pieces_.push_back({PieceKind::kSyllable, offset, placed, kNoDigit});
  }
  if (cut.empty()) return pieces_.push_back({PieceKind::kUnknown, begin, end, kNoDigit});
  LeaveOut(begin, placed, end);
}

// Letters that the cut of a word leaves out. A nasal would be a syllable by itself: the one that it
// ends is unknown.
void SyllableReader::LeaveOut(std::size_t word, std::size_t begin, std::size_t end) {
  if (begin == end) return;
  const std::size_t length = end - begin;
  const bool is_nasal =
      cutting_ == Cutting::kWhole && internal::CutNumbersOf(language_).nasals_stand_alone &&
      length <= internal::kMaxPackedLength &&
      internal::IsNasal(internal::Pack(std::string_view(normalized_.text).substr(begin, length)));
  if (is_nasal && begin > word) {
    pieces_.back().kind = PieceKind::kUnknown;
    pieces_.back().end = end;
  } else {
    pieces_.push_back({PieceKind::kLost, begin, end, kNoDigit});
  }
}

// The bytes of the text that a piece was read from: up to the end of the character that its last
// byte comes from, and what rules took with it, "u:" and the r of "dianr". It ends at `limit`.
Range SyllableReader::RangeOf(const Piece& piece, std::size_t limit) {
  const std::size_t begin = OriginOf(piece.begin);
  const std::size_t last = OriginOf(piece.digit == kNoDigit ? piece.end - 1 : piece.end);
  std::size_t end = ReadCharacter(text_, last).range.end();
  const std::vector<Application>& applied = normalized_.applied;
  for (; next_applied_ < applied.size(); ++next_applied_) {
    const auto& [rule, range] = applied[next_applied_];
    if (range.offset >= limit) break;
    const bool is_letters = rule != Rule::kPunctuation && rule != Rule::kAbbreviation;
    if (is_letters) end = std::max(end, range.end());
  }
  return {begin, std::min(end, limit) - begin};
}

void SyllableReader::Place(const Piece& piece, Range range, Analysis& analysis) const {
  switch (piece.kind) {
    case PieceKind::kSyllable:
      analysis.syllables.push_back({LettersOf(piece), piece.digit, range, 0, {}});
      return;
    case PieceKind::kLost:
      analysis.problems.push_back({ProblemKind::kLettersLost, range, {}});
      return;
    case PieceKind::kUnknown:
      analysis.problems.push_back({ProblemKind::kUnknownSyllable, range, {}});
      return;
  }
}

void SyllableReader::Suggest(Problem& problem) const {
  if (problem.kind != ProblemKind::kUnknownSyllable && problem.kind != ProblemKind::kLettersLost) {
    return;
  }
  problem.suggestion =
      SuggestSyllable(language_, text_.substr(problem.range.offset, problem.range.length));
}

// Asks the library for all syllables at once.
void SyllableReader::AddSyllableRecords(std::vector<AnalyzedSyllable>& syllables) const {
  std::string text;
  for (const AnalyzedSyllable& syllable : syllables) {
    text += syllable.spelling;
    text += syllable.digit == kNoDigit ? ' ' : syllable.digit;
  }
  std::vector<sp::SyllableInfo> records;
  sp::py2ph(language_, text, records);
  for (std::size_t i = 0; i < records.size(); ++i) {
    syllables[i].row = static_cast<int>(records[i].code) / internal::kTonesPerRow;
    syllables[i].syllable = std::move(records[i]);
  }
}

// Reads ARPAbet.
Analysis AnalyzeArpabet(std::string_view text, RuleSet rules) {
  Normalized normalized = ArpabetToPronunciation(text, rules);
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

Analysis Analyze(int language, std::string_view text, const AnalysisOptions& options) {
  Analysis analysis = language == sp::LANGUAGE_AMERICAN_ENGLISH
                          ? AnalyzeArpabet(text, options.rules)
                          : SyllableReader(language, text, options).Read();
  AddSeparators(text, analysis);
  return analysis;
}

}  // namespace qeo::notation
