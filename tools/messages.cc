#include "tools/messages.h"

#include <cstddef>
#include <system_error>

namespace qeo::tool {
namespace {

constexpr std::size_t kLongestQuote = 1000;  // bytes of the text

bool IsControl(char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }

// Whether a byte goes on with a UTF-8 character that began before it.
bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

std::string Escaped(std::string_view text) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string escaped;
  for (const char c : text) {
    if (IsControl(c)) {
      const auto byte = static_cast<unsigned char>(c);
      escaped += {'\\', 'x', kDigits[byte / 16], kDigits[byte % 16]};
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string Quoted(std::string_view text) {
  if (text.size() <= kLongestQuote) {
    return '"' + Escaped(text) + '"';
  }
  std::size_t size = kLongestQuote;
  while (size > 0 && IsContinuation(text[size])) {
    --size;
  }
  return '"' + Escaped(text.substr(0, size)) + "...\"";
}

void AppendMessage(std::string_view message, std::string& out) {
  out += "phoneme: ";
  out += message;
  out += '\n';
}

std::string SystemProblem(std::string_view action, int error) {
  return std::string(action) + ": " + std::generic_category().message(error);
}

}  // namespace qeo::tool
