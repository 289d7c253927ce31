// Phone-id sequences, back into syllables.

#include <cstddef>
#include <iterator>

#include "phoneme/phoneme.h"
#include "phoneme/registry.h"

namespace qeo::sp {

using namespace internal;

namespace {

/// The phones that the bytes of a sequence encode, so that a list is made of them at once.
class PhoneIterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = const PhoneInfo*;
  using difference_type = std::ptrdiff_t;
  using pointer = const value_type*;
  using reference = value_type;

  PhoneIterator() = default;
  PhoneIterator(const unsigned char* byte, const PhoneInfo* phone_list)
      : byte_(byte), phone_list_(phone_list) {}

  value_type operator*() const { return phone_list_ + (*byte_ - kFirstPhoneByte); }
  PhoneIterator& operator++() {
    ++byte_;
    return *this;
  }
  PhoneIterator operator++(int) {
    const PhoneIterator before = *this;
    ++byte_;
    return before;
  }
  bool operator==(const PhoneIterator& other) const { return byte_ == other.byte_; }
  bool operator!=(const PhoneIterator& other) const { return byte_ != other.byte_; }

 private:
  const unsigned char* byte_ = nullptr;
  const PhoneInfo* phone_list_ = nullptr;
};

}  // namespace

int ph2ph(int language, const std::vector<unsigned char>& phone_ids,
          std::vector<SyllableInfo>& syllables) {
  syllables.clear();
  const Language& in_use = PronunciationLanguage(language);
  const PhoneInfo* phone_list = in_use.mapping->phone_list;
  const auto phone_count = static_cast<int>(in_use.mapping->phone_count);
  const unsigned char* begin = phone_ids.data();
  const unsigned char* const end = begin + phone_ids.size();
  for (const unsigned char* byte = begin; byte != end; ++byte) {
    if (*byte < kFirstPhoneByte) {
      SyllableInfo& syllable = syllables.emplace_back();
      syllable.language = in_use.id;
      syllable.raw_tone = *byte;
      syllable.phones.assign(PhoneIterator(begin, phone_list), PhoneIterator(byte, phone_list));
      begin = byte + 1;
    } else if (*byte - kFirstPhoneByte >= phone_count) {
      syllables.clear();
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
