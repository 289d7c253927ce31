#ifndef NOTATION_SYLLABLE_SET_H_
#define NOTATION_SYLLABLE_SET_H_

// The syllables of a language as a set of packed spellings with their rarities, for looking up many
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
  /// What letters are.
  enum Kind : std::uint8_t {
    kNothing = 0,
    kBeginning = 1,  ///< of a syllable
    kSyllable = 2,   ///< one that text can name, and perhaps the beginning of another
  };

  struct Entry {
    Kind kind = kNothing;
    std::uint8_t rarity = 0;  ///< of a syllable, in sixteenths of a bit

    bool IsSyllable() const { return kind == kSyllable; }
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

  bool IsBeginning(PackedSpelling spelling) const { return Find(spelling).kind != kNothing; }
  bool Has(PackedSpelling spelling) const { return Find(spelling).IsSyllable(); }

 private:
  static constexpr int kSlotBits = 11;  // at most half of the slots are taken
  static constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;
  static constexpr int kSpellingBits = 48;  // six letters, as many as the library looks up
  static constexpr PackedSpelling kSpellingMask = (PackedSpelling{1} << kSpellingBits) - 1;
  static constexpr int kKindBits = 8;

  explicit SyllableSet(int language);
  void Add(PackedSpelling spelling, Entry entry);

  static constexpr Entry EntryOf(std::uint64_t slot) {
    return {static_cast<Kind>(slot >> kSpellingBits & 0xffU),
            static_cast<std::uint8_t>(slot >> (kSpellingBits + kKindBits))};
  }

  static constexpr std::size_t SlotOf(PackedSpelling spelling) {
    return static_cast<std::size_t>(spelling * 0x9e3779b97f4a7c15U >> (64 - kSlotBits));
  }

  // A spelling, above it its kind, and above that its rarity; 0 where free.
  std::array<std::uint64_t, kSlots> slots_ = {};
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_SYLLABLE_SET_H_
