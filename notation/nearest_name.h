#ifndef NOTATION_NEAREST_NAME_H_
#define NOTATION_NEAREST_NAME_H_

// What a misspelt name was likely meant to be. Not installed.

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

namespace qeo::notation::internal {

// How many bytes two names have in common at their beginning when one edit or none makes them
// equal: a byte more, less or replaced, or two neighbours swapped, which count as common. Names
// that share nothing are not near.
inline std::optional<std::size_t> SharedBeginning(std::string_view a, std::string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  const std::size_t longer = std::max(a.size(), b.size());
  std::size_t front = 0;
  while (front < shorter && a[front] == b[front]) ++front;
  std::size_t back = 0;
  while (back < shorter - front && a[a.size() - 1 - back] == b[b.size() - 1 - back]) ++back;
  const bool is_swapped = shorter == longer && front + back + 2 == longer &&
                          a[front] == b[front + 1] && a[front + 1] == b[front];
  const bool is_one_edit = front + back > 0 && front + back + 1 >= longer;
  if (is_swapped) return front + 2;
  if (is_one_edit) return front;
  return std::nullopt;
}

/// Picks, of the known names that are offered, the one nearest to a misspelt one: one edit away
/// with the longest common beginning, the first among equals.
class NearestName {
 public:
  explicit NearestName(std::string_view name) : name_(name) {}

  /// `known` stays valid as long as this object is asked.
  void Offer(std::string_view known) {
    const std::optional<std::size_t> shared = SharedBeginning(name_, known);
    if (!shared || (!best_.empty() && *shared <= most_)) return;
    best_ = known;
    most_ = *shared;
  }

  /// Empty when no name is near.
  std::string_view best() const { return best_; }

 private:
  std::string_view name_;
  std::string_view best_;
  std::size_t most_ = 0;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_NEAREST_NAME_H_
