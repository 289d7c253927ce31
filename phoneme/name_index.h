#ifndef PHONEME_NAME_INDEX_H_
#define PHONEME_NAME_INDEX_H_

// Exact lookup of the short names of phones and syllables: what an ordered map answers, in a few
// nanoseconds. A name is packed into a word, its first byte lowest, and a perfect hash gives the
// only slot that can hold it: a lookup is two loads and a comparison, with no chain to follow.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "phoneme/eight_bytes.h"

namespace qeo::sp::internal {

class NameIndex {
 public:
  static constexpr std::size_t kMaxNameLength = 6;  ///< bytes of the longest name it can hold
  static constexpr int kAbsent = -1;                ///< not a name
  static constexpr int kNoRow = 0xffff;             ///< a name that belongs to no row

  struct Name {
    std::string_view text;  // 1 to kMaxNameLength bytes, the last one not NUL; each name once
    int row = kNoRow;       // 0 to 0xfffe, or kNoRow
  };

  /// A name of another length is left out: Find could not be asked for it. No table holds one,
  /// which the compiler checks for phones and the tests for syllables.
  explicit NameIndex(const std::vector<Name>& names);

  /// The row of a packed name of 1 to kMaxNameLength bytes, the last one not NUL; kNoRow or
  /// kAbsent.
  int Find(std::uint64_t packed) const {
    const std::uint64_t slot = slots_[SlotOf(packed)];
    return (slot & kNameMask) == packed ? static_cast<int>(slot >> kNameBits) : kAbsent;
  }

  /// The row of the name that is the first `byte_count` bytes of `word`, 0 to 8; kNoRow or kAbsent.
  int FindFirst(std::uint64_t word, std::size_t byte_count) const {
    if (byte_count - 1 >= kMaxNameLength || ByteAt(word, byte_count - 1) == '\0') return kAbsent;
    return Find(word & FirstBytes(byte_count));
  }

 private:
  static constexpr int kNameBits = 48;
  static constexpr std::uint64_t kNameMask = (std::uint64_t{1} << kNameBits) - 1;

  // The product's top bits choose a bucket and the bits below them a place; the bucket's shift
  // moves its names to places that no other name has.
  std::size_t BucketOf(std::uint64_t packed) const { return packed * multiplier_ >> bucket_shift_; }
  std::size_t SlotOf(std::uint64_t packed) const {
    const std::uint64_t product = packed * multiplier_;
    return ((product >> place_shift_) + shifts_[product >> bucket_shift_]) & slot_mask_;
  }

  bool PlaceAll(const std::vector<std::uint64_t>& entries);
  bool PlaceBucket(const std::vector<std::uint64_t>& entries, std::uint16_t& shift);

  std::uint64_t multiplier_ = 0;
  std::uint64_t slot_mask_ = 0;
  int bucket_shift_ = 0;
  int place_shift_ = 0;
  std::vector<std::uint16_t> shifts_;  // one a bucket
  std::vector<std::uint64_t> slots_;   // a packed name and, above it, its row; 0 where free
};

}  // namespace qeo::sp::internal

#endif  // PHONEME_NAME_INDEX_H_
