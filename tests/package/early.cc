#include "early.h"

#include <phoneme/phoneme.h>

namespace {

int Convert() {
  std::vector<qeo::sp::SyllableInfo> syllables;
  qeo::sp::py2ph(qeo::sp::LANGUAGE_MANDARIN, "ni3hao3", syllables);
  return static_cast<int>(syllables.size());
}

const int early_syllable_count = Convert();

}  // namespace

int EarlySyllableCount() { return early_syllable_count; }
