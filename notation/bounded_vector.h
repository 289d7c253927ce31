#ifndef NOTATION_BOUNDED_VECTOR_H_
#define NOTATION_BOUNDED_VECTOR_H_

// The containers of tables that are made at their first use. A static table of these has no
// destructor and owns no memory, so that it can be read until the process ends, also by the
// destructors of other statics, and leaves nothing allocated where the library is unloaded. Not
// installed.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qeo::notation::internal {

/// A vector with room for kCapacity items in itself.
template <typename T, std::size_t kCapacity>
class BoundedVector {
 public:
  /// Throws std::out_of_range when there is no room: a table has outgrown what reads it.
  T& push_back(const T& item) { return items_.at(size_++) = item; }

  std::size_t size() const { return size_; }
  T& operator[](std::size_t index) { return items_[index]; }
  const T& operator[](std::size_t index) const { return items_[index]; }
  const T* begin() const { return items_.data(); }
  const T* end() const { return items_.data() + size_; }

 private:
  std::array<T, kCapacity> items_ = {};
  std::size_t size_ = 0;
};

/// A text of at most seven bytes, as the longest syllable with its mark has ("zhuāng").
class ShortText {
 public:
  ShortText() = default;

  /// Throws std::out_of_range when `text` is longer.
  explicit ShortText(std::string_view text) {
    for (const char byte : text) bytes_.at(size_++) = byte;
  }

  std::string_view view() const { return {bytes_.data(), size_}; }

 private:
  std::array<char, 7> bytes_ = {};
  std::uint8_t size_ = 0;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_BOUNDED_VECTOR_H_
