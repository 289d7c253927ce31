// ph2ph: the records are those of the reference form, one for each closing byte that ph2tp finds;
// written as names and digits, pr2ph reads them as the same names and digits.

#include <algorithm>

#include "fuzz/conversions.h"
#include "tests/reference/compare.h"
#include "tests/reference/reference.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using Syllables = std::vector<sp::SyllableInfo>;

// The empty text when a syllable has no phones, which the notation cannot write.
std::string Written(const Syllables& syllables) {
  std::string written;
  for (const sp::SyllableInfo& syllable : syllables) {
    if (syllable.phones.empty()) return {};
    for (const sp::PhoneInfo* phone : syllable.phones) written += std::string(phone->name) + ' ';
    written += std::to_string(syllable.raw_tone) + ',';
  }
  return written;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int language = fuzzing::ChooseLanguage(input);
  const std::string bytes = input.Rest();
  const std::vector<unsigned char> phone_ids(bytes.begin(), bytes.end());

  Syllables syllables = fuzzing::StaleSyllables();
  Syllables expected;
  const int result = sp::ph2ph(language, phone_ids, syllables);
  Expect(result == sp::reference::ph2ph(language, phone_ids, expected),
         "the result is the reference's");
  Expect(sp::reference::Same(syllables, expected), "the records are the reference's");
  if (result != 0) return 0;

  const auto closing = std::count_if(phone_ids.begin(), phone_ids.end(), [&](unsigned char id) {
    return sp::ph2tp(language, id) == 1;
  });
  Expect(static_cast<std::size_t>(closing) == syllables.size(), "a closing byte makes a record");

  const std::string written = Written(syllables);
  if (written.empty()) return 0;
  Syllables read = fuzzing::StaleSyllables();
  Expect(sp::pr2ph(language, written, read) == 0, "pr2ph reads the names");
  // By name, as two phones can share one.
  Expect(Written(read) == written, "pr2ph reads the same names and digits");
  return 0;
}
