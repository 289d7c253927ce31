// BlockReader of the tool and TakeLine: in whatever pieces the input comes, and however long a line
// may be, the lines, their ends and their numbers are those of a plain splitter, and a line that is
// too long comes whole, in parts.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzzing.h"
#include "lexicon/lexicon.h"
#include "tools/io/input.h"

namespace {

using namespace qeo;
using fuzzing::Expect;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool HasMark(const std::string& text) {
  return text.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0;
}

struct SlowLine {
  std::string text;
  std::string end;
  bool is_overlong = false;
  bool is_open = false;  // the text ends without a newline
};

// Bytes up to the newline, with a return before it counted among the text for the limit.
std::vector<SlowLine> SplitSlowly(const std::string& text, std::size_t longest_line) {
  std::vector<SlowLine> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t newline = text.find('\n', begin);
    const std::size_t end = std::min(newline, text.size());
    const bool is_open = newline == std::string::npos;
    SlowLine line = {text.substr(begin, end - begin), "\n", end - begin > longest_line, is_open};
    if (!is_open && !line.text.empty() && line.text.back() == '\r') {
      line.text.pop_back();
      line.end = "\r\n";
    }
    lines.push_back(line);
    begin = end + 1;
  }
  return lines;
}

int OpenFile(const std::string& text) {
  const int file = ::memfd_create("lines", MFD_CLOEXEC);
  Expect(file >= 0, "there is a file");
  for (std::size_t written = 0; written < text.size();) {
    const ssize_t count = ::write(file, text.data() + written, text.size() - written);
    Expect(count > 0, "the file takes the text");
    written += static_cast<std::size_t>(count);
  }
  Expect(::lseek(file, 0, SEEK_SET) == 0, "the file begins again");
  return file;
}

class Checker {
 public:
  Checker(const std::string& text, std::size_t longest_line)
      : expected_(SplitSlowly(text, longest_line)) {}

  void Add(const tool::Block& block) {
    if (block.is_overlong) {
      AddPart(block);
    } else {
      AddLines(block);
    }
  }

  void ExpectAll() const { Expect(next_ == expected_.size(), "there are all lines"); }

 private:
  void AddLines(const tool::Block& block) {
    Expect(!block.text.empty(), "a block is not empty");
    Expect(!is_in_line_, "a line that is too long comes to its end");
    Expect(block.first_line == next_ + 1, "the first line's number counts the lines before it");
    std::string_view rest = block.text;
    for (std::uint64_t left = block.line_count; left > 0; --left) {
      Expect(!rest.empty(), "there are as many lines as is said");
      const lexicon::Line line = lexicon::TakeLine(rest);
      Expect(next_ < expected_.size(), "there are no more lines");
      const SlowLine& expected = expected_[next_++];
      Expect(!expected.is_overlong, "no line is too long");
      Expect(line.text == expected.text && line.end == expected.end, "a line is the slow form's");
    }
    Expect(rest.empty(), "there are no more lines than is said");
  }

  void AddPart(const tool::Block& block) {
    Expect(next_ < expected_.size(), "there are no more lines");
    const SlowLine& expected = expected_[next_];
    Expect(expected.is_overlong, "the line is too long");
    Expect(block.first_line == next_ + 1, "each part has the line's number");
    Expect(block.is_first_part == !is_in_line_, "the first part is marked");
    Expect(block.line_count == (is_in_line_ ? 0 : 1), "the line is counted once");
    is_in_line_ = !block.is_last_part;
    part_ += block.text;
    const std::string whole = expected.text + (expected.is_open ? "" : expected.end);
    Expect(part_ == whole.substr(0, part_.size()), "the parts are the line");
    if (is_in_line_) return;
    std::string_view last = block.text;
    Expect(lexicon::TakeLine(last).end == expected.end, "the last part has the whole end");
    Expect(part_ == whole, "the last part ends the line");
    ++next_;
    part_.clear();
  }

  std::vector<SlowLine> expected_;
  std::size_t next_ = 0;
  std::string part_;  // of a line that is too long, as far as it has come
  bool is_in_line_ = false;
};

// Reads a file to its end, and closes it.
void ExpectLines(int file, const tool::ReadLimits& limits, const std::string& text) {
  Checker checker(HasMark(text) ? text.substr(kByteOrderMark.size()) : text, limits.longest_line);
  tool::BlockReader reader(file, limits);
  tool::Block block;
  block.text = "stale";
  Expect(reader.IsReady(), "there is something to read, or the end");
  while (reader.Next(block)) checker.Add(block);
  checker.ExpectAll();
  Expect(!reader.Next(block), "the end stays the end");
  Expect(reader.error() == 0, "there is no error");
  Expect(reader.byte_count() == text.size(), "all bytes are counted");
  ::close(file);
}

// A pipe that gives out each write on its own: pieces of 1 to `largest` bytes, for as long as the
// pipe has room for them. `text` is cut to what it took.
int OpenPipe(std::string& text, const std::string& sizes, std::size_t largest) {
  constexpr std::size_t kMostPieces = 16;
  int ends[2] = {-1, -1};
  Expect(::pipe2(ends, O_DIRECT | O_CLOEXEC) == 0, "there is a pipe");
  std::size_t written = 0;
  for (std::size_t i = 0; written < text.size() && i < kMostPieces; ++i) {
    const std::size_t byte =
        sizes.empty() ? largest - 1 : static_cast<unsigned char>(sizes[i % sizes.size()]);
    const std::size_t size = std::min(1 + byte % largest, text.size() - written);
    const ssize_t count = ::write(ends[1], text.data() + written, size);
    Expect(count == static_cast<ssize_t>(size), "the pipe takes a piece");
    written += size;
  }
  ::close(ends[1]);
  text.resize(written);
  return ends[0];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  tool::ReadLimits limits;
  limits.longest_line = 3 + input.Choose(253);
  limits.bytes_a_read = 1 + input.Choose(limits.longest_line);
  const std::string sizes = input.TakePart();
  std::string text = input.Rest();
  ExpectLines(OpenFile(text), limits, text);
  limits.bytes_a_read = limits.longest_line;  // a smaller read would lose what is left of a piece
  const int pipe = OpenPipe(text, sizes, limits.longest_line);
  ExpectLines(pipe, limits, text);
  return 0;
}
