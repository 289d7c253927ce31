#ifndef FUZZ_CONVERSIONS_H_
#define FUZZ_CONVERSIONS_H_

// What the targets of the core library share: the language ids to ask with, and outputs that hold
// something already, so that a call that forgets to empty one is seen.

#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzzing.h"
#include "phoneme/phoneme.h"
#include "tests/reference/random_text.h"
#include "tests/stale.h"

namespace qeo::fuzzing {

/// One of the reference's ids, registered or on a border between the fallbacks, or any number.
inline int ChooseLanguage(Input& input) {
  constexpr std::size_t kCount = std::size(sp::reference::kLanguageIds);
  const std::size_t chosen = input.Choose(kCount + 1);
  return chosen < kCount ? sp::reference::kLanguageIds[chosen] : input.TakeInt();
}

inline std::vector<sp::SyllableInfo> StaleSyllables() { return {sp::StaleSyllable()}; }
inline std::vector<unsigned short> StaleCodes() { return {999}; }
inline std::vector<std::string> StaleTexts() { return {"stale"}; }

/// The codes of records, as py2code makes them.
inline std::vector<unsigned short> CodesOf(const std::vector<sp::SyllableInfo>& syllables) {
  std::vector<unsigned short> codes;
  codes.reserve(syllables.size());
  for (const sp::SyllableInfo& syllable : syllables) {
    codes.push_back(static_cast<unsigned short>(syllable.code));
  }
  return codes;
}

}  // namespace qeo::fuzzing

#endif  // FUZZ_CONVERSIONS_H_
