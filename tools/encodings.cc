#include "tools/encodings.h"

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

}  // namespace

std::string EncodingProblem(std::string_view beginning, std::string_view use) {
  for (const Encoding& encoding : kEncodings) {
    if (beginning.substr(0, encoding.beginning.size()) == encoding.beginning) {
      return "it is " + std::string(encoding.name) +
             ", not UTF-8 text; try: " + std::string(encoding.command) + " FILE " +
             std::string(use);
    }
  }
  return "";
}

}  // namespace qeo::tool
