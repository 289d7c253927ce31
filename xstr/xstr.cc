// The helpers over the standard library; all are plain byte work, blind to the process locale.

#include "xstr/xstr.h"

#include <array>
#include <charconv>

namespace qeo::xstr {

std::string trim(const std::string& text, const std::string& chars, bool both_ends) {
  const std::size_t first = text.find_first_not_of(chars);
  if (first == std::string::npos) return {};
  const std::size_t end = both_ends ? text.find_last_not_of(chars) + 1 : text.size();
  return text.substr(first, end - first);
}

std::vector<std::string> split(const std::string& text, const std::string& separator,
                               int max_parts) {
  if (separator.empty()) return {text};
  std::vector<std::string> parts;
  const auto limit = static_cast<std::size_t>(max_parts > 0 ? max_parts : 0);
  std::size_t begin = 0;
  while (limit == 0 || parts.size() + 1 < limit) {
    const std::size_t end = text.find(separator, begin);
    if (end == std::string::npos) break;
    parts.push_back(text.substr(begin, end - begin));
    begin = end + separator.size();
  }
  parts.push_back(text.substr(begin));
  return parts;
}

std::string to_u8s(int value, int base) {
  constexpr int kMinBase = 2;
  constexpr int kMaxBase = 36;
  if (base < kMinBase || base > kMaxBase) return {};
  std::array<char, 33> digits{};  // a sign and, in base 2, 32 digits
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, base).ptr;
  return {digits.data(), end};
}

}  // namespace qeo::xstr
