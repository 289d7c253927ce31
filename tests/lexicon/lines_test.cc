// Lines of every format to their words and pronunciations.

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lexicon/lexicon.h"
#include "tests/allocation_counter.h"

namespace qeo::lexicon {
namespace {

bool IsWithin(std::string_view part, std::string_view text) {
  return part.data() >= text.data() && part.data() + part.size() <= text.data() + text.size();
}

struct Row {
  std::string_view line;
  EntryKind kind;
  std::string_view word;
  std::string_view text;
};

template <std::size_t kCount>
void ExpectEntries(const Layout& layout, const Row (&rows)[kCount]) {
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.line));
    const Entry entry = ReadEntry(layout, row.line);
    EXPECT_EQ(entry.kind, row.kind);
    EXPECT_EQ(entry.word, row.word);
    EXPECT_EQ(entry.text, row.text);
    EXPECT_TRUE(IsWithin(entry.word, row.line));
    EXPECT_TRUE(IsWithin(entry.text, row.line));
  }
}

constexpr EntryKind kEntry = EntryKind::kEntry;
constexpr EntryKind kComment = EntryKind::kComment;
constexpr EntryKind kBroken = EntryKind::kBroken;

using namespace std::string_view_literals;

TEST(ReadEntry, Lines) {
  const Row rows[] = {
      {"ni3 hao3", kEntry, "", "ni3 hao3"},
      {"", kEntry, "", ""},
      {" \t ", kEntry, "", " \t "},
      {"# ma1", kEntry, "", "# ma1"},
      {";;; ma1", kEntry, "", ";;; ma1"},
      {"A\tni3\r", kEntry, "", "A\tni3\r"},
      {"a\0b\xff"sv, kEntry, "", "a\0b\xff"sv},
  };
  ExpectEntries({Format::kLines}, rows);
}

TEST(ReadEntry, SecondFieldOfTsv) {
  const Row rows[] = {
      {"A\tni3", kEntry, "", "ni3"},
      {"A\tni3\tx\ty", kEntry, "", "ni3"},
      {"\tni3", kEntry, "", "ni3"},
      {"A B\t ni3 hao3 ", kEntry, "", " ni3 hao3 "},
      {"A\t", kEntry, "", ""},
      {"A\t\tx", kEntry, "", ""},
      {"A\tni3\r", kEntry, "", "ni3\r"},
      {"A\t\0\xff"sv, kEntry, "", "\0\xff"sv},
      // No comments
      {"#\tni3", kEntry, "", "ni3"},
      {"#x\tni3", kEntry, "", "ni3"},
      {" # x\tni3", kEntry, "", "ni3"},
      {";;; x\tni3", kEntry, "", "ni3"},
      // Comments
      {"# word\tpinyin", kComment, "", ""},
      {"# ", kComment, "", ""},
      // No second field
      {"", kBroken, "", ""},
      {"#", kBroken, "", ""},
      {"A", kBroken, "", ""},
      {"A ni3", kBroken, "", ""},
  };
  ExpectEntries({Format::kTsv}, rows);
}

TEST(ReadEntry, OtherFieldsOfTsv) {
  constexpr Headword kAny = Headword::kSimplified;
  const Row first[] = {
      {"ni3\tA", kEntry, "", "ni3"}, {"ni3", kEntry, "", "ni3"},  {"", kEntry, "", ""},
      {"\tA", kEntry, "", ""},       {"# ni3", kComment, "", ""},
  };
  ExpectEntries({Format::kTsv, 1, kAny}, first);
  const Row fourth[] = {
      {"A\tB\tC\tni3", kEntry, "", "ni3"},
      {"\t\t\tni3\t", kEntry, "", "ni3"},
      {"A\tB\tC", kBroken, "", ""},
  };
  ExpectEntries({Format::kTsv, 4, kAny}, fourth);
  for (const std::size_t column : {std::size_t{0}, std::numeric_limits<std::size_t>::max()}) {
    const Row none[] = {
        {"A\tB", kBroken, "", ""},
        {"", kBroken, "", ""},
        {"# A", kComment, "", ""},
    };
    ExpectEntries({Format::kTsv, column, kAny}, none);
  }
}

