// Comparing and showing what conversions take and give.

#include "tests/reference/compare.h"

#include <algorithm>

namespace qeo::sp::reference {

bool Same(const SyllableInfo& a, const SyllableInfo& b) {
  return a.language == b.language && a.phones == b.phones && a.code == b.code && a.tone == b.tone &&
         a.raw_tone == b.raw_tone;
}

bool Same(const std::vector<SyllableInfo>& a, const std::vector<SyllableInfo>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const SyllableInfo& x, const SyllableInfo& y) { return Same(x, y); });
}

std::string Show(int number) { return std::to_string(number); }

std::string Show(const std::string& text) {
  std::string literal = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      literal += '\\';
      literal += c;
    } else if (0x20 <= byte && byte < 0x7f) {
      literal += c;
    } else {  // always three octal digits, so that a digit may follow
      literal += '\\';
      for (const unsigned shift : {6U, 3U, 0U}) {
        literal += static_cast<char>('0' + ((byte >> shift) & 7U));
      }
    }
  }
  return literal + "\"s";
}

std::string Show(const SyllableInfo& syllable) {
  std::string phones;
  for (const PhoneInfo* phone : syllable.phones) {
    phones += ' ';
    phones += phone == nullptr ? "null" : phone->name + ('#' + std::to_string(phone->id));
  }
  return "{language " + std::to_string(syllable.language) + ", phones" + phones + ", code " +
         std::to_string(syllable.code) + ", tone " + std::to_string(syllable.tone) + ", raw_tone " +
         std::to_string(syllable.raw_tone) + '}';
}

}  // namespace qeo::sp::reference
