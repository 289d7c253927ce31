// The reference form of the Pinyin and Jyutping normalisers. It shares nothing with them but the
// tables of syllables and rarities, and the lookup of aliases.

#include <utf8proc.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "notation/rarities.h"
#include "tests/reference/normalizing.h"
#include "tests/reference/normalizing_bytes.h"
#include "tests/reference/reference.h"

namespace qeo::sp::reference {
namespace {

using notation::ProblemKind;
using notation::Range;
using notation::Rule;
using notation::RuleSet;

bool IsIn(const char* set, char c) {
  return c != '\0' && std::string(set).find(c) != std::string::npos;
}
bool IsAsciiLetter(char c) { return IsCapital(c) || ('a' <= c && c <= 'z'); }

bool HasCategory(std::int32_t code_point, char general) {
  return utf8proc_category_string(code_point)[0] == general;
}

std::vector<std::int32_t> Decomposed(std::int32_t code_point) {
  std::int32_t buffer[32] = {};
  int boundary = 0;
  const auto count = utf8proc_decompose_char(code_point, buffer, 32, UTF8PROC_DECOMPOSE, &boundary);
  return {buffer, buffer + count};
}

// Characters

enum class Kind {
  kLetter,       // of ASCII, or written for one
  kOtherLetter,  // that makes its word foreign
  kDigit,
  kSeparator,  // a space takes its place
  kForeign,
  kInvalid,
};

// A base with its marks.
struct Character {
  Kind kind = Kind::kForeign;
  std::size_t begin = 0;
  std::size_t end = 0;
  std::int32_t base = kNoCodePoint;
  bool is_equivalent = false;  // to the base, and another code point, as the Kelvin sign to K
  std::vector<std::int32_t> marks;
  char ascii = '\0';        // small letter or digit; '^' for an e with a circumflex
  bool is_capital = false;  // of a letter
  bool is_marked = false;   // with any mark that means something, the colon of "u:" included
  char tone = '\0';         // its mark as a digit
};

bool IsAt(const std::vector<Character>& text, std::size_t at, Kind kind) {
  return at < text.size() && text[at].kind == kind;
}

std::vector<Character> BasesWithMarks(const std::string& text) {
  std::vector<Character> characters;
  for (std::size_t at = 0; at < text.size();) {
    const CodePoint read = Decode(text, at);
    at = read.end;
    std::vector<std::int32_t> parts = {kNoCodePoint};
    if (read.value != kNoCodePoint) parts = Decomposed(read.value);
    const bool is_mark = read.value != kNoCodePoint && HasCategory(read.value, 'M');
    if (is_mark && !characters.empty() && characters.back().base != kNoCodePoint) {
      characters.back().end = read.end;
    } else {
      characters.emplace_back();
      characters.back().begin = read.begin;
      characters.back().end = read.end;
      characters.back().base = parts[0];
      characters.back().is_equivalent = parts.size() == 1 && parts[0] != read.value;
      parts.erase(parts.begin());
    }
    std::vector<std::int32_t>& marks = characters.back().marks;
    marks.insert(marks.end(), parts.begin(), parts.end());
  }
  return characters;
}

// The ASCII letter or digit that the base is or is equivalent to, else '\0'.
char AsciiOf(std::int32_t base, bool has_full_width, bool has_tone_marks) {
  if (base == 0x251 && has_tone_marks) return 'a';
  if (base == 0x261 && has_tone_marks) return 'g';
  if (has_full_width && 0xff01 <= base && base <= 0xff5e) base -= 0xff01 - '!';
  const std::int32_t raised[] = {0x2070, 0xb9,   0xb2,   0xb3,   0x2074,
                                 0x2075, 0x2076, 0x2077, 0x2078, 0x2079};
  for (int digit = 0; digit <= 9 && has_full_width; ++digit) {
    if (base == raised[digit] || base == 0x2080 + digit) base = '0' + digit;
  }
  const char ascii = 0 <= base && base < 0x80 ? static_cast<char>(base) : '\0';
  return IsAsciiLetter(ascii) || IsDigit(ascii) ? ascii : '\0';
}

bool IsLatinLetter(std::int32_t base) {
  const std::pair<std::int32_t, std::int32_t> blocks[] = {
      {0, 0x2af},       {0x1e00, 0x1eff}, {0x2c60, 0x2c7f}, {0xa720, 0xa7ff},
      {0xab30, 0xab6f}, {0xff21, 0xff3a}, {0xff41, 0xff5a}};
  return HasCategory(base, 'L') &&
         std::any_of(std::begin(blocks), std::end(blocks),
                     [base](auto b) { return b.first <= base && base <= b.second; });
}

bool IsLibrarySeparator(std::int32_t base) {
  return 0 < base && base < 0x80 &&
         (IsBlank(static_cast<char>(base)) || base == '\'' || base == '`');
}

bool IsPunctuation(std::int32_t base) {
  const bool is_wide = 0xff01 <= base && base <= 0xff5e;
  const std::int32_t narrow = is_wide ? base - 0xff01 + '!' : base;
  if (narrow < 0x80 && IsIn("#%&*@\\", static_cast<char>(narrow))) return false;
  const std::int32_t others[] = {0x2219, 0x22c5, 0x2bb, 0x2bc, 0xff40};  // dots and apostrophes
  return HasCategory(base, 'P') || HasCategory(base, 'Z') ||
         utf8proc_category(base) == UTF8PROC_CATEGORY_CF ||
         std::find(std::begin(others), std::end(others), base) != std::end(others);
}

char ToneOf(std::int32_t mark) {
  if (mark == 0x304) return '1';                   // macron
  if (mark == 0x301) return '2';                   // acute
  if (mark == 0x30c || mark == 0x306) return '3';  // caron, breve
  if (mark == 0x300) return '4';                   // grave
  return '\0';
}

// How one language is read.
struct Notation {
  bool is_pinyin = true;
  RuleSet rules;
  const notation::AliasTable* aliases = nullptr;

