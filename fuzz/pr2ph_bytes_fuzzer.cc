// pr2ph to bytes: they are those of the reference form, after what the caller had; on success
// ph2ph regroups what was appended into the records of the other pr2ph.

#include <algorithm>

#include "fuzz/conversions.h"
#include "tests/reference/compare.h"
#include "tests/reference/reference.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using PhoneIds = std::vector<unsigned char>;

void ExpectRecords(int language, const std::string& pronunciation, const PhoneIds& phone_ids) {
  std::vector<sp::SyllableInfo> regrouped = fuzzing::StaleSyllables();
  std::vector<sp::SyllableInfo> parsed = fuzzing::StaleSyllables();
  Expect(sp::ph2ph(language, phone_ids, regrouped) == 0, "ph2ph reads the bytes");
  Expect(sp::pr2ph(language, pronunciation, parsed) == 0, "the other pr2ph succeeds");
  Expect(sp::reference::Same(regrouped, parsed), "both have the same records");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int language = fuzzing::ChooseLanguage(input);
  const std::string before = input.TakePart();
  const std::string pronunciation = input.Rest();

  const PhoneIds stale(before.begin(), before.end());
  PhoneIds phone_ids = stale;
  PhoneIds expected = stale;
  const int result = sp::pr2ph(language, pronunciation, phone_ids);
  Expect(result == sp::reference::pr2ph(language, pronunciation, expected),
         "the result is the reference's");
  Expect(phone_ids == expected, "the bytes are the reference's");
  if (result != 0) return 0;

  const auto end = static_cast<std::ptrdiff_t>(stale.size());
  Expect(std::equal(stale.begin(), stale.end(), phone_ids.begin()), "what was there stays");
  ExpectRecords(language, pronunciation, {phone_ids.begin() + end, phone_ids.end()});
  return 0;
}
