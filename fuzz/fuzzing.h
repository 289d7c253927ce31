#ifndef FUZZ_FUZZING_H_
#define FUZZ_FUZZING_H_

// What the fuzz targets share: how the bytes of an input are used, and how a property that does not
// hold is reported.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// The entry point of a target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace qeo::fuzzing {

/// Ends the process when a property does not hold, so that the engine keeps the input.
inline void Expect(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", property);
  std::abort();
}

/// The bytes of an input: the first ones choose, the rest is what is tested.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : bytes_(reinterpret_cast<const char*>(data), size) {}

  /// One of 0 to `count` - 1, at most 256; 0 at the end of the input.
  std::size_t Choose(std::size_t count) {
    if (bytes_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte % count;
  }

  /// True for half of the bytes; false at the end of the input.
  bool ChooseBool() { return Choose(2) == 1; }

  /// A number of all values, from four bytes or what is left of them.
  int TakeInt() {
    std::uint32_t bits = 0;
    for (int i = 0; i < 4; ++i) bits = bits << 8U | static_cast<std::uint32_t>(Choose(256));
    return static_cast<int>(bits);
  }

  /// As many bytes as the next byte says, or what is left of them.
  std::string TakePart() {
    const std::size_t size = Choose(256);
    std::string part(bytes_.substr(0, size));
    bytes_.remove_prefix(part.size());
    return part;
  }

  bool IsAtEnd() const { return bytes_.empty(); }

  /// What is left, cut short so that one run stays quick.
  std::string Rest() const { return std::string(bytes_.substr(0, kMostBytes)); }

 private:
  static constexpr std::size_t kMostBytes = 4096;

  std::string_view bytes_;
};

}  // namespace qeo::fuzzing

#endif  // FUZZ_FUZZING_H_