  bool Has(Rule rule) const {
    if (is_pinyin) return rule != Rule::kGlued && rule != Rule::kAlias && rules.Has(rule);
    return (rule == Rule::kFullWidth || rule == Rule::kPunctuation || rule == Rule::kAbbreviation ||
            rule == Rule::kGlued || rule == Rule::kAlias) &&
           rules.Has(rule);
  }
};

// Puts the marks of a letter into it; false when there are any that it cannot have.
bool TakeMarks(const Notation& notation, Character& c) {
  bool has_dots = false;
  for (const std::int32_t mark : c.marks) {
    const char tone = ToneOf(mark);
    if (tone != '\0' && c.tone == '\0' && notation.Has(Rule::kToneMark)) {
      c.tone = tone;
    } else if (mark == 0x308 && c.ascii == 'u' && !has_dots && notation.Has(Rule::kDiaeresis)) {
      has_dots = true;
    } else if (mark == 0x302 && c.ascii == 'e' && notation.Has(Rule::kToneMark)) {
      c.ascii = '^';
    } else {
      return false;
    }
  }
  if (has_dots) c.ascii = 'v';
  c.is_marked = !c.marks.empty();
  return c.tone == '\0' || IsIn("aeiouvmn^", c.ascii);
}

void Classify(const Notation& notation, Character& c) {
  const bool is_barred =
      c.base == kNoCodePoint || (c.is_equivalent && !notation.Has(Rule::kFullWidth));
  const char ascii =
      is_barred ? '\0'
                : AsciiOf(c.base, notation.Has(Rule::kFullWidth), notation.Has(Rule::kToneMark));
  c.kind = Kind::kForeign;
  if (c.base == kNoCodePoint) {
    c.kind = Kind::kInvalid;
  } else if (IsAsciiLetter(ascii)) {
    c.is_capital = IsCapital(ascii);
    c.ascii = Small(ascii);
    c.kind = TakeMarks(notation, c) ? Kind::kLetter : Kind::kOtherLetter;
  } else if (IsLatinLetter(c.base)) {
    c.kind = Kind::kOtherLetter;
  } else if (c.marks.empty()) {
    c.ascii = ascii;
    if (IsDigit(ascii)) c.kind = Kind::kDigit;
    const bool is_separator = IsLibrarySeparator(c.base);
    const bool is_punctuation = is_separator ? c.is_equivalent : IsPunctuation(c.base);
    if (is_separator && !c.is_equivalent) c.kind = Kind::kSeparator;
    if (notation.Has(Rule::kPunctuation) && is_punctuation) c.kind = Kind::kSeparator;
  }
}

// "u:" is one character, and what is written u or v after j, q, x and y is u.
std::vector<Character> ReadDiaeresis(const Notation& notation, const std::vector<Character>& text) {
  std::vector<Character> result;
  for (const Character& c : text) {
    const bool is_colon =
        c.marks.empty() && (c.base == ':' || (c.base == 0xff1a && notation.Has(Rule::kFullWidth)));
    const std::size_t size = result.size();
    if (is_colon && size >= 2 && result[size - 1].ascii == 'u' &&
        result[size - 1].kind == Kind::kLetter && !result[size - 1].is_marked &&
        result[size - 2].kind == Kind::kLetter && IsIn("jlnqxy", result[size - 2].ascii)) {
      result.back().ascii = 'v';
      result.back().is_marked = true;
      result.back().end = c.end;
    } else {
      result.push_back(c);
    }
  }
  for (std::size_t i = 1; i < result.size(); ++i) {
    const bool follows = IsAt(result, i - 1, Kind::kLetter) && IsIn("jqxy", result[i - 1].ascii);
    if (follows && IsAt(result, i, Kind::kLetter) && result[i].ascii == 'v') {
      result[i].ascii = 'u';
    }
  }
  return result;
}

std::vector<Character> Characters(const Notation& notation, const std::string& text) {
  std::vector<Character> characters = BasesWithMarks(text);
  for (Character& c : characters) Classify(notation, c);
  return notation.Has(Rule::kDiaeresis) ? ReadDiaeresis(notation, characters) : characters;
}

// Tokens

// A group of letters with the digits after it, or a problem. A capital opens a group.
struct Token {
  std::vector<Character> letters;
  std::vector<Character> digits;
  ProblemKind problem = ProblemKind::kForeignText;  // when there are no letters
  Range range;
};

std::string Text(const std::vector<Character>& characters) {
  std::string text;
  for (const Character& c : characters) text += c.ascii;
  return text;
}

bool HasTone(const std::vector<Character>& letters) {
  return std::any_of(letters.begin(), letters.end(),
                     [](const Character& c) { return c.tone != '\0'; });
}

// Syllables

// A spelling as the library knows it; the r at its end may be a syllable of its own.
struct Spelled {
  std::string syllable;  // empty when it is unknown
  bool has_er = false;
  bool is_rewritten = false;
};

Spelled SpellWithoutR(const Notation& notation, const std::string& letters) {
  if (notation.Has(Rule::kAlias) && notation.aliases != nullptr) {
    const std::string alias(notation.aliases->Find(letters));
    if (!alias.empty()) return {alias, false, true};
  }
  if (notation.Has(Rule::kDiaeresis) && (letters == "lue" || letters == "nue")) {
    return {letters.substr(0, 1) + "ve", false, true};
  }
  const int language = notation.is_pinyin ? LANGUAGE_MANDARIN : LANGUAGE_CANTONESE;
  const bool is_known = PhoneSets().at(language).pinyin_map.count(letters) != 0;
  return {is_known ? letters : "", false, false};
}

Spelled Spell(const Notation& notation, const std::string& letters) {
  Spelled whole = SpellWithoutR(notation, letters);
  const bool ends_in_r = letters.size() > 1 && letters.back() == 'r';
  if (!whole.syllable.empty() || !ends_in_r || !notation.Has(Rule::kFusedErhua)) return whole;
  const std::string front = letters.substr(0, letters.size() - 1);
  if (front.find_first_of("aeiouv") == std::string::npos) return {};
  return {SpellWithoutR(notation, front).syllable, true, true};
}

// What a group of letters is read as when it is not cut.
Spelled SpellAlone(const Notation& notation, const std::string& letters) {
  if (letters == "r" && notation.Has(Rule::kErhua)) return {"er", false, true};
  return Spell(notation, letters);
}

// From characters to tokens

std::size_t EndOf(Kind kind, const std::vector<Character>& text, std::size_t at) {
  while (IsAt(text, at, kind)) ++at;
  return at;
}

Token ProblemOf(ProblemKind kind, const std::vector<Character>& text, std::size_t begin,
                std::size_t end) {
  return {{}, {}, kind, {text[begin].begin, text[end - 1].end - text[begin].begin}};
}

// Two capitals or more, or one that no small letter follows, without a mark. A syllable of one
// capital with its digit is none.
bool IsAbbreviation(const Notation& notation, const std::vector<Character>& text, std::size_t begin,
                    std::size_t end) {
  if (!notation.Has(Rule::kAbbreviation)) return false;
  for (std::size_t i = begin; i < end; ++i) {
    if (text[i].is_marked) return false;
  }
  if (end - begin >= 2) return true;
  if (IsAt(text, end, Kind::kLetter)) return false;
  const bool is_syllable = !SpellAlone(notation, {text[begin].ascii}).syllable.empty();
  return !is_syllable || EndOf(Kind::kDigit, text, end) != end + 1;
}

// A run of letters that are all of ASCII.
std::size_t TakeWord(const Notation& notation, const std::vector<Character>& text, std::size_t at,
                     std::vector<Token>& tokens) {
  const std::size_t end = EndOf(Kind::kLetter, text, at);
  bool opens = true;
  while (at < end) {
    std::size_t capitals_end = at;
    while (capitals_end < end && text[capitals_end].is_capital) ++capitals_end;
    if (capitals_end > at && IsAbbreviation(notation, text, at, capitals_end)) {
      const std::size_t digits_end = EndOf(Kind::kDigit, text, capitals_end);
      tokens.push_back(ProblemOf(ProblemKind::kForeignText, text, at, digits_end));
      at = digits_end;
      opens = true;
      continue;
    }
    if (opens || capitals_end > at) tokens.emplace_back();
    opens = false;
    do {
      tokens.back().letters.push_back(text[at++]);
    } while (at < capitals_end);
  }
  for (; !opens && IsAt(text, at, Kind::kDigit); ++at) tokens.back().digits.push_back(text[at]);
  return at;
}

// In a text that has letters or digits of ASCII, and besides ASCII only small letters of full width
// between other signs, the latter are foreign.
void MakeLoneLettersForeign(const std::string& text, std::vector<Character>& characters) {
  const auto is_of_word = [&](std::size_t at) {
    return IsAt(characters, at, Kind::kLetter) || IsAt(characters, at, Kind::kOtherLetter) ||
           IsAt(characters, at, Kind::kDigit);
  };
  std::vector<std::size_t> lone;
  bool has_ascii = false;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const Character& c = characters[i];
    const bool is_ascii =
        std::all_of(text.begin() + static_cast<std::ptrdiff_t>(c.begin),
                    text.begin() + static_cast<std::ptrdiff_t>(c.end),
                    [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
    has_ascii = has_ascii || (is_ascii && is_of_word(i));
    if (is_ascii) continue;
    const bool is_wide = 0xff41 <= c.base && c.base <= 0xff5a && c.marks.empty();
    const bool is_lone = (i == 0 || !is_of_word(i - 1)) && !is_of_word(i + 1);
    if (!is_wide || !is_lone) return;
    lone.push_back(i);
  }
  for (const std::size_t i : lone) {
    if (has_ascii) characters[i].kind = Kind::kForeign;
  }
}

std::vector<Token> Tokens(const Notation& notation, const std::vector<Character>& text) {
  std::vector<Token> tokens;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    bool is_foreign = false;
    for (; IsAt(text, end, Kind::kLetter) || IsAt(text, end, Kind::kOtherLetter); ++end) {
      is_foreign = is_foreign || text[end].kind == Kind::kOtherLetter;
    }
    if (is_foreign) {  // the whole word, with its digits
      end = EndOf(Kind::kDigit, text, end);
      tokens.push_back(ProblemOf(ProblemKind::kForeignText, text, at, end));
    } else if (end > at) {
      end = TakeWord(notation, text, at, tokens);
    } else {
      end = at + 1;
      const bool is_invalid = text[at].kind == Kind::kInvalid;
      const ProblemKind kind = is_invalid ? ProblemKind::kInvalidUtf8 : ProblemKind::kForeignText;
      if (text[at].kind != Kind::kSeparator) tokens.push_back(ProblemOf(kind, text, at, end));
    }
    at = end;
  }
  return tokens;
}

// Cuts

constexpr int kMostTries = 20000;  // in one text

struct Piece {
  std::vector<Character> letters;
  Spelled spelled;
};

struct Cut {
  std::vector<Piece> pieces;
  int left_out = 0;  // letters, each a piece without a syllable
  int syllables = 0;
  int rewritten = 0;
  int lacking = 0;  // Mandarin apostrophes
  int rarity = 0;   // of the syllables, in sixteenths of a bit
  std::vector<std::size_t> lengths;

