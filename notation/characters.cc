// Characters as utf8proc knows them: decomposed canonically, then a base letter and its marks.

#include "notation/characters.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>

#include "phoneme/ascii.h"

namespace qeo::notation::internal {
namespace {

// Whether a mark may begin with this byte, as U+0300, the first of them, does.
constexpr bool MayBeginMark(char c) { return static_cast<unsigned char>(c) >= 0xcc; }

constexpr bool IsSeparator(utf8proc_int32_t c) {
  return ascii::IsBlank(c) || c == '\'' || c == '`';
}

// Letters that may have a tone mark. The syllabic nasals have no vowel to carry it.
constexpr bool CarriesTone(char letter) {
  return std::string_view("aeiouvmnE").find(letter) != std::string_view::npos;
}

// The marks on a letter.
struct Marks {
  char tone = kNoTone;
  bool has_diaeresis = false;
  bool has_circumflex = false;
  bool has_other = false;  // or one of the above a second time

  void Add(utf8proc_int32_t mark) {
    switch (mark) {
      case 0x0304:  // macron
        return AddTone('1');
      case 0x0301:  // acute
        return AddTone('2');
      case 0x030c:  // caron
      case 0x0306:  // breve, often written for the caron
        return AddTone('3');
      case 0x0300:  // grave
        return AddTone('4');
      case 0x0308:
        has_other = has_other || has_diaeresis;
        has_diaeresis = true;
        return;
      case 0x0302:
        has_other = has_other || has_circumflex;
        has_circumflex = true;
        return;
      default:
        has_other = true;
    }
  }

  bool Any() const { return tone != kNoTone || has_diaeresis || has_circumflex || has_other; }

 private:
  void AddTone(char digit) {
    has_other = has_other || tone != kNoTone;
    tone = digit;
  }
};

struct Decoded {
  utf8proc_int32_t code_point = -1;  // negative when the bytes are not UTF-8
  std::size_t length = 1;
};

Decoded Decode(std::string_view text, std::size_t offset) {
  const auto* const bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data()) + offset;
  const auto left = static_cast<utf8proc_ssize_t>(text.size() - offset);
  utf8proc_int32_t code_point = -1;
  const utf8proc_ssize_t length = utf8proc_iterate(bytes, left, &code_point);
  if (length <= 0) return {};
  return {code_point, static_cast<std::size_t>(length)};
}

// A code point and what it is made of; no decomposition that is asked for is longer than four.
struct Parts {
  std::array<utf8proc_int32_t, 4> code_points = {};
  std::size_t count = 0;
};

Parts Decompose(utf8proc_int32_t code_point, utf8proc_option_t compatibility) {
  Parts parts;
  int last_boundary = 0;
  const utf8proc_ssize_t count = utf8proc_decompose_char(
      code_point, parts.code_points.data(), static_cast<utf8proc_ssize_t>(parts.code_points.size()),
      static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | compatibility), &last_boundary);
  parts.count = std::min(static_cast<std::size_t>(count), parts.code_points.size());
  return parts;
}

constexpr utf8proc_option_t kCanonical = static_cast<utf8proc_option_t>(0);

bool IsMark(utf8proc_int32_t code_point) {
  const utf8proc_category_t category = utf8proc_category(code_point);
  return category == UTF8PROC_CATEGORY_MN || category == UTF8PROC_CATEGORY_MC ||
         category == UTF8PROC_CATEGORY_ME;
}

// Signs that Unicode counts as punctuation but that have a meaning.
constexpr bool IsMeaningfulSign(utf8proc_int32_t c) {
  return c == '#' || c == '%' || c == '&' || c == '*' || c == '@' || c == '\\';
}

// Middle dots and apostrophes that Unicode counts as something else.
constexpr bool IsPunctuationByUse(utf8proc_int32_t c) {
  return c == 0x2219 || c == 0x22c5 || c == 0x02bb || c == 0x02bc;
}

