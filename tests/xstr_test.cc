// The string helpers: trimming, splitting and numbers as text, with NUL and high bytes among the
// input.

#include "xstr/xstr.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace qeo::xstr {

using namespace std::string_literals;

const std::string kBlanks = "\t\r\n ";

TEST(Trim, BothEnds) {
  struct {
    std::string text;
    std::string chars;
    std::string result;
  } const cases[] = {
      {"\t ni3 \n", kBlanks, "ni3"},
      {"   ", kBlanks, ""},
      {"", kBlanks, ""},
      {"ni3", kBlanks, "ni3"},
      {" n i 3 ", kBlanks, "n i 3"},  // what is inside stays
      {"  ni hao  ", kBlanks, "ni hao"},
      {"\r\n\t a", kBlanks, "a"},
      {"a \t\r\n", kBlanks, "a"},
      {"\va\f", kBlanks, "\va\f"},  // only the given bytes are stripped
      // the order of `chars` and what repeats in it do not matter
      {"xyaxy", "yx", "a"},
      {"xyaxy", "xyxxy", "a"},
      {"abcba", "abc", ""},
      {"a", "", "a"},
      {" ", "", " "},
      {"", "", ""},
      // NUL and high bytes are bytes like any other
      {"\0a\0"s, kBlanks, "\0a\0"s},
      {"\0a\0"s, "\0"s, "a"},
      {" \0 "s, kBlanks, "\0"s},
      {" \0 "s, " \0"s, ""},
      {"\xff\xa0 a\xa0", "\xa0\xff", " a"},
      {"\xa0", " ", "\xa0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text) + " less " + testing::PrintToString(c.chars));
    EXPECT_EQ(trim(c.text, c.chars, true), c.result);
  }
}

TEST(Trim, FrontOnly) {
  // clang-format off
  struct {
    std::string text;
    std::string result;
  } const cases[] = {
      {"\t ni3 \n", "ni3 \n"},
      {"ni3 \n", "ni3 \n"},
      {" ni3", "ni3"},
      {"   ", ""},
      {"", ""},
      {" a b ", "a b "},
  };
  // clang-format on
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    EXPECT_EQ(trim(c.text, kBlanks, false), c.result);
  }
}

TEST(Trim, StripsEachOfTheBytesAndNoOther) {
  for (int stripped = 0; stripped < 256; ++stripped) {
    for (int byte = 0; byte < 256; ++byte) {
      const std::string text(3, static_cast<char>(byte));
      const std::string chars(1, static_cast<char>(stripped));
      ASSERT_EQ(trim(text, chars, true), byte == stripped ? "" : text) << byte << ' ' << stripped;
    }
  }
}

TEST(Split, WithoutLimit) {
  struct {
    std::string text;
    std::string separator;
    std::vector<std::string> pieces;
  } const cases[] = {
      {"a,b", ",", {"a", "b"}},
      {"n i 3", " ", {"n", "i", "3"}},
      {"abc", ",", {"abc"}},
      {"", ",", {""}},  // an empty text is one empty piece
      // empty pieces are kept, in the middle and at both ends
      {"n  i 3", " ", {"n", "", "i", "3"}},
      {"a,,b", ",", {"a", "", "b"}},
      {",a,", ",", {"", "a", ""}},
      {",", ",", {"", ""}},
      {",,,", ",", {"", "", "", ""}},
      // longer separators: found from the front, never overlapping
      {"a, b, c", ", ", {"a", "b", "c"}},
      {"a,b, c", ", ", {"a,b", "c"}},
      {"aaa", "aa", {"", "a"}},
      {"aaaa", "aa", {"", "", ""}},
      {"ab", "abc", {"ab"}},
      {"abc", "abc", {"", ""}},
      // an empty separator cuts nothing
      {"a b", "", {"a b"}},
      {"", "", {""}},
      // NUL and high bytes
      {"a\0b"s, "\0"s, {"a", "b"}},
      {"a\0b,c"s, ",", {"a\0b"s, "c"}},
      {"\0\0"s, "\0"s, {"", "", ""}},
      {"a\0b\0c"s, "\0c"s, {"a\0b"s, ""}},
      {"\xe4\xbd\xa0\xef\xbc\x8c\xe5\xa5\xbd", "\xef\xbc\x8c", {"\xe4\xbd\xa0", "\xe5\xa5\xbd"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text) + " at " + testing::PrintToString(c.separator));
    for (const int max_parts : {-1, 0, -2, std::numeric_limits<int>::min()}) {
      EXPECT_EQ(split(c.text, c.separator, max_parts), c.pieces) << max_parts;
    }
  }
}

