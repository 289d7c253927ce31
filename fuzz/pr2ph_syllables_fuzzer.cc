// pr2ph to records: they are those of the reference form; where no phone is null, the other pr2ph
// succeeds as well and ph2ph regroups its bytes into the same records.

#include <algorithm>

#include "fuzz/conversions.h"
#include "tests/reference/compare.h"
#include "tests/reference/reference.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using Syllables = std::vector<sp::SyllableInfo>;

bool HasNullPhone(const sp::SyllableInfo& syllable) {
  return std::find(syllable.phones.begin(), syllable.phones.end(), nullptr) !=
         syllable.phones.end();
}

void ExpectRegrouped(int language, const std::string& pronunciation, const Syllables& syllables) {
  std::vector<unsigned char> phone_ids;
  Expect(sp::pr2ph(language, pronunciation, phone_ids) == 0, "the other pr2ph succeeds");
  Syllables regrouped = fuzzing::StaleSyllables();
  Expect(sp::ph2ph(language, phone_ids, regrouped) == 0, "ph2ph reads its bytes");
  Expect(sp::reference::Same(regrouped, syllables), "ph2ph regroups them into the records");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int language = fuzzing::ChooseLanguage(input);
  const std::string pronunciation = input.Rest();

  Syllables syllables = fuzzing::StaleSyllables();
  Syllables expected;
  const int result = sp::pr2ph(language, pronunciation, syllables);
  Expect(result == sp::reference::pr2ph(language, pronunciation, expected),
         "the result is the reference's");
  Expect(sp::reference::Same(syllables, expected), "the records are the reference's");
  if (result == 0 && std::none_of(syllables.begin(), syllables.end(), HasNullPhone)) {
    ExpectRegrouped(language, pronunciation, syllables);
  }
  return 0;
}