CharacterKind KindOfSign(utf8proc_int32_t code_point) {
  if (code_point == ':') return CharacterKind::kColon;
  if (IsMeaningfulSign(code_point)) return CharacterKind::kForeign;
  if (IsPunctuationByUse(code_point)) return CharacterKind::kPunctuation;
  const utf8proc_category_t category = utf8proc_category(code_point);
  const bool is_punctuation =
      (category >= UTF8PROC_CATEGORY_PC && category <= UTF8PROC_CATEGORY_PO) ||
      (category >= UTF8PROC_CATEGORY_ZS && category <= UTF8PROC_CATEGORY_ZP) ||
      category == UTF8PROC_CATEGORY_CF;
  return is_punctuation ? CharacterKind::kPunctuation : CharacterKind::kForeign;
}

// The blocks of Latin letters beyond ASCII, phonetic ones included.
bool IsOtherLatinLetter(utf8proc_int32_t c) {
  const utf8proc_category_t category = utf8proc_category(c);
  if (category < UTF8PROC_CATEGORY_LU || category > UTF8PROC_CATEGORY_LO) return false;
  return c < 0x02b0 || (c >= 0x1e00 && c <= 0x1eff) || (c >= 0x2c60 && c <= 0x2c7f) ||
         (c >= 0xa720 && c <= 0xa7ff) || (c >= 0xab30 && c <= 0xab6f);
}

// The ASCII character that a full-width one, or a raised or lowered digit, stands for; or itself.
utf8proc_int32_t WithoutWidth(utf8proc_int32_t code_point) {
  if (code_point < 0x80) return code_point;
  const utf8proc_propval_t type = utf8proc_get_property(code_point)->decomp_type;
  const bool is_wide = type == UTF8PROC_DECOMP_TYPE_WIDE;
  const bool is_raised = type == UTF8PROC_DECOMP_TYPE_SUPER || type == UTF8PROC_DECOMP_TYPE_SUB;
  if (!is_wide && !is_raised) return code_point;
  const Parts parts = Decompose(code_point, UTF8PROC_COMPAT);
  const utf8proc_int32_t plain = parts.code_points[0];
  const bool is_meant = is_wide ? plain < 0x80 : ascii::IsDigit(plain);
  return parts.count == 1 && is_meant ? plain : code_point;
}

// The ASCII letter that a letter of phonetic type stands for; or itself.
utf8proc_int32_t WithoutVariant(utf8proc_int32_t code_point) {
  if (code_point == 0x0251) return 0x61;            // a
  return code_point == 0x0261 ? 0x67 : code_point;  // g
}

void SetLetter(utf8proc_int32_t base, const Marks& marks, CharacterClass& character) {
  character.is_capital = ascii::IsCapital(base);
  character.ascii = ascii::ToSmall(static_cast<char>(base));
  character.tone = marks.tone;
  character.has_diaeresis = marks.has_diaeresis;
  bool is_known = !marks.has_other && !(marks.has_diaeresis && marks.has_circumflex);
  if (marks.has_diaeresis) {
    is_known = is_known && character.ascii == 'u';
    character.ascii = 'v';
  } else if (marks.has_circumflex) {
    is_known = is_known && character.ascii == 'e';
    character.ascii = kCircumflexE;
    character.is_variant = true;
  }
  is_known = is_known && (marks.tone == kNoTone || CarriesTone(character.ascii));
  character.kind = is_known ? CharacterKind::kLetter : CharacterKind::kForeignLetter;
}

// `is_equivalent`: the code point stands for another one, as K for the Kelvin sign.
CharacterClass Classify(utf8proc_int32_t code_point, bool is_equivalent, const Marks& marks) {
  CharacterClass character;
  utf8proc_int32_t base = WithoutWidth(code_point);
  character.is_full_width = is_equivalent || base != code_point;
  const utf8proc_int32_t letter = WithoutVariant(base);
  character.is_variant = letter != base;
  base = letter;
  if (ascii::IsLetter(base)) {
    SetLetter(base, marks, character);
  } else if (IsOtherLatinLetter(base)) {
    character.kind = CharacterKind::kForeignLetter;
  } else if (marks.Any()) {
    character.kind = CharacterKind::kForeign;
  } else if (ascii::IsDigit(base)) {
    character.kind = CharacterKind::kDigit;
    character.ascii = static_cast<char>(base);
  } else if (IsSeparator(base)) {  // the library does not know a full-width one
    character.kind =
        character.is_full_width ? CharacterKind::kPunctuation : CharacterKind::kSeparator;
  } else {
    character.kind = KindOfSign(base);
  }
  return character;
}

