// Text from outside as messages show it.

#include "tools/report/messages.h"

#include <gtest/gtest.h>

#include <string>

#include "tools/report/json.h"
#include "tools/report/terminal_text.h"

namespace qeo::tool {
namespace {

// U+202E, which changes the direction; whole it would in this source, too.
const std::string kBidi = std::string("\xe2\x80") + '\xae';

std::string Repeat(const std::string& unit, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += unit;
  return text;
}

}  // namespace

TEST(Quoted, EscapesSoThatNoTwoTextsLookAlike) {
  const struct {
    std::string text;
    const char* quoted;
  } cases[] = {
      {"", R"("")"},
      {"nǐ hǎo 你", R"("nǐ hǎo 你")"},
      {"a\"b", R"("a\"b")"},
      {"a\\\"b", R"("a\\\"b")"},
      {"\xff", R"("\xff")"},
      {"\\xff", R"("\\xff")"},
      {"\\\\xff", R"("\\\\xff")"},
      {"\x1b[31m", R"("\x1b[31m")"},
      {"a\nb\tc\x7f", R"("a\x0ab\x09c\x7f")"},
      {"\xc2\x9b" + kBidi, R"("\xc2\x9b\xe2\x80\xae")"},  // C1 control, direction
      {"\xc3", R"("\xc3")"},
      {"a\"...", R"("a\"...")"},
  };
  for (const auto& c : cases) EXPECT_EQ(Quoted(c.text), c.quoted);
}

// The dots of a text that goes on are outside the quotes, with the size of the whole.
TEST(Quoted, ShortensToEightyCells) {
  EXPECT_EQ(Quoted(Repeat("a", 80)), '"' + Repeat("a", 80) + '"');
  EXPECT_EQ(Quoted(Repeat("a", 81)), '"' + Repeat("a", 80) + "\"... (81 bytes)");
  EXPECT_EQ(Quoted(Repeat("你", 41)), '"' + Repeat("你", 40) + "\"... (123 bytes)");
  EXPECT_EQ(Quoted(Repeat("\x1b", 21)), '"' + Repeat("\\x1b", 20) + "\"... (21 bytes)");
  EXPECT_EQ(Quoted(Repeat("\"", 41)), '"' + Repeat("\\\"", 40) + "\"... (41 bytes)");
  EXPECT_EQ(Quoted(Repeat("\xcc\x81", 500)),
            '"' + Repeat(R"(\xcc\x81)", 10) + "\"... (1000 bytes)");
  // Marks on a letter take no cell, and are bounded all the same.
  EXPECT_EQ(Quoted('e' + Repeat("\xcc\x81", 500)),
            "\"e" + Repeat("\xcc\x81", 319) + "\"... (1001 bytes)");
}

// A mark that joined an escape or a quote would make another character of it.
TEST(Quoted, ShowsAMarkOnlyOnACharacterOfTheText) {
  const std::string mark = "\xcc\x81";           // U+0301
  const std::string spacing = "\xe0\xa4\xbe";    // U+093E, of category Mc
  const std::string enclosing = "\xe2\x83\x9d";  // U+20DD, of category Me
  const struct {
    std::string text;
    std::string quoted;
    std::string json;
  } cases[] = {
      {mark, R"("\xcc\x81")", R"("\u0301")"},
      {mark + mark + 'a' + mark, R"("\xcc\x81\xcc\x81a)" + mark + '"',
       R"("\u0301\u0301a)" + mark + '"'},
      {"e" + mark + mark, "\"e" + mark + mark + '"', "\"e" + mark + mark + '"'},
      {" " + mark, "\" " + mark + '"', "\" " + mark + '"'},
      {"你" + mark, "\"你" + mark + '"', "\"你" + mark + '"'},
      {"\x1b" + mark, R"("\x1b\xcc\x81")", R"("\u001b\u0301")"},
      {"\x7f" + mark, R"("\x7f\xcc\x81")", R"("\u007f\u0301")"},
      {"\n" + mark, R"("\x0a\xcc\x81")", R"("\n\u0301")"},
      {"\"" + mark + mark, R"("\"\xcc\x81\xcc\x81")", R"("\"\u0301\u0301")"},
      {"\\" + mark, R"("\\\xcc\x81")", R"("\\\u0301")"},
      {"\\n" + mark, R"("\\n)" + mark + '"', R"("\\n)" + mark + '"'},
      {"\\u0041" + mark, R"("\\u0041)" + mark + '"', R"("\\u0041)" + mark + '"'},
      {kBidi + mark, R"("\xe2\x80\xae\xcc\x81")", R"("\u202e\u0301")"},
      {spacing + 'a' + spacing, R"("\xe0\xa4\xbea)" + spacing + '"', R"("\u093ea)" + spacing + '"'},
      {enclosing + "\x1b" + enclosing, R"("\xe2\x83\x9d\x1b\xe2\x83\x9d")",
       R"("\u20dd\u001b\u20dd")"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Quoted(c.text), c.quoted);
    EXPECT_EQ(Presentable(Quoted(c.text)), c.quoted);
    std::string json;
    AppendJsonText(Json(c.text), json);
    EXPECT_EQ(json, c.json);
    EXPECT_EQ(Json::parse(json), Json(c.text));
  }
  EXPECT_EQ(Quoted("\xff" + mark), R"("\xff\xcc\x81")");
  std::string json;
  AppendJsonText(Json({{"a", mark}, {"b" + mark, {mark, "c"}}}), json);
  EXPECT_EQ(json, R"({"a":"\u0301","b)" + mark + R"(":["\u0301","c"]})");
}

TEST(QuotedName, HasRoomForALongPath) {
  EXPECT_EQ(QuotedName(Repeat("a/", 128)), '"' + Repeat("a/", 128) + '"');
  EXPECT_EQ(QuotedName(Repeat("a", 257)), '"' + Repeat("a", 256) + "\"... (257 bytes)");
}

TEST(Quote, IsNeverWiderThanItsCells) {
  EXPECT_EQ(Quote("abcdef", 8), R"("abcdef")");
  EXPECT_EQ(Quote("abcdefg", 8), R"("abc"...)");
  EXPECT_EQ(Quote("a\"bcdef", 8), R"("a\""...)");
  EXPECT_EQ(Quote("你你你你", 8), R"("你"...)");
}

TEST(Escaped, KeepsFileNamesWhole) {
  EXPECT_EQ(Escaped("a b\n\"\\"), R"(a b\x0a\"\\)");
  EXPECT_EQ(Escaped(Repeat("a", 4096)), Repeat("a", 4096));
  EXPECT_EQ(Escaped(Repeat("\n", 4096)), Repeat("\\x0a", 4096));
}

// What quotes nothing, or forgets to, is still one harmless line.
TEST(AppendMessage, IsOneBoundedLineWhateverItSays) {
  std::string out = "before\n";
  AppendMessage("raw \x1b[31m\n" + kBidi + " and " + Quoted("\\"), out);
  EXPECT_EQ(out, "before\nphoneme: raw \\x1b[31m\\x0a\\xe2\\x80\\xae and \"\\\\\"\n");
  out.clear();
  AppendMessage(Repeat("a", 5000000), out);
  EXPECT_EQ(out, "phoneme: " + Repeat("a", 997) + "...\n");
}

TEST(AppendJsonText, EscapesWhatATerminalObeysOrNobodySees) {
  const struct {
    std::string text;
    const char* json;
  } cases[] = {
      {"nǐ 你 😀", R"("nǐ 你 😀")"},
      {"\x1b\n\"\\", R"("\u001b\n\"\\")"},
      {"a\x7f\xc2\x9b"
       "b",
       R"("a\u007f\u009bb")"},
      {kBidi + "\xf3\xa0\x81\x81", R"("\u202e\udb40\udc41")"},
      {"\xff", R"("�")"},
  };
  for (const auto& c : cases) {
    std::string out = "before ";
    AppendJsonText(Json(c.text), out);
    EXPECT_EQ(out, std::string("before ") + c.json);
    EXPECT_EQ(Json::parse(out.substr(7)).dump(-1, ' ', false),
              Json::parse(c.json).dump(-1, ' ', false));
  }
}

}  // namespace qeo::tool
