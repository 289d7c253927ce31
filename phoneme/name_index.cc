// The making of the perfect hash: hash, displace, and try another multiplier where that fails.

#include "phoneme/name_index.h"

#include <algorithm>

namespace qeo::sp::internal {
namespace {

constexpr std::uint64_t kFirstMultiplier = 0x9e3779b97f4a7c15;  // 2^64 / golden ratio: mixes well
constexpr std::uint64_t kMultiplierStep = 0x5851f42d4c957f2e;   // even, so a multiplier stays odd
constexpr int kWordBits = 64;
constexpr int kBucketsPerSlotBits = 2;  // one bucket for four slots

}  // namespace

NameIndex::NameIndex(const std::vector<Name>& names) {
  std::vector<std::uint64_t> entries;
  entries.reserve(names.size());
  for (const Name& name : names) {
    if (name.text.empty() || name.text.size() > kMaxNameLength) continue;
    const std::uint64_t packed = EightByteReader(name.text).From(0);
    entries.push_back(packed | static_cast<std::uint64_t>(name.row) << kNameBits);
  }
  int slot_bits = kBucketsPerSlotBits + 1;
  while ((std::size_t{1} << slot_bits) * 3 < names.size() * 4) ++slot_bits;  // 3/4 full at most
  slots_.resize(std::size_t{1} << slot_bits);
  slot_mask_ = slots_.size() - 1;
  shifts_.resize(slots_.size() >> kBucketsPerSlotBits);
  bucket_shift_ = kWordBits - (slot_bits - kBucketsPerSlotBits);
  place_shift_ = bucket_shift_ - slot_bits;
  multiplier_ = kFirstMultiplier;
  while (!PlaceAll(entries)) multiplier_ += kMultiplierStep;
}

// False when this multiplier cannot separate the names; few fail.
bool NameIndex::PlaceAll(const std::vector<std::uint64_t>& entries) {
  std::fill(slots_.begin(), slots_.end(), 0);
  std::fill(shifts_.begin(), shifts_.end(), std::uint16_t{0});
  std::vector<std::vector<std::uint64_t>> buckets(shifts_.size());
  for (const std::uint64_t entry : entries) buckets[BucketOf(entry & kNameMask)].push_back(entry);
  // The fullest first, while there is room for them.
  std::vector<std::size_t> order(buckets.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return buckets[a].size() > buckets[b].size();
  });
  return std::all_of(order.begin(), order.end(),
                     [&](std::size_t i) { return PlaceBucket(buckets[i], shifts_[i]); });
}

// Tries every shift until all names of the bucket fall on free slots.
bool NameIndex::PlaceBucket(const std::vector<std::uint64_t>& entries, std::uint16_t& shift) {
  for (std::size_t tried = 0; tried < slots_.size(); ++tried) {
    shift = static_cast<std::uint16_t>(tried);
    std::size_t placed = 0;
    for (; placed < entries.size(); ++placed) {
      std::uint64_t& slot = slots_[SlotOf(entries[placed] & kNameMask)];
      if (slot != 0) break;
      slot = entries[placed];
    }
    if (placed == entries.size()) return true;
    while (placed > 0) slots_[SlotOf(entries[--placed] & kNameMask)] = 0;
  }
  return false;
}

}  // namespace qeo::sp::internal
