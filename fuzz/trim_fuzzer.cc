// trim: bytes are taken off one by one, as slowly as it is said; what is left has none of them at
// its ends, and trimming again changes nothing.

#include "fuzz/fuzzing.h"
#include "xstr/xstr.h"

namespace {

using namespace qeo;
using fuzzing::Expect;

bool Occurs(char c, const std::string& chars) { return chars.find(c) != std::string::npos; }

std::string TrimSlowly(std::string text, const std::string& chars, bool both_ends) {
  while (!text.empty() && Occurs(text.front(), chars)) text.erase(0, 1);
  while (both_ends && !text.empty() && Occurs(text.back(), chars)) text.pop_back();
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const bool both_ends = input.ChooseBool();
  const std::string chars = input.TakePart();
  const std::string text = input.Rest();
  const std::string trimmed = xstr::trim(text, chars, both_ends);
  Expect(trimmed == TrimSlowly(text, chars, both_ends), "it is the slow form's");
  Expect(xstr::trim(trimmed, chars, both_ends) == trimmed, "there is nothing more to trim");

  const std::string mirrored(text.rbegin(), text.rend());
  const std::string other_end = xstr::trim(mirrored, chars, true);
  Expect(!both_ends || trimmed == std::string(other_end.rbegin(), other_end.rend()),
         "both ends are trimmed alike");
  return 0;
}
