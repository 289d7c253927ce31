// Reads a text word by word, cuts a word where capitals ask for it, and places each piece: as
// syllables in the result, or as a problem.

#include "notation/normalizer.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "notation/characters.h"
#include "notation/piece_cutter.h"
#include "notation/readings.h"
#include "notation/syllable_set.h"
#include "notation/syllable_sink.h"
#include "notation/text_reader.h"
#include "notation/word.h"
#include "phoneme/ascii.h"

namespace qeo::notation::internal {
namespace {

bool IsInWord(const Character& character) {
  return character.kind == CharacterKind::kLetter ||
         character.kind == CharacterKind::kForeignLetter;
}

class Normalizer {
 public:
  Normalizer(const ChineseNotation& notation, std::string_view text, RuleSet rules,
             const AliasTable* aliases, bool are_words_syllables, SyllableSink& sink)
      : notation_(notation),
        text_(text),
        rules_(rules),
        reader_(text, rules),
        readings_(notation.language, rules, aliases),
        cutter_(notation.language, readings_),
        sink_(sink),
        are_words_syllables_(are_words_syllables) {}

  // The cutter refers to the readings.
  Normalizer(const Normalizer&) = delete;
  Normalizer& operator=(const Normalizer&) = delete;

  void Run() {
    tones_ = FindToneStyle();
    for (std::size_t at = 0; at < text_.size();) {
      const std::size_t end = PlacePlain(at);
      at = end != at ? end : Place(reader_.ReadCharacter(at));
    }
  }

 private:
  enum class ToneStyle { kNone, kDigits, kMarks };

  ToneStyle FindToneStyle();
  std::size_t PlacePlain(std::size_t at);
  std::size_t Place(const Character& character);
  void PlacePunctuation(Range range);

  // Words to pieces

  std::size_t PlaceWordAt(std::size_t at);
  void PlaceWord();
  bool EndsInSyllable() const;
  bool IsAbbreviation(Piece capitals) const;
  bool IsForeignLetter();
  bool IsOtherwiseAscii() const;
  void PlaceAbbreviation(Piece piece);

  // Pieces to syllables

  void PlacePiece(Piece piece);
  bool EndsInErhua(Piece piece);
  void PlaceClosed(Piece piece);
  bool IsTone(char digit, const Reading& reading) const;
  void PlaceOpen(Piece piece);
  void PlaceMarked(Piece piece);
  bool IsOneSyllable(Piece piece, const Reading& reading) const;
  void PlaceByMark(Piece syllable, const Reading& reading);
  void PlaceToneless(Piece piece);
  void PlaceUncut(Piece letters, bool has_syllable);