TEST(ReadEntry, Cedict) {
  const Row simplified[] = {
      {"女兒 女儿 [nu:3 er2] /daughter/girl [slang]/", kEntry, "女儿", "nu:3 er2"},
      {"里 里 [li3]", kEntry, "里", "li3"},
      {"里 里 [li3]/in/", kEntry, "里", "li3"},
      {" 里\t里  [ li3 ]  /in/ \r", kEntry, "里", "li3"},
      {"里\v里\f[li3]", kEntry, "里", "li3"},
      {"Ｔ恤 Ｔ恤 [T xu4] /T-shirt/", kEntry, "Ｔ恤", "T xu4"},
      {"a b [[c]]", kEntry, "b", "[c"},
      {"a b [c] [d]", kEntry, "b", "c"},
      {"\0 \xff [\0\xff]"sv, kEntry, "\xff", "\0\xff"sv},
      // Comments
      {"", kComment, "", ""},
      {" \t\r", kComment, "", ""},
      {"# CC-CEDICT", kComment, "", ""},
      {"#! version=1", kComment, "", ""},
      {" #里 里 [li3]", kComment, "", ""},
      // Broken
      {"女兒", kBroken, "", ""},
      {"女兒 女儿", kBroken, "女儿", ""},
      {"女兒 女儿 nu:3", kBroken, "女儿", ""},
      {"女兒 女儿 nu:3]", kBroken, "女儿", ""},
      {"女兒 女儿 [nu:3", kBroken, "女儿", ""},
      {"女兒 女儿 []", kBroken, "女儿", ""},
      {"女兒 女儿 [ \t]", kBroken, "女儿", ""},
      {"女兒 女儿 ]nu:3[", kBroken, "女儿", ""},
      {"女兒 女儿 /girl/ [nu:3]", kBroken, "女儿", ""},
      {"女兒 [nu:3] /x/", kBroken, "[nu:3]", ""},
      {"女兒 女儿[nu:3]", kBroken, "女儿[nu:3]", ""},
  };
  ExpectEntries({Format::kCedict}, simplified);
  const Row traditional[] = {
      {"女兒 女儿 [nu:3 er2] /daughter/", kEntry, "女兒", "nu:3 er2"},
      {"女兒", kBroken, "女兒", ""},
      {"女兒 [nu:3] /x/", kBroken, "女兒", ""},
      {"# 女兒 女儿 [nu:3]", kComment, "", ""},
  };
  ExpectEntries({Format::kCedict, 2, Headword::kTraditional}, traditional);
}

TEST(ReadEntry, Cmudict) {
  const Row rows[] = {
      {"hello HH AH0 L OW1", kEntry, "hello", "HH AH0 L OW1"},
      {"hello(2) HH EH0 L OW1 # old", kEntry, "hello", "HH EH0 L OW1"},
      {" HELLO  HH AH0 L OW1 \r", kEntry, "HELLO", "HH AH0 L OW1"},
      {"a\tAH0", kEntry, "a", "AH0"},
      {"a AH0#x", kEntry, "a", "AH0#x"},
      {"word(x) W ER1 D", kEntry, "word(x)", "W ER1 D"},
      {"(2) T UW1", kEntry, "(2)", "T UW1"},
      {"#hash HH AE1 SH", kEntry, "#hash", "HH AE1 SH"},
      {";semi S EH1 M IY0", kEntry, ";semi", "S EH1 M IY0"},
      {"\xff \0"sv, kEntry, "\xff", "\0"sv},
      // Comments
      {"", kComment, "", ""},
      {" \t\r", kComment, "", ""},
      {";;; comment", kComment, "", ""},
      {";;;comment", kComment, "", ""},
      {" # comment", kComment, "", ""},
      {"#", kComment, "", ""},
      // Broken
      {"hello", kBroken, "hello", ""},
      {"hello(2) ", kBroken, "hello", ""},
      {"hello # HH", kBroken, "hello", ""},
  };
  ExpectEntries({Format::kCmudict}, rows);
}

