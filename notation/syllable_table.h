#ifndef NOTATION_SYLLABLE_TABLE_H_
#define NOTATION_SYLLABLE_TABLE_H_

// A language's syllables and tones, as the library's public functions give them. Not installed.

#include <cstddef>
#include <string>
#include <vector>

#include "notation/bounded_vector.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {

using sp::kTonesPerRow;

/// The letters of the longest syllable that a table has room for.
inline constexpr std::size_t kMaxSyllableLength = sizeof(sp::PinyinInfo::pinyin) - 1;

/// Room for the rows of a syllable table.
inline constexpr std::size_t kMaxRows = 640;

/// Whether a tone is one of the language's, and not folded.
inline bool IsTone(int language, unsigned tone) {
  return tone >= 1 && tone <= static_cast<unsigned>(sp::TopTone(language));
}

/// The toneless spellings of a language, in row order; none when it has no syllables.
inline std::vector<std::string> SyllableSpellings(int language) {
  const sp::SpMapping& set =
      *sp::FindPhoneSet(sp::ServingLanguage(sp::Conversion::kSyllables, language));
  std::vector<std::string> spellings;
  spellings.reserve(set.pinyin_count);
  for (std::size_t row = 0; row < set.pinyin_count; ++row) {
    spellings.emplace_back(set.pinyin_list[row].pinyin);
  }
  return spellings;
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
