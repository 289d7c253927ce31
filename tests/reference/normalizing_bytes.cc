#include "tests/reference/normalizing_bytes.h"

namespace qeo::sp::reference {

using notation::ProblemKind;

bool IsDigit(char c) { return '0' <= c && c <= '9'; }
bool IsCapital(char c) { return 'A' <= c && c <= 'Z'; }
bool IsBlank(char c) { return c == ' ' || ('\t' <= c && c <= '\r'); }
char Small(char c) { return IsCapital(c) ? static_cast<char>(c - 'A' + 'a') : c; }

void Report(ProblemKind kind, std::size_t begin, std::size_t end, std::vector<Misfit>& problems) {
  const bool merges = kind == ProblemKind::kForeignText || kind == ProblemKind::kInvalidUtf8;
  if (merges && !problems.empty() && problems.back().kind == kind &&
      problems.back().range.end() == begin) {
    problems.back().range.length = end - problems.back().range.offset;
  } else {
    problems.push_back({kind, {begin, end - begin}});
  }
}

CodePoint Decode(const std::string& text, std::size_t begin) {
  const auto first = static_cast<unsigned char>(text[begin]);
  const std::size_t length = first < 0x80 ? 1 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
  const std::int32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  std::int32_t value = length == 1 ? first : first & (0x7f >> length);
  for (std::size_t i = begin + 1; i < begin + length; ++i) {
    const unsigned byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    if ((byte & 0xc0U) != 0x80) return {kNoCodePoint, begin, begin + 1};
    value = value * 64 + static_cast<std::int32_t>(byte & 0x3fU);
  }
  const bool is_lead = first < 0x80 || (0xc0 <= first && first < 0xf8);
  const bool is_surrogate = 0xd800 <= value && value < 0xe000;
  if (!is_lead || value < smallest[length] || value > 0x10ffff || is_surrogate) {
    return {kNoCodePoint, begin, begin + 1};
  }
  return {value, begin, begin + length};
}

}  // namespace qeo::sp::reference
