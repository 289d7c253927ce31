#ifndef PHONEME_ASCII_H_
#define PHONEME_ASCII_H_

// Kinds of ASCII characters, the same in every locale; most functions take bytes and code points.
// And text between blanks. Not installed.

#include <algorithm>
#include <string_view>

namespace qeo::ascii {

inline constexpr std::string_view kBlanks = "\t\n\v\f\r ";

constexpr bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
constexpr bool IsBlank(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool IsDigit(int c) { return c >= '0' && c <= '9'; }
constexpr bool IsCapital(int c) { return c >= 'A' && c <= 'Z'; }
constexpr bool IsSmall(int c) { return c >= 'a' && c <= 'z'; }
constexpr bool IsLetter(int c) { return IsSmall(c) || IsCapital(c); }
constexpr char ToSmall(char c) { return IsCapital(c) ? static_cast<char>(c | 0x20) : c; }

/// A text without blanks at its beginning.
inline std::string_view TrimFront(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text;
}

/// A text without blanks at its ends.
inline std::string_view Trim(std::string_view text) {
  text = TrimFront(text);
  text.remove_suffix(text.size() - (text.find_last_not_of(kBlanks) + 1));
  return text;
}

/// Takes the next word of `text`, with the blanks around it, off its front; an empty word when
/// there is none.
inline std::string_view TakeWord(std::string_view& text) {
  text = TrimFront(text);
  const std::string_view word(text.data(), std::min(text.find_first_of(kBlanks), text.size()));
  text.remove_prefix(word.size());
  text = TrimFront(text);
  return word;
}

}  // namespace qeo::ascii

#endif  // PHONEME_ASCII_H_