  // Less is better.
  bool operator<(const Cut& other) const {
    const auto counts = [](const Cut& c) {
      return std::tie(c.left_out, c.syllables, c.rewritten, c.lacking, c.rarity);
    };
    if (counts(*this) != counts(other)) return counts(*this) < counts(other);
    return lengths > other.lengths;  // the longest first syllable, and so on
  }
};

bool NeedsApostrophe(const std::string& letters) {
  return IsIn("aeo", letters[0]) || letters == "m" || letters == "n" || letters == "ng";
}

// What a syllable costs; a fused r, which rules add, costs nothing.
int RarityOf(const Notation& notation, const std::string& syllable) {
  const int language = notation.is_pinyin ? LANGUAGE_MANDARIN : LANGUAGE_CANTONESE;
  const int row = PhoneSets().at(language).pinyin_map.at(syllable)->id;
  return notation.is_pinyin ? notation::internal::kMandarinRarities[row]
                            : notation::internal::kCantoneseRarities[row];
}

bool IsNasal(const std::string& letters) {
  return letters.find_first_not_of("hmng") == std::string::npos;
}

// At most one mark, on a vowel, or on m or n where there is none.
bool HasRightMarks(const std::vector<Character>& letters) {
  const bool has_vowel = Text(letters).find_first_of("aeiouv") != std::string::npos;
  int marks = 0;
  for (const Character& c : letters) {
    if (c.tone != '\0' && has_vowel && !IsIn("aeiouv", c.ascii)) return false;
    marks += c.tone != '\0' ? 1 : 0;
  }
  return marks <= 1;
}

// Adds what it costs that a piece follows a cut without an apostrophe; false when that cannot be.
bool TakeApostrophe(const Notation& notation, bool is_marked, const std::vector<Character>& front,
                    Cut& cut) {
  if (cut.pieces.empty() || !NeedsApostrophe(Text(front))) return true;
  const bool may_lack = HasTone(front) ? HasTone(cut.pieces.back().letters) : Text(front) == "er";
  if (notation.is_pinyin) ++cut.lacking;
  if (!notation.is_pinyin) cut.rarity += 32;  // 2 bits
  return !is_marked || may_lack;
}

// Tries every cut of `letters`, which follow `cut`, and keeps the best.
// NOLINTNEXTLINE(misc-no-recursion): all cuts
void TryCuts(const Notation& notation, bool is_marked, const std::vector<Character>& letters,
             const Cut& cut, std::optional<Cut>& best, int& tries) {
  if (best && cut.left_out > best->left_out) return;
  if (++tries > kMostTries) return;
  if (letters.empty() && (!best || cut < *best)) best = cut;
  for (std::size_t length = 1; length <= letters.size(); ++length) {
    const auto middle = letters.begin() + static_cast<std::ptrdiff_t>(length);
    const std::vector<Character> front(letters.begin(), middle);
    const std::string spelling = Text(front);
    const Spelled spelled = Spell(notation, spelling);
    if (spelled.syllable.empty() || !HasRightMarks(front)) continue;
    const bool is_whole = cut.pieces.empty() && middle == letters.end();
    if (notation.is_pinyin && !is_marked && IsNasal(spelling) && !is_whole) continue;
    Cut next = cut;
    if (!TakeApostrophe(notation, is_marked, front, next)) continue;
    next.rarity += RarityOf(notation, spelled.syllable);
    next.syllables += spelled.has_er ? 2 : 1;
    next.rewritten += spelled.is_rewritten ? 1 : 0;
    next.lengths.push_back(length);
    next.pieces.push_back({front, spelled});
    TryCuts(notation, is_marked, {middle, letters.end()}, next, best, tries);
  }
  if (is_marked || letters.empty()) return;
  Cut without = cut;
  ++without.left_out;
  without.lengths.push_back(0);
  without.pieces.push_back({{letters.front()}, {}});
  TryCuts(notation, is_marked, {letters.begin() + 1, letters.end()}, without, best, tries);
}

// Reading

class Reader {
 public:
  explicit Reader(const Notation& notation) : notation_(notation) {}

