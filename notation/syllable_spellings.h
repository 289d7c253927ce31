#ifndef NOTATION_SYLLABLE_SPELLINGS_H_
#define NOTATION_SYLLABLE_SPELLINGS_H_

// The rows of a language's syllable table as text, read once through the library's public functions
// by those who need them often. Not installed.

#include <string>
#include <vector>

#include "phoneme/phoneme.h"

namespace qeo::notation::internal {

/// A syllable code is row * 10 + tone.
inline constexpr int kTonesPerRow = 10;

/// The toneless spellings of a language, in row order; none when it has no syllables.
inline std::vector<std::string> SyllableSpellings(int language) {
  std::vector<std::string> spellings;
  sp::SyllableInfo syllable;
  for (int code = 0;; code += kTonesPerRow) {
    const auto short_code = static_cast<unsigned short>(code);
    syllable.phones.clear();
    const int result = sp::code2ph(language, short_code, syllable);
    if (result != 0) return spellings;
    spellings.push_back(sp::code2py(language, short_code, false));
  }
}

}  // namespace qeo::notation::internal

#endif  // NOTATION_SYLLABLE_SPELLINGS_H_