TEST(ReadEntry, Kaldi) {
  const Row rows[] = {
      {"你好 n i3 h ao3", kEntry, "你好", "n i3 h ao3"},
      {" 你好\t n i3  h ao3 \r", kEntry, "你好", "n i3  h ao3"},
      {"hello(2) HH # x", kEntry, "hello(2)", "HH # x"},
      {"\0 \xff"sv, kEntry, "\0"sv, "\xff"},
      // There are no comments
      {"# not one", kEntry, "#", "not one"},
      {";;; x", kEntry, ";;;", "x"},
      {"", kComment, "", ""},
      {" \t\r", kComment, "", ""},
      // Broken
      {"你", kBroken, "你", ""},
      {" 你\t", kBroken, "你", ""},
  };
  ExpectEntries({Format::kKaldi}, rows);
}

TEST(ReadEntry, TakesViewsWithoutData) {
  for (const auto& format : kFormats) {
    SCOPED_TRACE(format.name);
    const Layout layout = {format.meaning};
    const Entry entry = ReadEntry(layout, {});
    const EntryKind of_fields = layout.format == Format::kTsv ? kBroken : kEntry;
    EXPECT_EQ(entry.kind, layout.HasWords() ? kComment : of_fields);
    EXPECT_TRUE(entry.word.empty() && entry.text.empty());
  }
}

TEST(BrokenLineProblem, OfEachLayout) {
  struct {
    Layout layout;
    std::string_view problem;
  } const cases[] = {
      {{Format::kLines}, "no pronunciation"},
      {{}, "no pronunciation"},
      {{Format::kTsv}, "no column 2"},
      {{Format::kTsv, 0, Headword::kSimplified}, "no column 0"},
      {{Format::kTsv, 4294967297, Headword::kSimplified}, "no column 4294967297"},
      {{Format::kCedict}, "expected \"TRADITIONAL SIMPLIFIED [pronunciation]\""},
      {{Format::kCmudict}, "no pronunciation"},
      {{Format::kKaldi}, "no pronunciation"},
  };
  for (const auto& c : cases) EXPECT_EQ(BrokenLineProblem(c.layout), c.problem);
}

TEST(Names, AreThoseOfTheTables) {
  const std::vector<std::string_view> formats = {"lines", "tsv", "cedict", "cmudict", "kaldi"};
  ASSERT_EQ(std::size(kFormats), formats.size());
  for (std::size_t i = 0; i < formats.size(); ++i) {
    EXPECT_EQ(kFormats[i].name, formats[i]);
    EXPECT_EQ(kFormats[i].meaning, static_cast<Format>(i));
    EXPECT_EQ(FormatOfName(formats[i]), static_cast<Format>(i));
  }
  ASSERT_EQ(std::size(kHeadwords), 2U);
  EXPECT_EQ(HeadwordOfName("simplified"), Headword::kSimplified);
  EXPECT_EQ(HeadwordOfName("traditional"), Headword::kTraditional);
  for (const std::string_view other : {""sv, "csv"sv, "TSV"sv, "tsv "sv, "ts"sv, "tsv\0"sv}) {
    EXPECT_EQ(FormatOfName(other), std::nullopt) << other;
    EXPECT_EQ(HeadwordOfName(other), std::nullopt) << other;
  }
}

TEST(Layout, HasWords) {
  const std::set<Format> without = {Format::kLines, Format::kTsv};
  for (const auto& format : kFormats) {
    EXPECT_EQ(Layout{format.meaning}.HasWords(), without.count(format.meaning) == 0) << format.name;
  }
}

