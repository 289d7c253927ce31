// Phone-id sequences, back into syllables.

#include "phoneme/phone_ids.h"

#include "phoneme/phoneme.h"
#include "phoneme/registry.h"
#include "phoneme/syllable_writer.h"

namespace qeo::sp {

using namespace internal;

int ph2ph(int language, const std::vector<unsigned char>& phone_ids,
          std::vector<SyllableInfo>& syllables) {
  syllables.clear();
  const Language& in_use = FindLanguage(language, LANGUAGE_AMERICAN_ENGLISH);
  const auto phone_count = static_cast<int>(in_use.mapping->phone_count);
  SyllableWriter writer(in_use, syllables);
  for (const unsigned char byte : phone_ids) {
    if (byte < kFirstPhoneByte) {
      writer.EndSyllable(byte);
    } else if (byte - kFirstPhoneByte < phone_count) {
      writer.AddPhone(byte - kFirstPhoneByte);
    } else {
      writer.Discard();
      return -1;
    }
  }
  return 0;
}

int ph2tp(int /*language*/, unsigned char phone_id) {
  constexpr int kSyllableEnd = 1;
  constexpr int kPhone = 2;
  return phone_id < kFirstPhoneByte ? kSyllableEnd : kPhone;
}

}  // namespace qeo::sp