  std::optional<Reading> Read(const std::string& text) {
    std::vector<Character> characters = Characters(notation_, text);
    if (notation_.Has(Rule::kAbbreviation)) MakeLoneLettersForeign(text, characters);
    const std::vector<Token> tokens = Tokens(notation_, characters);
    for (const Token& token : tokens) {
      has_marks_ = has_marks_ || HasTone(token.letters);
      has_digits_ = has_digits_ || !token.digits.empty();
    }
    for (const Token& token : tokens) {
      if (token.letters.empty()) {
        Report(token.problem, token.range.offset, token.range.end(), reading_.problems);
      } else if (token.digits.empty() && (has_marks_ || !has_digits_) &&
                 !IsErhua(Text(token.letters))) {
        ReadWord(token.letters);
      } else if (!ReadMarkedErhua(token)) {
        ReadSyllable(token);
      }
    }
    if (is_outside_) return std::nullopt;
    return reading_;
  }

 private:
  std::optional<Cut> BestCut(const std::vector<Character>& letters) {
    std::optional<Cut> best;
    TryCuts(notation_, has_marks_, letters, {}, best, tries_);
    is_outside_ = is_outside_ || tries_ > kMostTries;
    return best;
  }

  // Letters with a mark, then an r with the digit 5 or 0, which is not of a syllable "er".
  bool ReadMarkedErhua(const Token& token) {
    std::vector<Character> front = token.letters;
    const Character r = front.back();
    front.pop_back();
    if (token.digits.empty() || !IsIn("05", token.digits.front().ascii)) return false;
    if (!IsErhua(Text({r})) || !HasTone(front)) return false;
    const std::optional<Cut> whole = BestCut(token.letters);
    const std::optional<Cut> cut = BestCut(front);
    if (!cut || (whole && !whole->pieces.back().spelled.has_er)) return false;
    WriteMarked(*cut);
    ReadSyllable({{r}, token.digits, token.problem, token.range});
    return true;
  }

