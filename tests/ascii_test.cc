// Text between blanks; kinds of bytes are tested by what asks for them.

#include "phoneme/ascii.h"

#include <gtest/gtest.h>

#include <string_view>

namespace qeo::ascii {
namespace {

TEST(Trim, LeavesOutBlanksAtTheEnds) {
  struct {
    std::string_view text;
    std::string_view front;  // without those at its beginning
    std::string_view both;
  } const cases[] = {
      {"", "", ""},
      {"a", "a", "a"},
      {"a b", "a b", "a b"},
      {" a ", "a ", "a"},
      {"\t\n\v\f\r a\tb \r\f\v\n\t", "a\tb \r\f\v\n\t", "a\tb"},
      {" \t ", "", ""},
      {"\xc2\xa0", "\xc2\xa0", "\xc2\xa0"},  // a blank, but not of ASCII
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    EXPECT_EQ(TrimFront(c.text), c.front);
    EXPECT_EQ(Trim(c.text), c.both);
    EXPECT_LE(Trim(c.text).data(), c.text.data() + c.text.size());
  }
}

TEST(TakeWord, TakesWordsAndTheBlanksAroundThem) {
  struct {
    std::string_view text;
    std::string_view word;
    std::string_view rest;
  } const cases[] = {
      {"", "", ""},
      {" \t", "", ""},
      {"a", "a", ""},
      {"ab c", "ab", "c"},
      {" ab\t c d ", "ab", "c d "},
      {"\na\v", "a", ""},
      {"\xc2\xa0 a", "\xc2\xa0", "a"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    std::string_view rest = c.text;
    EXPECT_EQ(TakeWord(rest), c.word);
    EXPECT_EQ(rest, c.rest);
    EXPECT_EQ(rest.data() + rest.size(), c.text.data() + c.text.size());
  }
}

}  // namespace
}  // namespace qeo::ascii
