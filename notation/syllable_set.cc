// Fills a hash table with the spellings of a language.

#include "notation/syllable_set.h"

#include <string>

#include "notation/cut_cost.h"
#include "notation/syllable_table.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {

SyllableSet::SyllableSet(int language) : rarities_(CutNumbersOf(language).rarities) {
  std::int16_t row = 0;
  for (const std::string& spelling : SyllableSpellings(language)) {
    const std::int16_t syllable = row++;
    if (spelling == "E") continue;  // the library reads "e"
    for (std::size_t length = 1; length < spelling.size(); ++length) {
      Add(Pack(std::string_view(spelling).substr(0, length)), kBeginning);
    }
    Add(Pack(spelling), syllable);
  }
}

// A syllable that also begins another one stays a syllable.
void SyllableSet::Add(PackedSpelling spelling, std::int16_t row) {
  std::size_t slot = SlotOf(spelling);
  while (slots_[slot] != 0 && (slots_[slot] & kSpellingMask) != spelling) {
    slot = (slot + 1) % kSlots;
  }
  if (slots_[slot] != 0 && RowOf(slots_[slot]) >= 0) return;
  slots_[slot] = spelling | std::uint64_t{static_cast<std::uint16_t>(row)} << kSpellingBits;
}

const SyllableSet& SyllableSet::Of(int language) {
  static const SyllableSet mandarin(sp::LANGUAGE_MANDARIN);
  static const SyllableSet cantonese(sp::LANGUAGE_CANTONESE);
  return language == sp::LANGUAGE_CANTONESE ? cantonese : mandarin;
}

}  // namespace qeo::notation::internal
