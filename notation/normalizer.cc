// Reads a text character by character into words, cuts a word where capitals ask for it, and places
// each piece: as syllables in the result, or as a problem.

#include "notation/normalizer.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "notation/characters.h"
#include "notation/syllable_set.h"

namespace qeo::notation::internal {
namespace {

constexpr char kNoTone = '\0';
constexpr char kNeutralTone = '5';
constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

// Small letters, one a bit, asked of small letters, kCircumflexE and none.
class LetterSet {
 public:
  explicit constexpr LetterSet(std::string_view letters) {
    for (const char letter : letters) bits_ |= Bit(letter);
  }
  constexpr bool Has(char c) const { return c >= 'a' && (bits_ & Bit(c)) != 0; }

 private:
  static constexpr std::uint32_t Bit(char letter) { return std::uint32_t{1} << (letter - 'a'); }

  std::uint32_t bits_ = 0;
};

constexpr LetterSet kVowels("aeiouv");
constexpr LetterSet kVowelsWithApostrophe("aeo");       // in front of them, within a word
constexpr LetterSet kInitialsOfDiaeresis("lnjqxy");     // u with diaeresis can follow them
constexpr LetterSet kInitialsWithoutDiaeresis("jqxy");  // and is written u after these

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
bool IsSmall(char c) { return c >= 'a' && c <= 'z'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t End(Range range) { return range.offset + range.length; }

bool IsInWord(const Character& character) {
  return character.kind == CharacterKind::kLetter ||
         character.kind == CharacterKind::kForeignLetter;
}

RuleSet Common(RuleSet a, RuleSet b) {
  RuleSet common;
  for (int i = 0; i < kRuleCount; ++i) {
    const Rule rule = static_cast<Rule>(i);
    if (a.Has(rule) && b.Has(rule)) common = common.With(rule);
  }
  return common;
}

// A letter of the word that is being read.
struct Letter {
  std::size_t offset;
  std::uint8_t length;
  char letter;
  char tone;
  bool is_capital;
  bool is_full_width;
  bool has_diaeresis;
  bool is_variant;

  Range range() const { return {offset, length}; }
  bool HasMark() const { return tone != kNoTone || has_diaeresis; }
};

// The digits behind a word. The first one is its tone.
struct Digits {
  std::size_t count = 0;
  Character first;
  std::size_t end = 0;
};

// Letters of the word, by index.
struct Piece {
  std::size_t begin;
  std::size_t end;

  std::size_t size() const { return end - begin; }
};

// What letters stand for.
struct Reading {
  PackedSpelling spelling = 0;  // for the library; 0 when the letters are no syllable
  bool is_lone_r = false;       // "r" as "er"
  bool is_alias = false;
  bool is_respelled = false;  // "lue" as "lve"
  bool has_fused_r = false;   // behind `spelling`, a syllable more

  bool IsKnown() const { return spelling != 0; }
  bool IsRewritten() const { return is_lone_r || is_alias || is_respelled || has_fused_r; }
};

struct Tone {
  char digit = kNoTone;
  std::size_t origin = kNowhere;  // kNowhere: as the last letter's
  std::size_t end = kNowhere;     // of its digit in the text
};

constexpr std::size_t kUncut = std::numeric_limits<std::size_t>::max();

// What a cut costs; the least is best.
struct Cost {
  std::size_t syllables = 0;
  std::size_t rewritten = 0;
  std::size_t apostrophes = 0;  // that would be written in front of syllables, and are not

  bool operator<(const Cost& other) const {
    return std::tie(syllables, rewritten, apostrophes) <
           std::tie(other.syllables, other.rewritten, other.apostrophes);
  }
};
constexpr Cost kNoCut = {kUncut, 0, 0};

// The cost of the best cut behind a syllable without a tone mark, and behind one with a mark.
using Costs = std::array<Cost, 2>;

// Syllables that an apostrophe sets off from what stands in front of them in a word.
bool TakesApostrophe(PackedSpelling letters) {
  return kVowelsWithApostrophe.Has(UnpackLetter(letters, 0)) || letters == Pack("m") ||
         letters == Pack("n") || letters == Pack("ng");
}

// The tone marks on letters that may be one syllable.
struct MarkCheck {
  bool has_vowel = false;
  std::size_t marks = 0;
  bool is_nasal_marked = false;

  void Add(const Letter& letter) {
    const bool is_vowel = kVowels.Has(letter.letter);
    has_vowel = has_vowel || is_vowel;
    if (letter.tone == kNoTone) return;
    ++marks;
    is_nasal_marked = !is_vowel;
  }
  bool IsOneSyllable() const { return marks <= 1 && !(has_vowel && is_nasal_marked); }
};

class Normalizer {
 public:
  Normalizer(const Notation& notation, std::string_view text, RuleSet rules,
             const AliasTable* aliases)
      : notation_(notation),
        text_(text),
        rules_(rules),
        aliases_(rules.Has(Rule::kAlias) ? aliases : nullptr),
        syllables_(SyllableSet::Of(notation.language)) {}

  Normalized Run() {
    result_.text.reserve(text_.size());
    result_.origins.reserve(text_.size());
    tones_ = FindTones();
    for (std::size_t at = 0; at < text_.size();) {
      if (const std::size_t length = PlacePlain(at); length != 0) {
        at += length;
        continue;
      }
      const Character character = Read(at);
      at = End(character.range);
      switch (character.kind) {
        case CharacterKind::kLetter:
        case CharacterKind::kForeignLetter:
          at = End(PlaceWordAt(character.range.offset));
          break;
        case CharacterKind::kSeparator:
          SetApart(character.range.offset);
          break;
        case CharacterKind::kColon:
        case CharacterKind::kPunctuation:
          PlacePunctuation(character.range);
          break;
        case CharacterKind::kInvalid:
          Report(ProblemKind::kInvalidUtf8, character.range);
          break;
        case CharacterKind::kDigit:
        case CharacterKind::kForeign:
          Report(ProblemKind::kForeignText, character.range);
          break;
      }
    }
    return std::move(result_);
  }

 private:
  // The costs at as many letters as a syllable reaches, by their index; the first letter's is [0].
  using CostRing = std::array<Costs, kMaxPackedLength + 1>;

  enum class Tones { kNone, kDigits, kMarks };

  // Reading

  Character Read(std::size_t offset) const;
  Tones FindTones();
  Range ReadWord(std::size_t at);
  void AddLetter(const Character& character);
  bool AddColon(const Character& colon);
  bool IsDotless(std::size_t index) const;

  // Words to pieces

  std::size_t PlacePlain(std::size_t at);
  Range PlaceWordAt(std::size_t at);
  void PlaceWord();
  bool EndsInSyllable() const;
  bool IsAbbreviation(Piece capitals) const;
  void PlacePiece(Piece piece);
  bool HasToneMark(Piece piece) const;
  Range RangeOf(Piece piece) const;
  Range RangeWithDigits(Piece piece) const;

  // Pieces to syllables

  Reading ReadSyllable(PackedSpelling letters, std::size_t count) const;
  Reading ReadUnfused(PackedSpelling letters, std::size_t count) const;
  Reading ReadPiece(Piece piece) const;
  bool Cover(Piece piece);
  void TrySyllable(std::size_t begin, std::size_t length, PackedSpelling letters, std::size_t marks,
                   CostRing& costs);
  bool MayBeRewritten(Piece piece) const;
  void PlaceClosed(Piece piece);
  void PlaceOpen(Piece piece);
  void PlaceMarked(Piece piece);
  bool IsMarkedSyllable(Piece piece) const;
  void PlaceMarkedSyllable(Piece syllable);
  void PlaceToneless(Piece piece);
  bool IsTone(char digit, const Reading& reading) const;

  // The result

  void PutSyllable(Piece piece, const Reading& reading, Tone tone);
  void PutFusedR(const Letter& r, Tone tone);
  void PutLetters(Piece piece);
  void Start(Range syllable);
  void ApplyLetterRules(const Letter& letter);
  void PlacePunctuation(Range range);
  void Apply(Rule rule, Range range);
  void Report(ProblemKind kind, Range range);

  void Append(char c, std::size_t origin) {
    result_.text += c;
    result_.origins.push_back(origin);
  }

  // A space goes in front of the next syllable; it stands for what is at `offset`.
  void SetApart(std::size_t offset) { space_ = std::min(space_, offset); }

  const Notation& notation_;
  std::string_view text_;
  RuleSet rules_;
  const AliasTable* aliases_;
  const SyllableSet& syllables_;
  Tones tones_ = Tones::kNone;
  std::vector<Letter> word_;
  bool is_foreign_ = false;  // the word has letters that are not in word_
  Digits digits_;
  // For each letter of a piece the length of the syllable that begins there in the best cut, behind
  // a syllable without a tone mark and behind one with a mark.
  std::vector<std::array<std::uint8_t, 2>> cut_;
  std::size_t space_ = kNowhere;  // the origin of a space that is due, or kNowhere
  Normalized result_;
};

// A character, taken for foreign when it needs a rule that is off.
Character Normalizer::Read(std::size_t offset) const {
  Character character = ReadCharacter(text_, offset);
  const bool is_barred =
      (character.is_full_width && !rules_.Has(Rule::kFullWidth)) ||
      (character.has_diaeresis && !rules_.Has(Rule::kDiaeresis)) ||
      ((character.is_variant || character.tone != kNoTone) && !rules_.Has(Rule::kToneMark));
  if (!is_barred) return character;
  if (character.kind == CharacterKind::kLetter) character.kind = CharacterKind::kForeignLetter;
  if (character.kind == CharacterKind::kDigit) character.kind = CharacterKind::kForeign;
  if (character.kind == CharacterKind::kColon) character.kind = CharacterKind::kPunctuation;
  return character;
}

// Whether the text has tone marks or, if not, digits that close a syllable.
Normalizer::Tones Normalizer::FindTones() {
  const bool may_have_marks = !std::all_of(text_.begin(), text_.end(), IsAscii);
  Tones tones = Tones::kNone;
  for (std::size_t at = 0; at < text_.size();) {
    const Character character = Read(at);
    if (!IsInWord(character)) {
      at = End(character.range);
      continue;
    }
    at = End(ReadWord(at));
    if (is_foreign_) continue;
    if (HasToneMark({0, word_.size()})) return Tones::kMarks;
    if (digits_.count > 0 && EndsInSyllable()) tones = Tones::kDigits;
    if (tones == Tones::kDigits && !may_have_marks) return tones;
  }
  return tones;
}

// Reads the word that begins at `at` and the digits behind it. Returns their range.
Range Normalizer::ReadWord(std::size_t at) {
  const std::size_t begin = at;
  word_.clear();
  is_foreign_ = false;
  digits_ = {};
  while (at < text_.size()) {
    const Character character = Read(at);
    if (character.kind == CharacterKind::kLetter) {
      AddLetter(character);
    } else if (character.kind == CharacterKind::kForeignLetter) {
      is_foreign_ = true;
    } else if (!AddColon(character)) {
      break;
    }
    at = End(character.range);
  }
  for (; at < text_.size(); at = digits_.end) {
    const Character character = Read(at);
    if (character.kind != CharacterKind::kDigit) break;
    if (digits_.count++ == 0) digits_.first = character;
    digits_.end = End(character.range);
  }
  return {begin, at - begin};
}

void Normalizer::AddLetter(const Character& character) {
  word_.push_back({character.range.offset, static_cast<std::uint8_t>(character.range.length),
                   character.ascii, character.tone, character.is_capital, character.is_full_width,
                   character.has_diaeresis, character.is_variant});
  Letter& letter = word_.back();
  if (letter.letter == 'v' && rules_.Has(Rule::kDiaeresis) && IsDotless(word_.size() - 1)) {
    letter.letter = 'u';
    letter.has_diaeresis = true;
  }
}

// Makes "u:" one letter where u with diaeresis can stand.
bool Normalizer::AddColon(const Character& colon) {
  if (colon.kind != CharacterKind::kColon || !rules_.Has(Rule::kDiaeresis)) return false;
  if (word_.size() < 2) return false;
  Letter& letter = word_.back();
  const char initial = word_[word_.size() - 2].letter;
  const bool is_plain_u = letter.letter == 'u' && !letter.HasMark();
  if (!is_plain_u || !kInitialsOfDiaeresis.Has(initial)) return false;
  letter.letter = IsDotless(word_.size() - 1) ? 'u' : 'v';
  letter.has_diaeresis = true;
  letter.length = static_cast<std::uint8_t>(letter.length + colon.range.length);
  return true;
}

// Whether u with diaeresis is written u at this place of the word.
bool Normalizer::IsDotless(std::size_t index) const {
  return index > 0 && kInitialsWithoutDiaeresis.Has(word_[index - 1].letter);
}

// Places a space, or small letters that are a syllable and the one digit behind them, which is most
// of what there is. Returns their length, or 0 when what stands at `at` needs another look.
std::size_t Normalizer::PlacePlain(std::size_t at) {
  const std::string_view rest = text_.substr(at, kMaxPackedLength + 2);
  PackedSpelling letters = 0;
  std::size_t count = 0;
  for (; count < rest.size() && count < kMaxPackedLength && IsSmall(rest[count]); ++count) {
    letters |= PackLetter(rest[count], count);
  }
  if (count == rest.size() || aliases_ != nullptr) return 0;
  const char last = rest[count];
  const char next = count + 1 < rest.size() ? rest[count + 1] : ' ';
  if (IsDigit(next) || !IsAscii(next)) return 0;  // another digit, or a mark on the last one
  if (count == 0 && last == ' ') {
    SetApart(at);
    return 1;
  }
  const bool is_tone = last >= '1' && last <= notation_.top_tone;
  if (count == 0 || !is_tone || !syllables_.Has(letters)) return 0;
  Start({at, count + 1});
  result_.text.append(rest, 0, count + 1);
  for (std::size_t i = 0; i <= count; ++i) result_.origins.push_back(at + i);
  return count + 1;
}

// Reads and places a word. Returns its range, digits included.
Range Normalizer::PlaceWordAt(std::size_t at) {
  const Range range = ReadWord(at);
  if (is_foreign_) {
    Report(ProblemKind::kForeignText, range);
  } else {
    PlaceWord();
  }
  return range;
}

void Normalizer::PlaceWord() {
  for (std::size_t begin = 0; begin < word_.size();) {
    std::size_t end = begin;
    while (end < word_.size() && word_[end].is_capital) ++end;
    const Piece capitals = {begin, end};
    const bool is_word_start = capitals.size() == 1 && end < word_.size();
    if (begin > 0) SetApart(word_[begin].offset);
    if (!is_word_start && IsAbbreviation(capitals)) {
      const Range range = RangeWithDigits(capitals);
      Apply(Rule::kAbbreviation, range);
      Report(ProblemKind::kForeignText, range);
    } else {
      while (end < word_.size() && !word_[end].is_capital) ++end;
      PlacePiece({begin, end});
    }
    begin = end;
  }
}

// Whether capitals, of which one alone opens no word, are no letters of a syllable.
bool Normalizer::IsAbbreviation(Piece capitals) const {
  if (capitals.size() == 0 || !rules_.Has(Rule::kAbbreviation)) return false;
  const bool has_mark =
      std::any_of(word_.begin() + static_cast<std::ptrdiff_t>(capitals.begin),
                  word_.begin() + static_cast<std::ptrdiff_t>(capitals.end),
                  [](const Letter& letter) { return letter.HasMark() || letter.is_variant; });
  if (has_mark) return false;
  const bool is_closed = capitals.end == word_.size() && digits_.count == 1;
  return capitals.size() > 1 || !is_closed || !ReadPiece(capitals).IsKnown();
}

// Whether the digits behind the word close a syllable, and not an abbreviation.
bool Normalizer::EndsInSyllable() const {
  std::size_t begin = word_.size();
  while (begin > 0 && word_[begin - 1].is_capital) --begin;
  return !IsAbbreviation({begin, word_.size()});
}

bool Normalizer::HasToneMark(Piece piece) const {
  return std::any_of(word_.begin() + static_cast<std::ptrdiff_t>(piece.begin),
                     word_.begin() + static_cast<std::ptrdiff_t>(piece.end),
                     [](const Letter& letter) { return letter.tone != kNoTone; });
}

void Normalizer::PlacePiece(Piece piece) {
  if (piece.end == word_.size() && digits_.count > 0) return PlaceClosed(piece);
  if (tones_ == Tones::kMarks) return PlaceMarked(piece);
  if (tones_ == Tones::kDigits) return PlaceOpen(piece);
  PlaceToneless(piece);
}

Range Normalizer::RangeOf(Piece piece) const {
  const std::size_t offset = word_[piece.begin].offset;
  return {offset, End(word_[piece.end - 1].range()) - offset};
}

Range Normalizer::RangeWithDigits(Piece piece) const {
  Range range = RangeOf(piece);
  if (piece.end == word_.size() && digits_.count > 0) range.length = digits_.end - range.offset;
  return range;
}

Reading Normalizer::ReadSyllable(PackedSpelling letters, std::size_t count) const {
  const Reading reading = ReadUnfused(letters, count);
  const bool ends_in_r = count > 1 && UnpackLetter(letters, count - 1) == 'r';
  if (reading.IsKnown() || !ends_in_r || !rules_.Has(Rule::kFusedErhua)) return reading;
  bool has_vowel = false;
  for (std::size_t i = 0; i < count; ++i) {
    has_vowel = has_vowel || kVowels.Has(UnpackLetter(letters, i));
  }
  Reading fused = ReadUnfused(letters ^ PackLetter('r', count - 1), count - 1);
  fused.has_fused_r = true;
  return has_vowel && fused.IsKnown() ? fused : Reading();
}

Reading Normalizer::ReadUnfused(PackedSpelling letters, std::size_t count) const {
  Reading reading;
  if (aliases_ != nullptr) {
    std::array<char, kMaxPackedLength> spelling = {};
    for (std::size_t i = 0; i < count; ++i) spelling[i] = UnpackLetter(letters, i);
    reading.spelling = Pack(aliases_->Find({spelling.data(), count}));
    reading.is_alias = reading.IsKnown();
    if (reading.is_alias) return reading;
  }
  if (syllables_.Has(letters)) {
    reading.spelling = letters;
  } else if (rules_.Has(Rule::kDiaeresis) && (letters == Pack("lue") || letters == Pack("nue"))) {
    reading.spelling = letters ^ PackLetter('u' ^ 'v', 1);
    reading.is_respelled = true;
  }
  return reading;
}

// A piece that is one syllable.
Reading Normalizer::ReadPiece(Piece piece) const {
  if (piece.size() > kMaxPackedLength) return {};
  PackedSpelling letters = 0;
  for (std::size_t i = 0; i < piece.size(); ++i) {
    letters |= PackLetter(word_[piece.begin + i].letter, i);
  }
  Reading reading;
  if (letters == Pack("r") && rules_.Has(Rule::kErhua)) {
    reading.spelling = Pack("er");
    reading.is_lone_r = true;
    return reading;
  }
  return ReadSyllable(letters, piece.size());
}

// Finds the best cut of a piece into syllables, from its end on. False when there is none.
bool Normalizer::Cover(Piece piece) {
  CostRing costs = {};
  cut_.assign(piece.size(), {});
  for (std::size_t begin = piece.size(); begin-- > 0;) {
    costs[begin % costs.size()] = {kNoCut, kNoCut};
    PackedSpelling letters = 0;
    MarkCheck marks;
    const std::size_t longest = std::min(kMaxPackedLength, piece.size() - begin);
    bool goes_on = true;  // a rule adds one letter to a syllable, as in "dianr"
    for (std::size_t length = 1; length <= longest && goes_on; ++length) {
      const Letter& letter = word_[piece.begin + begin + length - 1];
      letters |= PackLetter(letter.letter, length - 1);
      marks.Add(letter);
      goes_on = aliases_ != nullptr || syllables_.IsBeginning(letters);
      if (marks.IsOneSyllable()) TrySyllable(begin, length, letters, marks.marks, costs);
    }
  }
  return costs[0][0].syllables != kUncut;
}

// Looks whether the best cut from `begin` on begins with these letters.
void Normalizer::TrySyllable(std::size_t begin, std::size_t length, PackedSpelling letters,
                             std::size_t marks, CostRing& costs) {
  Cost cost = costs[(begin + length) % costs.size()][marks];
  if (cost.syllables == kUncut) return;
  const Reading reading = ReadSyllable(letters, length);
  if (!reading.IsKnown()) return;
  cost.syllables += reading.has_fused_r ? 2 : 1;
  if (reading.IsRewritten()) ++cost.rewritten;
  const bool lacks_apostrophe = begin > 0 && TakesApostrophe(letters);
  if (lacks_apostrophe) ++cost.apostrophes;
  for (const std::size_t marks_before : {0U, 1U}) {
    // "fǎo" is not fa and o, but "Xīān" cannot be one syllable, and nothing else ends in "er"
    const bool is_clear = !lacks_apostrophe || tones_ != Tones::kMarks ||
                          marks + marks_before == 2 || (marks == 0 && letters == Pack("er"));
    Cost& best = costs[begin % costs.size()][marks_before];
    if (!is_clear || best < cost) continue;
    best = cost;  // also when it is equal: its first syllable is longer
    cut_[begin][marks_before] = static_cast<std::uint8_t>(length);
  }
}

bool Normalizer::MayBeRewritten(Piece piece) const {
  if (aliases_ != nullptr) return true;
  for (std::size_t i = piece.begin; i < piece.end; ++i) {
    const char next = i + 1 < piece.end ? word_[i + 1].letter : '\0';
    if (word_[i].letter == 'r' || (word_[i].letter == 'u' && next == 'e')) return true;
  }
  return false;
}

bool Normalizer::IsTone(char digit, const Reading& reading) const {
  if (digit == '0') return notation_.has_tone_zero;
  return reading.is_lone_r ? digit == kNeutralTone : digit <= notation_.top_tone;
}

// A piece and the digit behind it.
void Normalizer::PlaceClosed(Piece piece) {
  const Character& digit = digits_.first;
  const std::size_t end = End(digit.range);
  const Range range = {word_[piece.begin].offset, end - word_[piece.begin].offset};
  const Reading reading = ReadPiece(piece);
  if (!reading.IsKnown()) {
    Report(ProblemKind::kUnknownSyllable, range);
  } else if (HasToneMark(piece) || !IsTone(digit.ascii, reading)) {
    Report(ProblemKind::kBadTone, range);
  } else {
    const bool is_neutral = digit.ascii == '0' && rules_.Has(Rule::kNeutralTone);
    PutSyllable(piece, reading, {is_neutral ? kNeutralTone : digit.ascii, digit.range.offset, end});
    if (digit.is_full_width) Apply(Rule::kFullWidth, digit.range);
    if (is_neutral) Apply(Rule::kNeutralTone, digit.range);
  }
  if (digits_.count > 1) Report(ProblemKind::kBadTone, {end, digits_.end - end});
}

// A piece without a digit in a text with digits.
void Normalizer::PlaceOpen(Piece piece) {
  const Range range = RangeOf(piece);
  const Reading reading = ReadPiece(piece);
  if (!reading.IsKnown()) return Report(ProblemKind::kUnknownSyllable, range);
  const bool is_neutral = rules_.Has(Rule::kNeutralTone);
  PutSyllable(piece, reading, {is_neutral ? kNeutralTone : kNoTone, kNowhere, kNowhere});
  if (is_neutral) Apply(Rule::kNeutralTone, range);
}

// A piece without a digit in a text with tone marks.
void Normalizer::PlaceMarked(Piece piece) {
  if (IsMarkedSyllable(piece)) return PlaceMarkedSyllable(piece);
  if (!Cover(piece)) return Report(ProblemKind::kUnknownSyllable, RangeOf(piece));
  std::size_t marks = 0;
  for (Piece syllable = piece; syllable.begin < piece.end; syllable.begin = syllable.end) {
    syllable.end = syllable.begin + cut_[syllable.begin - piece.begin][marks];
    if (syllable.begin > piece.begin) SetApart(word_[syllable.begin].offset);
    PlaceMarkedSyllable(syllable);
    marks = HasToneMark(syllable) ? 1 : 0;
  }
}

// Whether a piece is one syllable as it is, so that no cut of it is better.
bool Normalizer::IsMarkedSyllable(Piece piece) const {
  MarkCheck marks;
  for (std::size_t i = piece.begin; i < piece.end; ++i) marks.Add(word_[i]);
  const Reading reading = ReadPiece(piece);
  return marks.IsOneSyllable() && reading.IsKnown() && !reading.has_fused_r;
}

void Normalizer::PlaceMarkedSyllable(Piece syllable) {
  Tone tone;
  for (std::size_t i = syllable.begin; i < syllable.end; ++i) {
    if (word_[i].tone != kNoTone) tone.digit = word_[i].tone;
  }
  const bool is_marked = tone.digit != kNoTone;
  if (!is_marked) tone.digit = kNeutralTone;
  PutSyllable(syllable, ReadPiece(syllable), tone);
  if (!is_marked) Apply(Rule::kToneMark, RangeOf(syllable));
}

// A piece of a text without tones: only what a rule rewrites is cut out of it.
void Normalizer::PlaceToneless(Piece piece) {
  const Reading whole = ReadPiece(piece);
  if (whole.is_lone_r) return PutSyllable(piece, whole, {});
  for (std::size_t i = piece.begin; i < piece.end; ++i) {
    if (word_[i].letter != kCircumflexE) continue;
    return Report(ProblemKind::kUnknownSyllable, RangeOf(piece));
  }
  if (!MayBeRewritten(piece) || !Cover(piece)) return PutLetters(piece);
  std::size_t plain = piece.begin;  // where letters begin that stay together
  for (Piece syllable = piece; syllable.begin < piece.end; syllable.begin = syllable.end) {
    syllable.end = syllable.begin + cut_[syllable.begin - piece.begin][0];
    const Reading reading = ReadPiece(syllable);
    if (!reading.IsRewritten()) continue;
    PutLetters({plain, syllable.begin});
    PutSyllable(syllable, reading, {});
    plain = syllable.end;
  }
  PutLetters({plain, piece.end});
}

// Appends a syllable with its tone. What is rewritten stands apart.
void Normalizer::PutSyllable(Piece piece, const Reading& reading, Tone tone) {
  const Range letters = RangeOf(piece);
  const std::size_t end = tone.end == kNowhere ? End(letters) : tone.end;
  if (reading.IsRewritten()) SetApart(letters.offset);
  Start({letters.offset, end - letters.offset});
  for (std::size_t i = piece.begin; i < piece.end; ++i) ApplyLetterRules(word_[i]);
  const bool is_replaced = reading.is_lone_r || reading.is_alias;
  std::size_t origin = letters.offset;
  std::size_t index = piece.begin;
  for (PackedSpelling left = reading.spelling; left != 0; left >>= 8U) {
    if (!is_replaced) origin = word_[index++].offset;
    Append(UnpackLetter(left, 0), origin);
  }
  if (reading.is_lone_r) Apply(Rule::kErhua, letters);
  if (reading.is_alias) Apply(Rule::kAlias, letters);
  if (reading.is_respelled) Apply(Rule::kDiaeresis, word_[piece.begin + 1].range());
  if (tone.origin == kNowhere) tone.origin = origin;
  if (reading.has_fused_r) {
    PutFusedR(word_[piece.end - 1], tone);
  } else if (tone.digit != kNoTone) {
    Append(tone.digit, tone.origin);
  }
  if (reading.IsRewritten()) SetApart(end);
}

// The tone of the syllable that ends in r, then the syllable that r is.
void Normalizer::PutFusedR(const Letter& r, Tone tone) {
  const std::size_t end = tone.end == kNowhere ? End(r.range()) : tone.end;
  if (tone.digit != kNoTone) Append(tone.digit, std::min(tone.origin, r.offset));
  for (const char c : std::string_view(" er")) Append(c, r.offset);
  if (tone.digit != kNoTone) Append(kNeutralTone, r.offset);
  Apply(Rule::kFusedErhua, {r.offset, end - r.offset});
}

void Normalizer::PutLetters(Piece piece) {
  if (piece.size() == 0) return;
  Start(RangeOf(piece));
  for (std::size_t i = piece.begin; i < piece.end; ++i) {
    ApplyLetterRules(word_[i]);
    Append(word_[i].letter, word_[i].offset);
  }
}

// Appends the space that is due in front of a syllable.
void Normalizer::Start(Range syllable) {
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

void Normalizer::ApplyLetterRules(const Letter& letter) {
  if (letter.is_full_width) Apply(Rule::kFullWidth, letter.range());
  if (letter.has_diaeresis) Apply(Rule::kDiaeresis, letter.range());
  if (letter.is_variant || letter.tone != kNoTone) Apply(Rule::kToneMark, letter.range());
}

void Normalizer::PlacePunctuation(Range range) {
  if (!rules_.Has(Rule::kPunctuation)) return Report(ProblemKind::kForeignText, range);
  SetApart(range.offset);
  Apply(Rule::kPunctuation, range);
}

// Adds an application in its place. Neighbouring characters that a rule changes are one.
void Normalizer::Apply(Rule rule, Range range) {
  std::vector<Application>& applied = result_.applied;
  const bool is_joined = rule == Rule::kFullWidth || rule == Rule::kPunctuation;
  if (is_joined && !applied.empty()) {
    Application& last = applied.back();
    if (last.rule == rule && End(last.range) == range.offset) {
      last.range.length += range.length;
      return;
    }
  }
  auto place = applied.end();  // those behind it are of the same syllable, so they are few
  while (place != applied.begin() && (place - 1)->range.offset > range.offset) --place;
  applied.insert(place, {rule, range});
}

// Adds a problem. Neighbouring bytes that are foreign, or no UTF-8, are one.
void Normalizer::Report(ProblemKind kind, Range range) {
  SetApart(range.offset);
  std::vector<Problem>& problems = result_.problems;
  const bool is_joined = kind == ProblemKind::kForeignText || kind == ProblemKind::kInvalidUtf8;
  if (is_joined && !problems.empty()) {
    Problem& last = problems.back();
    if (last.kind == kind && End(last.range) == range.offset) {
      last.range.length += range.length;
      return;
    }
  }
  problems.push_back({kind, range, {}});
}

}  // namespace

Normalized Normalize(const Notation& notation, std::string_view text, RuleSet rules,
                     const AliasTable* aliases) {
  return Normalizer(notation, text, Common(rules, notation.rules), aliases).Run();
}

}  // namespace qeo::notation::internal
