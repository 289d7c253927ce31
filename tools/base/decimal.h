#ifndef TOOLS_BASE_DECIMAL_H_
#define TOOLS_BASE_DECIMAL_H_

// Decimal numbers to text and back, the same in every process locale.

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace qeo::tool {

/// Reads a whole text as one decimal number; nothing when it is anything else or out of range.
template <typename Number>
std::optional<Number> ParseNumber(std::string_view text) {
  Number number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

/// Appends a number in decimal.
template <typename Number>
void AppendNumber(Number number, std::string& out) {
  char digits[24];  // room for any 64-bit number
  out.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

}  // namespace qeo::tool

#endif  // TOOLS_BASE_DECIMAL_H_
