#ifndef PHONEME_TESTS_STALE_H_
#define PHONEME_TESTS_STALE_H_

// What outputs hold before a call, so that a call that forgets to empty one is seen.

#include "phoneme/phoneme.h"

namespace qeo::sp {

/// A record with something in every field.
inline SyllableInfo StaleSyllable() {
  SyllableInfo syllable;
  syllable.language = 77;
  syllable.phones = {GetPhoneInfoById(LANGUAGE_AMERICAN_ENGLISH, 7), nullptr};
  syllable.code = 99999;
  syllable.tone = 88;
  syllable.raw_tone = 99;
  return syllable;
}

}  // namespace qeo::sp

#endif  // PHONEME_TESTS_STALE_H_
