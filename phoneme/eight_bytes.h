#ifndef PHONEME_EIGHT_BYTES_H_
#define PHONEME_EIGHT_BYTES_H_

// Eight bytes of text at a time, as a 64-bit word whose lowest byte comes first, and the questions
// that the cutting of text asks of such a word. ASCII only, whatever the process locale.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "phoneme/ascii.h"

namespace qeo::sp::internal {

inline constexpr std::size_t kWordBytes = 8;

/// `byte` in each of the eight places.
constexpr std::uint64_t Repeat(std::uint64_t byte) { return byte * 0x0101010101010101; }

/// A mask of the first `byte_count` bytes of a word, 0 to 7.
constexpr std::uint64_t FirstBytes(std::size_t byte_count) {
  return (std::uint64_t{1} << (8 * byte_count)) - 1;
}

constexpr char ByteAt(std::uint64_t word, std::size_t index) {
  return static_cast<char>(word >> (8 * index));
}

/// The word with its first byte, if that is a capital, made a small letter.
constexpr std::uint64_t WithSmallFirst(std::uint64_t word) {
  return word | (ascii::IsCapital(ByteAt(word, 0)) ? 0x20 : 0);
}

/// How many small letters the word begins with, 0 to 8.
inline std::size_t CountSmallLetters(std::uint64_t word) {
  const std::uint64_t low_bits = word & Repeat(0x7f);
  const std::uint64_t from_a = low_bits + Repeat(0x80 - 'a');  // top bit: the byte is 'a' or above
  const std::uint64_t past_z = low_bits + Repeat(0x7f - 'z');  // top bit: the byte is above 'z'
  const std::uint64_t others = (~from_a | past_z | word) & Repeat(0x80);
  if (others == 0) return kWordBytes;
  return static_cast<std::size_t>(__builtin_ctzll(others)) / 8;
}

/// Index of the first place where the word holds `byte`, 8 when there is none.
inline std::size_t FindByte(std::uint64_t word, char byte) {
  const std::uint64_t others = word ^ Repeat(static_cast<unsigned char>(byte));
  const std::uint64_t zeros = (others - Repeat(0x01)) & ~others & Repeat(0x80);
  if (zeros == 0) return kWordBytes;
  return static_cast<std::size_t>(__builtin_ctzll(zeros)) / 8;
}

/// Reads words anywhere in a text without touching a byte outside it.
class EightByteReader {
 public:
  explicit EightByteReader(std::string_view text)
      : bytes_(text.data()),
        size_(text.size()),
        short_text_(text.size() < kWordBytes ? LoadShort(text) : 0) {}

  /// The eight bytes from `offset`, below the text's size, on; zeros in place of those past its
  /// end.
  std::uint64_t From(std::size_t offset) const {
    if (size_ < kWordBytes) return short_text_ >> (8 * offset);
    const std::size_t start = std::min(offset, size_ - kWordBytes);
    return Load(bytes_ + start) >> (8 * (offset - start));
  }

  /// The eight bytes up to `end`, above 0; zeros in place of those before the text.
  std::uint64_t UpTo(std::size_t end) const {
    if (end < kWordBytes) return From(0) << (8 * (kWordBytes - end));
    return Load(bytes_ + end - kWordBytes);
  }

 private:
  static std::uint64_t Byte(const char* bytes, std::size_t place) {
    return std::uint64_t{static_cast<unsigned char>(bytes[place])} << (8 * place);
  }

  // Compilers make one load of these expressions on a little-endian machine, and not of a loop.
  static std::uint64_t LoadHalf(const char* bytes) {
    return Byte(bytes, 0) | Byte(bytes, 1) | Byte(bytes, 2) | Byte(bytes, 3);
  }
  static std::uint64_t Load(const char* bytes) {
    return Byte(bytes, 0) | Byte(bytes, 1) | Byte(bytes, 2) | Byte(bytes, 3) | Byte(bytes, 4) |
           Byte(bytes, 5) | Byte(bytes, 6) | Byte(bytes, 7);
  }

  // A text of 0 to 7 bytes, by reads that overlap: a loop mispredicts its end.
  static std::uint64_t LoadShort(std::string_view text) {
    const char* bytes = text.data();
    const std::size_t size = text.size();
    if (size >= 4) return LoadHalf(bytes) | LoadHalf(bytes + size - 4) << (8 * (size - 4));
    if (size == 0) return 0;
    return Byte(bytes, 0) | Byte(bytes, size / 2) | Byte(bytes, size - 1);
  }

  const char* bytes_;
  std::size_t size_;
  std::uint64_t short_text_;  // the whole of a text that is shorter than a word
};

}  // namespace qeo::sp::internal

#endif  // PHONEME_EIGHT_BYTES_H_
