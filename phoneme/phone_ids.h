#ifndef PHONEME_PHONE_IDS_H_
#define PHONEME_PHONE_IDS_H_

namespace qeo::sp::internal {

/// In a phone-id sequence the bytes below this close a syllable, and a phone is its id plus this.
inline constexpr int kFirstPhoneByte = 10;

}  // namespace qeo::sp::internal

#endif  // PHONEME_PHONE_IDS_H_