  const ChineseNotation& notation_;
  std::string_view text_;
  RuleSet rules_;
  TextReader reader_;
  Readings readings_;
  PieceCutter cutter_;
  SyllableSink& sink_;
  bool are_words_syllables_;
  std::optional<bool> is_otherwise_ascii_;  // once it was asked
  ToneStyle tones_ = ToneStyle::kNone;
  Word word_;
};

// Whether the text has tone marks or, if not, digits that close a syllable.
Normalizer::ToneStyle Normalizer::FindToneStyle() {
  const bool may_have_marks = !std::all_of(text_.begin(), text_.end(), ascii::IsAscii);
  ToneStyle tones = ToneStyle::kNone;
  for (std::size_t at = 0; at < text_.size();) {
    const Character character = reader_.ReadCharacter(at);
    if (!IsInWord(character)) {
      at = character.range.end();
      continue;
    }
    at = reader_.ReadWord(at, word_).end();
    if (word_.is_foreign) continue;
    if (word_.HasToneMark({0, word_.size()})) return ToneStyle::kMarks;
    if (word_.digits.count > 0 && EndsInSyllable()) tones = ToneStyle::kDigits;
    if (tones == ToneStyle::kDigits && !may_have_marks) return tones;
  }
  return tones;
}

// Places a space, or small letters that are a syllable and the one digit after them, which is most
// of what there is. Returns where the rest begins, which is `at` when it needs another look.
std::size_t Normalizer::PlacePlain(std::size_t at) {
  const std::string_view rest = text_.substr(at, kMaxPackedLength + 2);
  PackedSpelling letters = 0;
  std::size_t count = 0;
  for (; count < rest.size() && count < kMaxPackedLength && ascii::IsSmall(rest[count]); ++count) {
    letters |= PackLetter(rest[count], count);
  }
  if (count == rest.size()) return at;
  const char last = rest[count];
  const char next = count + 1 < rest.size() ? rest[count + 1] : ' ';
  if (ascii::IsDigit(next) || !ascii::IsAscii(next))
    return at;  // another digit, or a mark on the last one
  if (count == 0 && last == ' ') {
    sink_.SetApart(at);
    return at + 1;
  }
  const bool is_tone = last >= '1' && last <= notation_.top_tone;
  const int row = count == 0 || !is_tone ? SyllableSet::kNothing : readings_.PlainRow(letters);
  if (row < 0) return at;
  sink_.PutPlain(rest.substr(0, count + 1), row, at);
  return at + count + 1;
}

// Places a character, or the word that it begins. Returns where the rest begins.
std::size_t Normalizer::Place(const Character& character) {
  switch (character.kind) {
    case CharacterKind::kLetter:
    case CharacterKind::kForeignLetter:
      return PlaceWordAt(character.range.offset);
    case CharacterKind::kSeparator:
      sink_.SetApart(character.range.offset);
      break;
    case CharacterKind::kColon:
    case CharacterKind::kPunctuation:
      PlacePunctuation(character.range);
      break;
    case CharacterKind::kInvalid:
      sink_.Report(ProblemKind::kInvalidUtf8, character.range);
      break;
    case CharacterKind::kDigit:
    case CharacterKind::kForeign:
      sink_.Report(ProblemKind::kForeignText, character.range);
      break;
  }
  return character.range.end();
}

void Normalizer::PlacePunctuation(Range range) {
  if (!rules_.Has(Rule::kPunctuation)) return sink_.Report(ProblemKind::kForeignText, range);
  sink_.SetApart(range.offset);
  sink_.Apply(Rule::kPunctuation, range);
}

// Reads and places a word. Returns where it and its digits end.
std::size_t Normalizer::PlaceWordAt(std::size_t at) {
  const Range range = reader_.ReadWord(at, word_);
  if (word_.is_foreign) {
    sink_.Report(ProblemKind::kForeignText, range);
  } else {
    PlaceWord();
  }
  return range.end();
}

void Normalizer::PlaceWord() {
  if (IsForeignLetter()) return PlaceAbbreviation({0, 1});
  for (std::size_t begin = 0; begin < word_.size();) {
    std::size_t end = begin;
    while (end < word_.size() && word_[end].is_capital) ++end;
    const Piece capitals = {begin, end};
    const bool is_word_start = capitals.size() == 1 && end < word_.size();
    if (begin > 0) sink_.SetApart(word_[begin].offset);
    if (!is_word_start && IsAbbreviation(capitals)) {
      PlaceAbbreviation(capitals);
    } else {
      while (end < word_.size() && !word_[end].is_capital) ++end;
      PlacePiece({begin, end});
    }
    begin = end;
  }
}

// Whether the digits after the word close a syllable, and not an abbreviation.
bool Normalizer::EndsInSyllable() const {
  std::size_t begin = word_.size();
  while (begin > 0 && word_[begin - 1].is_capital) --begin;
  return !IsAbbreviation({begin, word_.size()});
}

// Whether capitals are an abbreviation and not letters of a syllable. A single capital must not be
// the one that begins a longer word.
bool Normalizer::IsAbbreviation(Piece capitals) const {
  if (capitals.size() == 0 || !rules_.Has(Rule::kAbbreviation)) return false;
  for (std::size_t i = capitals.begin; i < capitals.end; ++i) {
    if (word_[i].has_mark) return false;
  }
  const bool is_closed = capitals.end == word_.size() && word_.digits.count == 1;
  return capitals.size() > 1 || !is_closed || !readings_.OfPiece(word_, capitals).IsKnown();
}

// Whether a word is a small letter of full width in a text that has nothing else beyond ASCII,
// where it names a letter and is not a syllable.
bool Normalizer::IsForeignLetter() {
  const bool is_lone = word_.size() == 1 && word_.digits.count == 0;
  if (!is_lone || !word_[0].is_full_width || word_[0].is_capital) return false;
  if (!rules_.Has(Rule::kAbbreviation)) return false;
  if (!is_otherwise_ascii_) is_otherwise_ascii_ = IsOtherwiseAscii();
  return *is_otherwise_ascii_;
}

// Whether a text has letters or digits of ASCII, and besides ASCII only letters of full width
// without marks that are words by themselves.
bool Normalizer::IsOtherwiseAscii() const {
  bool has_ascii = false;
  bool was_in_word = false;
  bool was_wide = false;
  for (std::size_t at = 0; at < text_.size();) {
    const Character character = reader_.ReadCharacter(at);
    const bool is_in_word = IsInWord(character) || character.kind == CharacterKind::kDigit;
    const bool is_ascii = character.range.length == 1 && ascii::IsAscii(text_[at]);
    const bool is_letter = character.kind == CharacterKind::kLetter;
    const bool is_wide = is_letter && character.is_full_width && !character.is_capital &&
                         !Letter(character).has_mark;
    const bool is_joined = is_in_word && was_in_word && (is_wide || was_wide);
    if (is_joined || !(is_ascii || is_wide)) return false;
    has_ascii = has_ascii || (is_ascii && is_in_word);
    was_in_word = is_in_word;
    was_wide = is_wide;
    at = character.range.end();
  }
  return has_ascii;
}

void Normalizer::PlaceAbbreviation(Piece piece) {
  const Range range = word_.RangeWithDigits(piece);
  sink_.Apply(Rule::kAbbreviation, range);
  sink_.Report(ProblemKind::kForeignText, range);
}

void Normalizer::PlacePiece(Piece piece) {
  if (word_.HasDigits(piece)) {
    if (EndsInErhua(piece)) {
      PlaceMarked({piece.begin, piece.end - 1});
      piece.begin = piece.end - 1;
    }
    return PlaceClosed(piece);
  }
  if (tones_ == ToneStyle::kMarks) return PlaceMarked(piece);
  if (tones_ == ToneStyle::kDigits) return PlaceOpen(piece);
  PlaceToneless(piece);
}

// Whether the digit after a piece with marks is that of its r, as in "pǔr5". Not where the r is of
// a syllable "er", or the letters before it cannot be read.
bool Normalizer::EndsInErhua(Piece piece) {
  const Piece front = {piece.begin, piece.end - 1};
  const char digit = word_.digits.first.ascii;
  const bool is_neutral = digit == kNeutralTone || (digit == '0' && notation_.has_tone_zero);
  const bool is_r = readings_.OfPiece(word_, {front.end, piece.end}).is_lone_r;
  if (!is_neutral || !is_r || !word_.HasToneMark(front)) return false;
  const std::vector<Piece>& whole = cutter_.Cut(word_, piece, true);
  const bool is_er = !whole.empty() && !readings_.OfPiece(word_, whole.back()).has_fused_r;
  return !is_er && !cutter_.Cut(word_, front, true).empty();
}

// A piece and the digit after it.
void Normalizer::PlaceClosed(Piece piece) {
  const Character& digit = word_.digits.first;
  const std::size_t end = digit.range.end();
  const Range range = {word_[piece.begin].offset, end - word_[piece.begin].offset};
  const Reading reading = readings_.OfPiece(word_, piece);
  if (!reading.IsKnown()) {
    sink_.Report(ProblemKind::kUnknownSyllable, range);
  } else if (word_.HasToneMark(piece) || !IsTone(digit.ascii, reading)) {
    sink_.Report(ProblemKind::kBadTone, range);
  } else {
    const bool is_neutral = digit.ascii == '0' && rules_.Has(Rule::kNeutralTone);
    const Tone tone = {is_neutral ? kNeutralTone : digit.ascii, digit.range.offset, end};
    sink_.PutSyllable(word_, piece, reading, tone);
    if (digit.is_full_width) sink_.Apply(Rule::kFullWidth, digit.range);
    if (is_neutral) sink_.Apply(Rule::kNeutralTone, digit.range);
  }
  if (word_.digits.count > 1) {
    sink_.Report(ProblemKind::kBadTone, {end, word_.digits.end - end});
  }
}

bool Normalizer::IsTone(char digit, const Reading& reading) const {
  if (digit == '0') return notation_.has_tone_zero;
  return reading.is_lone_r ? digit == kNeutralTone : digit <= notation_.top_tone;
}

// A piece without a digit in a text with digits.
void Normalizer::PlaceOpen(Piece piece) {
  const Range range = word_.RangeOf(piece);
  const Reading reading = readings_.OfPiece(word_, piece);
  if (!reading.IsKnown()) return sink_.Report(ProblemKind::kUnknownSyllable, range);
  const bool is_neutral = rules_.Has(Rule::kNeutralTone);
  sink_.PutSyllable(word_, piece, reading, {is_neutral ? kNeutralTone : kNoTone});
  if (is_neutral) sink_.Apply(Rule::kNeutralTone, range);
}

// A piece without a digit in a text with tone marks.
void Normalizer::PlaceMarked(Piece piece) {
  const Reading whole = readings_.OfPiece(word_, piece);
  if (IsOneSyllable(piece, whole)) return PlaceByMark(piece, whole);
  const std::vector<Piece>& syllables = cutter_.Cut(word_, piece, true);
  if (syllables.empty()) return sink_.ReportLetters(word_, piece);
  for (const Piece syllable : syllables) {
    if (syllable.begin > piece.begin) sink_.SetApart(word_[syllable.begin].offset);
    PlaceByMark(syllable, readings_.OfPiece(word_, syllable));
  }
}

// Whether a piece is one syllable as it is, so that no cut of it is better.
bool Normalizer::IsOneSyllable(Piece piece, const Reading& reading) const {
  ToneMarks marks;
  for (std::size_t i = piece.begin; i < piece.end; ++i) marks.Add(word_[i]);
  return marks.AreOfOneSyllable() && reading.IsKnown() && !reading.has_fused_r;
}

void Normalizer::PlaceByMark(Piece syllable, const Reading& reading) {
  Tone tone;
  for (std::size_t i = syllable.begin; i < syllable.end; ++i) {
    if (word_[i].tone != kNoTone) tone.digit = word_[i].tone;
  }
  const bool is_marked = tone.digit != kNoTone;
  if (!is_marked) tone.digit = kNeutralTone;
  sink_.PutSyllable(word_, syllable, reading, tone);
  if (!is_marked) sink_.Apply(Rule::kToneMark, word_.RangeOf(syllable));
}

// A piece of a text without tones: only what a rule rewrites is cut out of it.
void Normalizer::PlaceToneless(Piece piece) {
  const Reading whole = readings_.OfPiece(word_, piece);
  const bool is_syllable = are_words_syllables_ && whole.IsKnown();
  if (whole.is_lone_r || is_syllable) return sink_.PutSyllable(word_, piece, whole, {});
  for (std::size_t i = piece.begin; i < piece.end; ++i) {
    if (word_[i].letter != kCircumflexE) continue;
    return sink_.Report(ProblemKind::kUnknownSyllable, word_.RangeOf(piece));
  }
  Piece letters = {piece.begin, piece.begin};  // that stay together
  bool has_syllable = false;
  if (!are_words_syllables_ && readings_.MayRewrite(word_, piece)) {
    for (const Piece syllable : cutter_.Cut(word_, piece, false)) {
      const Reading reading = readings_.OfPiece(word_, syllable);
      has_syllable = has_syllable || !reading.IsRewritten();
      if (!reading.IsRewritten()) continue;
      PlaceUncut({letters.begin, syllable.begin}, has_syllable);
      sink_.PutSyllable(word_, syllable, reading, {});
      letters.begin = syllable.end;
      has_syllable = false;
    }
  }
  PlaceUncut({letters.begin, piece.end}, has_syllable || letters.begin == piece.begin);
}

// Letters of a toneless piece around those that a rule rewrites. Where the cut left out all of them
// they do not become a syllable by standing alone, as the m of "mdianr" would.
void Normalizer::PlaceUncut(Piece letters, bool has_syllable) {
  if (!has_syllable && readings_.OfPiece(word_, letters).IsKnown()) {
    return sink_.Report(ProblemKind::kUnknownSyllable, word_.RangeOf(letters));
  }
  sink_.PutLetters(word_, letters);
}

}  // namespace

void Normalize(const ChineseNotation& notation, std::string_view text, RuleSet rules,
               const AliasTable* aliases, bool are_words_syllables, SyllableSink& sink) {
  MakeCharacterTable();
  Normalizer(notation, text, rules, aliases, are_words_syllables, sink).Run();
}

namespace {

Normalized ToText(const ChineseNotation& notation, std::string_view text, RuleSet rules,
                  const AliasTable* aliases) {
  const RuleSet in_use = notation.rules.Common(rules);
  TextSink sink(in_use, text.size());
  Normalize(notation, text, in_use, aliases, false, sink);
  return sink.Take();
}

}  // namespace
}  // namespace qeo::notation::internal

namespace qeo::notation {

Normalized NormalizePinyin(std::string_view text, RuleSet rules) {
  return internal::ToText(internal::kPinyin, text, rules, nullptr);
}

Normalized NormalizeJyutping(std::string_view text, RuleSet rules, const AliasTable* aliases) {
  return internal::ToText(internal::kJyutping, text, rules, aliases);
}

}  // namespace qeo::notation