TEST(TakeLine, Lines) {
  struct {
    std::string_view content;
    std::vector<std::pair<std::string_view, std::string_view>> lines;
  } const cases[] = {
      {"", {}},
      {"a", {{"a", "\n"}}},
      {"a\n", {{"a", "\n"}}},
      {"a\r\n", {{"a", "\r\n"}}},
      {"a\nb\r\nc", {{"a", "\n"}, {"b", "\r\n"}, {"c", "\n"}}},
      {"\n\r\n\n", {{"", "\n"}, {"", "\r\n"}, {"", "\n"}}},
      {"a\r", {{"a\r", "\n"}}},  // a return alone ends no line
      {"a\rb\r\r\n", {{"a\rb\r", "\r\n"}}},
      {"\0\n\xff"sv, {{"\0"sv, "\n"}, {"\xff", "\n"}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.content));
    std::vector<std::pair<std::string_view, std::string_view>> lines;
    std::string_view rest = c.content;
    while (!rest.empty()) {
      const Line line = TakeLine(rest);
      EXPECT_TRUE(IsWithin(line.text, c.content));
      lines.emplace_back(line.text, line.end);
    }
    EXPECT_EQ(lines, c.lines);
    EXPECT_TRUE(IsWithin(rest, c.content));
    EXPECT_EQ(TakeLine(rest).text, "");
  }
}

TEST(WithoutByteOrderMark, LeavesOutOne) {
  struct {
    std::string_view content;
    std::string_view rest;
  } const cases[] = {
      {"", ""},
      {"ni3", "ni3"},
      {"\xef\xbb\xbfni3\n", "ni3\n"},
      {"\xef\xbb\xbf", ""},
      {"\xef\xbb\xbf\xef\xbb\xbfni3", "\xef\xbb\xbfni3"},
      {"\xef\xbb", "\xef\xbb"},
      {"ni3\xef\xbb\xbf", "ni3\xef\xbb\xbf"},
  };
  for (const auto& c : cases) EXPECT_EQ(WithoutByteOrderMark(c.content), c.rest);
}

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ReadEntry, AllocatesNothing) {
  const std::string content = Content(PHONEME_DATA_DIR "/cmudict_sample.dict");
  const std::size_t before = allocations::Count();
  ASSERT_GT(before, 0U);  // the content was counted
  std::size_t entries = 0;
  for (const auto& format : kFormats) {
    for (std::string_view rest = WithoutByteOrderMark(content); !rest.empty();) {
      const Layout layout = {FormatOfName(format.name).value_or(Format::kLines)};
      if (ReadEntry(layout, TakeLine(rest).text).kind == kEntry) ++entries;
    }
  }
  EXPECT_EQ(allocations::Count(), before);
  EXPECT_GT(entries, 3 * 2347U);
}

TEST(RealFiles, EveryLineIsRead) {
  struct {
    const char* path;
    Format format;
    std::map<EntryKind, int> kinds;
  } const cases[] = {
      {PHONEME_DATA_DIR "/cmudict_sample.dict", Format::kCmudict, {{kEntry, 2347}, {kComment, 2}}},
      {PHONEME_DATA_DIR "/mandarin.tsv", Format::kTsv, {{kEntry, 2891}, {kComment, 3}}},
      {PHONEME_DATA_DIR "/../examples/sample.cedict",
       Format::kCedict,
       {{kEntry, 12}, {kComment, 1}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path);
    const std::string content = Content(c.path);
    std::map<EntryKind, int> kinds;
    for (std::string_view rest = WithoutByteOrderMark(content); !rest.empty();) {
      ++kinds[ReadEntry({c.format}, TakeLine(rest).text).kind];
    }
    EXPECT_EQ(kinds, c.kinds);
  }
}

}  // namespace
}  // namespace qeo::lexicon
