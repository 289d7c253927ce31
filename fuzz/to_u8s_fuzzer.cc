// to_u8s: the digits are those of the base, without a leading zero, and read back they are the
// value; another base gives nothing.

#include "fuzz/fuzzing.h"
#include "xstr/xstr.h"

namespace {

using namespace qeo;
using fuzzing::Expect;

constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuvwxyz";

// In a wider type, so that the lowest value is not a special case.
std::int64_t Read(std::string_view written, int base) {
  const bool is_negative = written.front() == '-';
  if (is_negative) written.remove_prefix(1);
  Expect(!written.empty(), "there is a digit");
  Expect(written.front() != '0' || (written.size() == 1 && !is_negative), "no leading zero");
  std::int64_t value = 0;
  for (const char c : written) {
    const auto digit = static_cast<std::int64_t>(kDigits.find(c));
    Expect(digit >= 0 && digit < base, "a digit is one of the base");
    value = value * base + digit;
  }
  return is_negative ? -value : value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int base = input.ChooseBool() ? input.TakeInt() : static_cast<int>(input.Choose(40));
  const int value = input.TakeInt();
  const std::string written = xstr::to_u8s(value, base);
  const bool is_base = base >= 2 && base <= 36;
  Expect(written.empty() == !is_base, "a base is 2 to 36");
  if (!is_base) return 0;
  Expect(Read(written, base) == value, "it reads back");
  Expect(base != 10 || written == std::to_string(value), "decimal is the standard library's");
  return 0;
}
