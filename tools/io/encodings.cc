#include "tools/io/encodings.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace qeo::tool {
namespace {

using namespace std::string_view_literals;

struct Encoding {
  std::string_view beginning;
  std::string_view name;
  std::string_view command;
};

// UTF-32 is before UTF-16, whose mark it begins with.
constexpr Encoding kEncodings[] = {
    {"\xFF\xFE\0\0"sv, "UTF-32", "iconv -f UTF-32 -t UTF-8"},
    {"\0\0\xFE\xFF"sv, "UTF-32", "iconv -f UTF-32 -t UTF-8"},
    {"\xFF\xFE"sv, "UTF-16", "iconv -f UTF-16 -t UTF-8"},
    {"\xFE\xFF"sv, "UTF-16", "iconv -f UTF-16 -t UTF-8"},
    {"\x1F\x8B\x08"sv, "gzip", "gzip -dc"},
    {"\x28\xB5\x2F\xFD"sv, "zstd", "zstd -dc"},
    {"\xFD\x37zXZ\0"sv, "xz", "xz -dc"},
    {"BZh91AY&SY"sv, "bzip2", "bzip2 -dc"},
};

constexpr Encoding kUtf32Little = {"", "UTF-32", "iconv -f UTF-32LE -t UTF-8"};
constexpr Encoding kUtf32Big = {"", "UTF-32", "iconv -f UTF-32BE -t UTF-8"};
constexpr Encoding kUtf16Little = {"", "UTF-16", "iconv -f UTF-16LE -t UTF-8"};
constexpr Encoding kUtf16Big = {"", "UTF-16", "iconv -f UTF-16BE -t UTF-8"};

// UTF-16 and UTF-32 without a mark, by the places of their NUL bytes, which other texts do not
// have: half of the bytes of each character in UTF-32, and one of the two bytes of an ASCII
// character in UTF-16, where at least half of the characters must be ASCII.
const Encoding* FindUnmarked(std::string_view beginning) {
  constexpr std::size_t kEnough = 512;
  constexpr std::size_t kFewest = 2;  // characters
  std::array<std::size_t, 4> nuls = {};
  const std::size_t size = std::min(beginning.size(), kEnough);
  for (std::size_t i = 0; i < size; ++i) nuls[i % 4] += beginning[i] == '\0' ? std::size_t{1} : 0;
  const std::size_t wide = size / 4;
  if (wide >= kFewest && nuls[2] >= wide && nuls[3] >= wide && nuls[0] == 0) return &kUtf32Little;
  if (wide >= kFewest && nuls[0] >= wide && nuls[1] >= wide && nuls[3] == 0) return &kUtf32Big;
  const std::size_t even = nuls[0] + nuls[2];
  const std::size_t odd = nuls[1] + nuls[3];
  const std::size_t most = std::max(kFewest, size / 4);  // half of the pairs
  if (even == 0 && odd >= most) return &kUtf16Little;
  return odd == 0 && even >= most ? &kUtf16Big : nullptr;
}

const Encoding* FindEncoding(std::string_view beginning) {
  for (const Encoding& encoding : kEncodings) {
    if (beginning.substr(0, encoding.beginning.size()) == encoding.beginning) return &encoding;
  }
  return FindUnmarked(beginning);
}

}  // namespace

std::optional<std::string> EncodingProblem(std::string_view beginning, std::string_view use) {
  const Encoding* const encoding = FindEncoding(beginning);
  if (encoding == nullptr) return std::nullopt;
  return "it is " + std::string(encoding->name) +
         ", not UTF-8 text; try: " + std::string(encoding->command) + " FILE " + std::string(use);
}

}  // namespace qeo::tool