  // A group of letters that is one syllable.
  void ReadSyllable(const Token& token) {
    const std::vector<Character>& letters = token.letters;
    const char digit = token.digits.empty() ? '\0' : token.digits.front().ascii;
    const std::size_t begin = letters.front().begin;
    const std::size_t end = digit == '\0' ? letters.back().end : token.digits.front().end;
    const std::string spelling = Text(letters);
    const Spelled spelled = SpellAlone(notation_, spelling);
    if (spelled.syllable.empty()) {
      Report(ProblemKind::kUnknownSyllable, begin, end, reading_.problems);
    } else if (digit != '\0' &&
               (HasTone(letters) || !IsTone(digit) || (IsErhua(spelling) && IsIn("1234", digit)))) {
      Report(ProblemKind::kBadTone, begin, end, reading_.problems);
    } else {
      Write(spelled, ToneOfDigit(digit), begin, end, digit != '\0');
    }
    if (token.digits.size() > 1) {
      Report(ProblemKind::kBadTone, end, token.digits.back().end, reading_.problems);
    }
  }

  bool IsErhua(const std::string& spelling) const {
    return spelling == "r" && notation_.Has(Rule::kErhua);
  }

  bool IsTone(char digit) const {
    return notation_.is_pinyin ? digit <= '5' : '1' <= digit && digit <= '7';
  }

