#include "tools/io/input.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "lexicon/lexicon.h"

namespace qeo::tool {
namespace {

// A pipe that gives `text` and ends.
class Pipe {
 public:
  explicit Pipe(std::string text) {
    EXPECT_EQ(::pipe(ends_), 0);
    writer_ = std::thread([this, text = std::move(text)] {
      std::string_view rest = text;
      while (!rest.empty()) {
        const ssize_t count = ::write(ends_[1], rest.data(), rest.size());
        ASSERT_GT(count, 0);
        rest.remove_prefix(static_cast<std::size_t>(count));
      }
      ::close(ends_[1]);
    });
  }
  ~Pipe() {
    writer_.join();
    ::close(ends_[0]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int descriptor() const { return ends_[0]; }

 private:
  int ends_[2] = {-1, -1};
  std::thread writer_;
};

struct Numbered {
  std::uint64_t number;
  std::string text;
};

// The lines of a file with their numbers, after checking what each block says of itself.
std::vector<Numbered> LinesOf(int file_descriptor, const ReadLimits& limits = {}) {
  BlockReader reader(file_descriptor, limits);
  std::vector<Numbered> lines;
  for (Block block; reader.Next(block);) {
    std::uint64_t number = block.first_line;
    for (std::string_view rest = block.text; !rest.empty(); ++number) {
      lines.push_back({number, std::string(lexicon::TakeLine(rest).text)});
    }
    EXPECT_EQ(number, block.first_line + block.line_count);
  }
  EXPECT_EQ(reader.error(), 0);
  return lines;
}

// Numbers past every power of two that a counter of a step could have.
TEST(BlockReader, CountsEmptyLines) {
  for (const std::size_t count : {1U, 63U, 64U, 65U, 255U, 256U, 257U, 1000U, 70000U}) {
    const Pipe pipe(std::string(count, '\n') + "last");
    const std::vector<Numbered> lines = LinesOf(pipe.descriptor());
    ASSERT_EQ(lines.size(), count + 1);
    EXPECT_EQ(lines.back().number, count + 1);
    EXPECT_EQ(lines.back().text, "last");
  }
}

TEST(BlockReader, NumbersGoOnFromReadToRead) {
  std::string text;
  for (int i = 1; i <= 2000; ++i) text += std::to_string(i) + '\n' + (i % 3 == 0 ? "\n" : "");
  for (const std::size_t bytes_a_read : {1U, 2U, 7U, 64U, 4096U}) {
    const Pipe pipe(text);
    std::uint64_t expected = 0;
    for (const Numbered& line : LinesOf(pipe.descriptor(), {100, bytes_a_read})) {
      ASSERT_EQ(line.number, ++expected);
    }
    EXPECT_EQ(expected, 2000U + 2000 / 3);
  }
}

// A line that is too long comes in parts of any size, of which the last alone has its end.
TEST(BlockReader, GivesTheLastPartOfALongLineItsWholeEnd) {
  constexpr struct {
    const char* text;
    const char* long_line;
    const char* end;
  } kCases[] = {
      {"abcdefgh\nxy\n", "abcdefgh", "\n"},
      {"abcdefgh\r\nxy\n", "abcdefgh", "\r\n"},
      {"abcdefgh\r\r\nxy", "abcdefgh\r", "\r\n"},
      {"abc\rdefg\rh\nxy", "abc\rdefg\rh", "\n"},
      {"abcdefgh", "abcdefgh", ""},
      {"abcdefgh\r", "abcdefgh\r", ""},
      {"abcd\r", "abcd\r", ""},
      {"abcdefgh\r\r", "abcdefgh\r\r", ""},
  };
  for (const auto& c : kCases) {
    for (const std::size_t bytes_a_read : {1U, 2U, 3U, 4U}) {
      const Pipe pipe(c.text);
      BlockReader reader(pipe.descriptor(), {4, bytes_a_read});
      std::string parts;
      Block block;
      do {
        ASSERT_TRUE(reader.Next(block)) << c.text;
        ASSERT_TRUE(block.is_overlong);
        EXPECT_EQ(block.is_first_part, parts.empty());
        EXPECT_EQ(block.first_line, 1U);
        EXPECT_EQ(block.line_count, parts.empty() ? 1U : 0U);
        parts += block.text;
      } while (!block.is_last_part);
      EXPECT_EQ(parts, std::string(c.long_line) + c.end);
      const std::string end = c.end;
      EXPECT_EQ(block.text.substr(block.text.size() - std::min(block.text.size(), end.size())),
                end);
      while (reader.Next(block)) {
        EXPECT_FALSE(block.is_overlong);
        EXPECT_FALSE(block.is_last_part);
        EXPECT_EQ(block.first_line, 2U);
      }
    }
  }
}

TEST(BlockReader, WaitsForADescriptorThatDoesNotBlock) {
  const Pipe pipe(std::string(300000, 'a') + "\nb\n");
  ASSERT_EQ(::fcntl(pipe.descriptor(), F_SETFL, O_NONBLOCK), 0);
  EXPECT_EQ(LinesOf(pipe.descriptor()).size(), 2U);
}

}  // namespace
}  // namespace qeo::tool
