#ifndef PHONEME_SYLLABLE_WRITER_H_
#define PHONEME_SYLLABLE_WRITER_H_

// Syllables from a stream of phones and closing digits, as both pronunciation strings and phone-id
// sequences give them.

#include <cstddef>
#include <utility>
#include <vector>

#include "phoneme/name_index.h"
#include "phoneme/registry.h"

namespace qeo::sp::internal {

/// Appends to `syllables` in the language it is made for. Phones wait in a buffer until their
/// number is known, so that each syllable's list is allocated once.
class SyllableWriter {
 public:
  SyllableWriter(const Language& language, std::vector<SyllableInfo>& syllables)
      : language_(language.id), phone_list_(language.mapping->phone_list), syllables_(syllables) {}

  /// Adds the phone of a row to the syllable; a null pointer for NameIndex::kNoRow.
  bool AddPhone(int row) {
    if (buffered_ == kBufferSize) Spill();
    buffer_[buffered_++] = row != NameIndex::kNoRow ? phone_list_ + row : nullptr;
    return true;
  }

  /// Closes the syllable, which may have no phones, and begins the next.
  void EndSyllable(unsigned char digit) {
    SyllableInfo& syllable = syllables_.emplace_back();
    syllable.language = language_;
    syllable.raw_tone = digit;
    if (!spilled_.empty()) {
      Spill();
      syllable.phones = std::exchange(spilled_, {});
      return;
    }
    syllable.phones.assign(buffer_, buffer_ + buffered_);
    buffered_ = 0;
  }

  /// Takes back everything.
  void Discard() { syllables_.clear(); }

 private:
  static constexpr std::size_t kBufferSize = 16;  // far above the phones of any real syllable

  void Spill() {
    spilled_.insert(spilled_.end(), buffer_, buffer_ + buffered_);
    buffered_ = 0;
  }

  int language_;
  const PhoneInfo* phone_list_;
  std::vector<SyllableInfo>& syllables_;
  const PhoneInfo* buffer_[kBufferSize];
  std::size_t buffered_ = 0;
  std::vector<const PhoneInfo*> spilled_;  // what a longer syllable holds before the buffer
};

}  // namespace qeo::sp::internal

#endif  // PHONEME_SYLLABLE_WRITER_H_
