#include "xstr/xstr.h"

#include <array>
#include <charconv>

#include "xstr/views.h"

namespace qeo::xstr {

std::string trim(const std::string& text, const std::string& chars, bool both_ends) {
  return std::string(TrimView(text, chars, both_ends));
}

std::vector<std::string> split(const std::string& text, const std::string& separator,
                               int max_parts) {
  std::vector<std::string> parts;
  const auto limit = static_cast<std::size_t>(max_parts > 0 ? max_parts : 0);
  for (PieceReader pieces(text, separator); pieces.HasNext();) {
    const bool is_last = limit != 0 && parts.size() + 1 == limit;
    parts.emplace_back(is_last ? pieces.Rest() : pieces.Next());
  }
  return parts;
}

std::string to_u8s(int value, int base) {
  constexpr int kMinBase = 2;
  constexpr int kMaxBase = 36;
  if (base < kMinBase || base > kMaxBase) return {};
  std::array<char, 33> digits{};  // a sign and, in base 2, 32 digits
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, base).ptr;
  return std::string(digits.data(), end);
}

}  // namespace qeo::xstr
