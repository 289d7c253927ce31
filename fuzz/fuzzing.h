#ifndef FUZZ_FUZZING_H_
#define FUZZ_FUZZING_H_

// What the fuzz targets share: how the bytes of an input are used, and how a property that does not
// hold is told.

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

  /// What is left, cut short so that one run stays quick.
  std::string Rest() const { return std::string(bytes_.substr(0, kMostBytes)); }

 private:
  static constexpr std::size_t kMostBytes = 4096;

  std::string_view bytes_;
};

}  // namespace qeo::fuzzing

#endif  // FUZZ_FUZZING_H_
