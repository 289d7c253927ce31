// BlockReader of the tool at the limit of a line: one that is longer comes whole, in parts, and the
// lines around it as ever. A target of its own, since each input is of 1 MiB.

#include "fuzz/line_reading.h"

namespace {

using namespace qeo;

// The text, its first line made about as long as a line can be, or longer than two reads beyond
// that.
std::string WithLongLine(const std::string& text, std::size_t beyond) {
  constexpr std::size_t kFarBeyond = 600000;
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::size_t size = end - (fuzzing::HasMark(text) ? fuzzing::kByteOrderMark.size() : 0);
  const std::size_t wanted = tool::kLongestLine - 3 + (beyond == 7 ? kFarBeyond : beyond);
  std::string longer = text;
  return longer.insert(end, wanted - size, 'a');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const std::size_t beyond = input.Choose(8);
  const std::string text = WithLongLine(input.Rest(), beyond);
  fuzzing::ExpectLines(fuzzing::OpenFile(text), text);
  return 0;
}
