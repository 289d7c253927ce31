#ifndef PHONEME_ASCII_H_
#define PHONEME_ASCII_H_

// Kinds of ASCII characters, whatever the locale; most are asked of bytes and of code points. Not
// installed.

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

}  // namespace qeo::ascii

#endif  // PHONEME_ASCII_H_
