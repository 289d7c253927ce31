#ifndef NOTATION_SYLLABLE_TABLE_H_
#define NOTATION_SYLLABLE_TABLE_H_

// A language's syllables and tones, as the library's public functions tell them. Not installed.

#include <cstddef>
#include <string>
#include <vector>

#include "notation/bounded_vector.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {

/// A syllable code is row * 10 + tone.
inline constexpr int kTonesPerRow = 10;

/// The letters of the longest syllable that a table has room for.
inline constexpr std::size_t kMaxSyllableLength = sizeof(sp::PinyinInfo::pinyin) - 1;

/// Room for the rows of a syllable table.
inline constexpr std::size_t kMaxRows = 640;

/// Whether a tone is one of the language's, and not folded.
inline bool IsTone(int language, unsigned tone) {
  const auto digit = static_cast<signed char>(tone);
  return sp::ToneAdaptation(language, digit) == digit;
}

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

/// The same without memory of its own, for tables that stay.
using SpellingTable = BoundedVector<ShortText, kMaxRows>;

inline SpellingTable MakeSpellingTable(int language) {
  SpellingTable table;
  for (const std::string& spelling : SyllableSpellings(language)) {
    table.push_back(ShortText(spelling));
  }
  return table;
}

}  // namespace qeo::notation::internal

#endif  // NOTATION_SYLLABLE_TABLE_H_