TEST(Split, AtMostMaxPartsPieces) {
  struct {
    std::string text;
    std::string separator;
    int max_parts;
    std::vector<std::string> pieces;
  } const cases[] = {
      {"a,b,c", ",", 1, {"a,b,c"}},
      {"a,b,c", ",", 2, {"a", "b,c"}},  // the last piece holds the uncut rest
      {"a,b,c", ",", 3, {"a", "b", "c"}},
      {"a,b,c", ",", 4, {"a", "b", "c"}},
      {"a,b,c", ",", std::numeric_limits<int>::max(), {"a", "b", "c"}},
      {",,", ",", 2, {"", ","}},
      {"a,", ",", 2, {"a", ""}},
      {"aaaaa", "aa", 2, {"", "aaa"}},
      {"", ",", 1, {""}},
      {"", ",", 5, {""}},
      {"abc", "", 2, {"abc"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text) + " at most " + std::to_string(c.max_parts));
    EXPECT_EQ(split(c.text, c.separator, c.max_parts), c.pieces);
  }
}

TEST(Split, AMillionPieces) {
  const std::vector<std::string> pieces = split(std::string(999'999, ','), ",", -1);
  EXPECT_EQ(pieces, std::vector<std::string>(1'000'000, ""));
}

TEST(ToU8s, Decimal) {
  struct {
    int value;
    const char* result;
  } const cases[] = {
      {0, "0"},
      {1, "1"},
      {2, "2"},
      {3, "3"},
      {4, "4"},
      {5, "5"},
      {6, "6"},
      {7, "7"},
      {8, "8"},
      {9, "9"},
      {10, "10"},
      {100, "100"},
      {65535, "65535"},
      {2147483647, "2147483647"},
      {-1, "-1"},
      {-10, "-10"},
      {std::numeric_limits<int>::min(), "-2147483648"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(to_u8s(c.value, 10), c.result);
  }
}

TEST(ToU8s, EveryBase) {
  struct {
    int value;
    int base;
    const char* result;
  } const cases[] = {
      {0, 2, "0"},
      {0, 36, "0"},
      {5, 2, "101"},
      {-5, 2, "-101"},
      {8, 8, "10"},
      {255, 16, "ff"},  // digits above 9 are lower case
      {-255, 16, "-ff"},
      {35, 36, "z"},
      {36, 36, "10"},
      {std::numeric_limits<int>::max(), 2, "1111111111111111111111111111111"},
      {std::numeric_limits<int>::min(), 2, "-10000000000000000000000000000000"},
      {std::numeric_limits<int>::min(), 16, "-80000000"},
      {std::numeric_limits<int>::max(), 36, "zik0zj"},
      {std::numeric_limits<int>::min(), 36, "-zik0zk"},
      // not a base
      {5, 1, ""},
      {5, 0, ""},
      {5, -1, ""},
      {5, -10, ""},
      {5, 37, ""},
      {0, 37, ""},
      {-5, std::numeric_limits<int>::max(), ""},
      {-5, std::numeric_limits<int>::min(), ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(to_u8s(c.value, c.base), c.result) << c.value << " in base " << c.base;
  }
}

// The standard library reads back what to_u8s writes.
TEST(ToU8s, ReadsBack) {
  const int values[] = {0,
                        1,
                        -1,
                        35,
                        36,
                        -37,
                        1295,
                        46656,
                        65536,
                        1000000,
                        -123456789,
                        std::numeric_limits<int>::max(),
                        std::numeric_limits<int>::min()};
  for (int base = 2; base <= 36; ++base) {
    for (const int value : values) {
      const std::string text = to_u8s(value, base);
      EXPECT_EQ(std::strtoll(text.c_str(), nullptr, base), value) << text << " in base " << base;
      EXPECT_EQ(text.find_first_not_of("-0123456789abcdefghijklmnopqrstuvwxyz"), std::string::npos);
    }
  }
}

}  // namespace qeo::xstr