void AddMarks(const Parts& parts, std::size_t first, Marks& marks) {
  for (std::size_t i = first; i < parts.count; ++i) marks.Add(parts.code_points[i]);
}

// A code point, and the marks on it and after it.
class Marked {
 public:
  explicit Marked(utf8proc_int32_t code_point)
      : code_point_(code_point), parts_(Decompose(code_point, kCanonical)) {
    AddMarks(parts_, 1, marks_);
  }

  void Add(utf8proc_int32_t mark) { AddMarks(Decompose(mark, kCanonical), 0, marks_); }

  CharacterClass Class() const {
    const utf8proc_int32_t base = parts_.code_points[0];
    return Classify(base, parts_.count == 1 && base != code_point_, marks_);
  }

 private:
  utf8proc_int32_t code_point_;
  Parts parts_;
  Marks marks_;
};

// Those of one and two bytes, which is nearly all that romanisations have.
class ShortCharacters {
 public:
  ShortCharacters() {
    for (std::size_t i = 0; i < classes_.size(); ++i) {
      classes_[i] = Marked(static_cast<utf8proc_int32_t>(i)).Class();
    }
  }

  const CharacterClass& operator[](std::size_t code_point) const { return classes_[code_point]; }

 private:
  std::array<CharacterClass, 0x800> classes_;
};

const ShortCharacters& Table() {
  static const ShortCharacters short_characters;
  return short_characters;
}

// The bytes of a character of one or two bytes; 0 for a longer one, and for what is not UTF-8.
std::size_t ShortLength(std::string_view text, std::size_t offset) {
  const auto first = static_cast<unsigned char>(text[offset]);
  if (first < 0x80) return 1;
  if (first < 0xc2 || first >= 0xe0 || offset + 1 == text.size()) return 0;
  return (static_cast<unsigned char>(text[offset + 1]) & 0xc0U) == 0x80U ? 2 : 0;
}

std::size_t ShortCodePoint(std::string_view text, std::size_t offset, std::size_t length) {
  const auto first = static_cast<unsigned char>(text[offset]);
  if (length == 1) return first;
  return (first & 0x1fU) << 6U | (static_cast<unsigned char>(text[offset + 1]) & 0x3fU);
}

// Any character, by its code points.
Character ReadLongCharacter(std::string_view text, std::size_t offset) {
  const Decoded decoded = Decode(text, offset);
  if (decoded.code_point < 0) {
    Character invalid;
    invalid.kind = CharacterKind::kInvalid;
    invalid.range = {offset, 1};
    return invalid;
  }
  Marked marked(decoded.code_point);
  std::size_t end = offset + decoded.length;
  while (end < text.size() && MayBeginMark(text[end])) {
    const Decoded next = Decode(text, end);
    if (next.code_point < 0 || !IsMark(next.code_point)) break;
    marked.Add(next.code_point);
    end += next.length;
  }
  return {marked.Class(), {offset, end - offset}};
}

}  // namespace

void MakeCharacterTable() { static_cast<void>(Table()); }

Character ReadCharacter(std::string_view text, std::size_t offset) {
  const std::size_t length = ShortLength(text, offset);
  const std::size_t end = offset + length;
  const bool may_be_marked = end < text.size() && MayBeginMark(text[end]);
  if (length == 0 || may_be_marked) return ReadLongCharacter(text, offset);
  return {Table()[ShortCodePoint(text, offset, length)], {offset, length}};
}

}  // namespace qeo::notation::internal
