// BlockReader and TakeLine of the tool: in whatever pieces the input comes, the lines, their ends
// and their numbers are those of a plain splitter.

#include <fcntl.h>

#include "fuzz/line_reading.h"

namespace {

using namespace qeo;
using fuzzing::Expect;

// No more than the pipe has room for, and few enough to be quick.
constexpr std::size_t kMostPieces = 32;
constexpr int kPipeBytes = 1 << 20;

// A pipe that gives out each write on its own.
int OpenPipe(const std::string& text, const std::string& sizes) {
  int ends[2] = {-1, -1};
  Expect(::pipe2(ends, O_DIRECT | O_CLOEXEC) == 0, "there is a pipe");
  Expect(::fcntl(ends[1], F_SETPIPE_SZ, kPipeBytes) >= 0, "the pipe has room");
  std::size_t written = 0;
  for (std::size_t i = 0; written < text.size(); ++i) {
    const std::size_t left = text.size() - written;
    const bool is_last = sizes.empty() || i + 1 == kMostPieces;
    const std::size_t wanted =
        is_last ? left : std::size_t{1} + static_cast<unsigned char>(sizes[i % sizes.size()]);
    const std::size_t size = std::min(wanted, left);
    const ssize_t count = ::write(ends[1], text.data() + written, size);
    Expect(count == static_cast<ssize_t>(size), "the pipe takes a piece");
    written += size;
  }
  ::close(ends[1]);
  return ends[0];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const std::string sizes = input.TakePart();
  const std::string text = input.Rest();
  fuzzing::ExpectLines(fuzzing::OpenFile(text), text);
  fuzzing::ExpectLines(OpenPipe(text, sizes), text);
  return 0;
}