  std::string ToneOfDigit(char digit) const {
    const bool is_neutral = notation_.Has(Rule::kNeutralTone);
    if (digit == '\0' && has_marks_) return "5";
    if (digit == '\0') return is_neutral && has_digits_ ? "5" : "";
    return {digit == '0' && is_neutral ? '5' : digit};
  }

  // A group of letters without a digit, in a text with marks or without tones.
  void ReadWord(const std::vector<Character>& letters) {
    is_outside_ = is_outside_ || letters.size() > kMostLettersToCut;
    if (is_outside_) return;
    const std::optional<Cut> best = BestCut(letters);
    const std::string spelling = Text(letters);
    if (!best || spelling.find('^') != std::string::npos) {
      Report(ProblemKind::kUnknownSyllable, letters.front().begin, letters.back().end,
             reading_.problems);
    } else if (has_marks_) {
      WriteMarked(*best);
    } else {
      WriteToneless(*best);
    }
  }

  void WriteMarked(const Cut& cut) {
    for (const Piece& piece : cut.pieces) {
      std::string tone = "5";
      for (const Character& c : piece.letters) {
        if (c.tone != '\0') tone = c.tone;
      }
      Write(piece.spelled, tone, piece.letters.front().begin, piece.letters.back().end, false);
    }
  }

