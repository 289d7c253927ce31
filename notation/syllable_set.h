#ifndef NOTATION_SYLLABLE_SET_H_
#define NOTATION_SYLLABLE_SET_H_

// The syllables of a language as packed spellings with their rows and rarities, for looking up many
// quickly. Not installed.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qeo::notation::internal {

/// A spelling of up to eight letters, the first in the lowest byte.
using PackedSpelling = std::uint64_t;
inline constexpr std::size_t kMaxPackedLength = sizeof(PackedSpelling);

constexpr PackedSpelling PackLetter(char letter, std::size_t index) {
  return PackedSpelling{static_cast<unsigned char>(letter)} << (8 * index);
}

constexpr char UnpackLetter(PackedSpelling spelling, std::size_t index) {
  return static_cast<char>((spelling >> (8 * index)) & 0xffU);
}

constexpr PackedSpelling Pack(std::string_view spelling) {
  PackedSpelling packed = 0;
  for (std::size_t i = 0; i < spelling.size(); ++i) packed |= PackLetter(spelling[i], i);
  return packed;
}

class SyllableSet {
 public:
  static constexpr std::int16_t kNothing = -1;    ///< no syllable begins with the letters
  static constexpr std::int16_t kBeginning = -2;  ///< one does, but they are not one

  struct Entry {
    std::int16_t row = kNothing;  ///< of a syllable that text can name, or one of the two above
    std::uint8_t rarity = 0;      ///< of a syllable, in sixteenths of a bit

    bool IsSyllable() const { return row >= 0; }
  };

  /// The set of a Chinese language, made at the first call.
  static const SyllableSet& Of(int language);

  /// What a spelling of small letters, not empty, is.
  Entry Find(PackedSpelling spelling) const {
    for (std::size_t slot = SlotOf(spelling); slots_[slot] != 0; slot = (slot + 1) % kSlots) {
      if ((slots_[slot] & kSpellingMask) == spelling) return EntryOf(slots_[slot]);
    }
    return {};
  }

  bool Has(PackedSpelling spelling) const { return Find(spelling).IsSyllable(); }

 private:
  static constexpr int kSlotBits = 11;  // at most half of the slots are taken
  static constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;
  static constexpr int kSpellingBits = 48;  // six letters, as many as the library looks up
  static constexpr PackedSpelling kSpellingMask = (PackedSpelling{1} << kSpellingBits) - 1;

  explicit SyllableSet(int language);
  void Add(PackedSpelling spelling, std::int16_t row);

  static constexpr std::int16_t RowOf(std::uint64_t slot) {
    return static_cast<std::int16_t>(slot >> kSpellingBits);
  }

  Entry EntryOf(std::uint64_t slot) const {
    const std::int16_t row = RowOf(slot);
    return {row, row < 0 ? std::uint8_t{0} : rarities_[row]};
  }

  static constexpr std::size_t SlotOf(PackedSpelling spelling) {
    return static_cast<std::size_t>(spelling * 0x9e3779b97f4a7c15U >> (64 - kSlotBits));
  }

  const std::uint8_t* rarities_;  // by row
  // A spelling, and above it the row; 0 where free.
  std::array<std::uint64_t, kSlots> slots_ = {};
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_SYLLABLE_SET_H_
