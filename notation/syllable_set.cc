// Fills a hash table with the spellings of a language.

#include "notation/syllable_set.h"

#include <string>

#include "notation/cut_cost.h"
#include "notation/syllable_table.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {

SyllableSet::SyllableSet(int language) {
  const std::uint8_t* rarity = CutNumbersOf(language).rarities;
  for (const std::string& spelling : SyllableSpellings(language)) {
    const Entry syllable = {kSyllable, *rarity++};
    if (spelling == "E") continue;  // the library reads "e"
    for (std::size_t length = 1; length < spelling.size(); ++length) {
      Add(Pack(std::string_view(spelling).substr(0, length)), {kBeginning, 0});
    }
    Add(Pack(spelling), syllable);
  }
}

// What is a syllable stays one.
void SyllableSet::Add(PackedSpelling spelling, Entry entry) {
  std::size_t slot = SlotOf(spelling);
  while (slots_[slot] != 0 && (slots_[slot] & kSpellingMask) != spelling) {
    slot = (slot + 1) % kSlots;
  }
  if (EntryOf(slots_[slot]).IsSyllable()) return;
  slots_[slot] = spelling | (std::uint64_t{entry.kind} << kSpellingBits) |
                 (std::uint64_t{entry.rarity} << (kSpellingBits + kKindBits));
}

const SyllableSet& SyllableSet::Of(int language) {
  static const SyllableSet mandarin(sp::LANGUAGE_MANDARIN);
  static const SyllableSet cantonese(sp::LANGUAGE_CANTONESE);
  return language == sp::LANGUAGE_CANTONESE ? cantonese : mandarin;
}

}  // namespace qeo::notation::internal