  // A letter that is left out is shown as it is.
  static Spelled Shown(const Piece& piece) {
    if (!piece.spelled.syllable.empty()) return piece.spelled;
    return {Text(piece.letters), false, false};
  }

  // Only what a rule rewrites is set apart. Letters around it that the cut leaves out, and that
  // would be read alone, are an unknown syllable.
  void WriteToneless(const Cut& cut) {
    const auto is_rewritten = [](const Piece& piece) { return piece.spelled.is_rewritten; };
    const auto is_left_out = [](const Piece& piece) { return piece.spelled.syllable.empty(); };
    for (auto begin = cut.pieces.begin(); begin != cut.pieces.end();) {
      auto end = std::find_if(begin, cut.pieces.end(), is_rewritten);
      if (begin == end) ++end;
      std::string shown;
      std::string letters;
      for (auto piece = begin; piece != end; ++piece) {
        shown += Shown(*piece).syllable;
        letters += Text(piece->letters);
      }
      const std::size_t offset = begin->letters.front().begin;
      const std::size_t limit = (end - 1)->letters.back().end;
      const bool is_all = begin == cut.pieces.begin() && end == cut.pieces.end();
      if (!is_all && std::all_of(begin, end, is_left_out) &&
          !SpellAlone(notation_, letters).syllable.empty()) {
        Report(ProblemKind::kUnknownSyllable, offset, limit, reading_.problems);
      } else {
        Spelled spelled = Shown(*begin);
        spelled.syllable = shown;
        Write(spelled, "", offset, limit, false);
      }
      begin = end;
    }
  }

  // What follows a digit directly touches it, unless a rule has rewritten one of the two.
  void Write(const Spelled& spelled, const std::string& tone, std::size_t begin, std::size_t end,
             bool has_digit) {
    const bool touches =
        begin == closed_at_ && !spelled.is_rewritten && !notation_.Has(Rule::kGlued);
    if (!reading_.text.empty() && !touches) reading_.text += ' ';
    reading_.text += spelled.syllable + tone;
    if (spelled.has_er) reading_.text += tone.empty() ? " er" : " er5";
    if (has_digit && !spelled.is_rewritten) closed_at_ = end;
  }

  const Notation notation_;
  bool has_marks_ = false;
  bool has_digits_ = false;
  int tries_ = 0;
  bool is_outside_ = false;                    // of what is modelled
  std::size_t closed_at_ = std::string::npos;  // after the digit that was written last
  Reading reading_;
};

}  // namespace

std::optional<Reading> NormalizePinyin(const std::string& text, RuleSet rules) {
  return Reader({true, rules, nullptr}).Read(text);
}

std::optional<Reading> NormalizeJyutping(const std::string& text, RuleSet rules,
                                         const notation::AliasTable* aliases) {
  return Reader({false, rules, aliases}).Read(text);
}

}  // namespace qeo::sp::reference
