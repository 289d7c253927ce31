// The fast index of names, held against the ordered maps it is built from, and the end of a cut
// that looks its syllables up there.

#include "phoneme/name_index.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "phoneme/pinyin_splitter.h"
#include "testing.h"

namespace qeo::sp::internal {
namespace {

NameIndex MakeIndex(const std::map<std::string, int>& rows) {
  std::vector<NameIndex::Name> names;
  names.reserve(rows.size());
  for (const auto& [name, row] : rows) names.push_back({name, row});
  return NameIndex(names);
}

int Find(const NameIndex& index, const std::string& name) {
  if (name.size() > kWordBytes) return NameIndex::kAbsent;
  return index.FindFirst(EightByteReader(name).From(0), name.size());
}

// All texts one edit away: a byte dropped, changed, added or doubled, at every place.
std::set<std::string> NearMisses(const std::string& name) {
  const std::string bytes = std::string("aegnouvzE3 -'") + '\0' + '\x80' + '\xff';
  std::set<std::string> near;
  for (std::size_t i = 0; i <= name.size(); ++i) {
    if (i < name.size()) near.insert(name.substr(0, i) + name.substr(i + 1));
    for (const char byte : bytes) {
      near.insert(name.substr(0, i) + byte + name.substr(i));
      if (i < name.size()) near.insert(name.substr(0, i) + byte + name.substr(i + 1));
    }
  }
  return near;
}

std::map<std::string, int> PhoneRows(const SpMapping& mapping) {
  std::map<std::string, int> rows;
  for (const auto& [name, phone] : mapping.phone_map) {
    rows[name] = phone == nullptr ? NameIndex::kNoRow : phone->id;
  }
  return rows;
}

std::map<std::string, int> SyllableRows(const SpMapping& mapping) {
  std::map<std::string, int> rows;
  for (const auto& [spelling, row] : mapping.pinyin_map) rows[spelling] = row->id;
  return rows;
}

void ExpectSameAnswers(const std::map<std::string, int>& rows, std::size_t least_misses) {
  const NameIndex index = MakeIndex(rows);
  std::size_t misses = 0;
  for (const auto& [name, row] : rows) {
    EXPECT_EQ(Find(index, name), row) << testing::PrintToString(name);
    for (const std::string& near : NearMisses(name)) {
      const auto found = rows.find(near);
      const int expected = found != rows.end() ? found->second : NameIndex::kAbsent;
      if (expected == NameIndex::kAbsent) ++misses;
      ASSERT_EQ(Find(index, near), expected) << testing::PrintToString(near);
    }
  }
  EXPECT_GE(misses, least_misses);
}

class NameIndexOf : public testing::TestWithParam<Language> {
 protected:
  const SpMapping& Mapping() const { return mapping_; }

 private:
  const SpMapping mapping_ = GetParam().mapping();
};

TEST_P(NameIndexOf, PhonesAnswersLikeTheMap) { ExpectSameAnswers(PhoneRows(Mapping()), 2000); }

TEST_P(NameIndexOf, SyllablesAnswersLikeTheMap) {
  const std::map<std::string, int> rows = SyllableRows(Mapping());
  ExpectSameAnswers(rows, rows.size() * 60);
}

TEST_P(NameIndexOf, EveryNameFits) {
  std::size_t names = 0;
  for (const auto& rows : {PhoneRows(Mapping()), SyllableRows(Mapping())}) {
    for (const auto& [name, row] : rows) {
      ++names;
      EXPECT_GE(name.size(), 1U);
      EXPECT_LE(name.size(), NameIndex::kMaxNameLength) << name;
    }
  }
  EXPECT_GE(names, 41U);
}

INSTANTIATE_TEST_SUITE_P(Language, NameIndexOf, testing::ValuesIn(kLanguages), LanguageName);

// Whatever rule sends a piece, none follows the one that the sink refuses.
TEST(SplitPinyin, EndsWhereTheSinkSaysSo) {
  const NameIndex syllables = MakeIndex({{"ni", 0}, {"hao", 1}, {"ma", 2}});
  struct {
    const char* text;
    bool backward;
    std::vector<std::string> pieces;  // two of them
  } const cases[] = {
      {"ni3hao3ma1", false, {"ni3", "hao3"}}, {"x3y3z3", false, {"x3", "y3"}},
      {"nihaoma", false, {"ni", "hao"}},      {"nihaoma", true, {"ma", "hao"}},
      {"nihao ma", false, {"ni", "hao"}},     {"nihao ma", true, {"hao", "ni"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    std::vector<std::string> pieces;
    SplitPinyin(syllables, c.text, c.backward, [&pieces](const SplitPiece& piece) {
      pieces.emplace_back(piece.text);
      return pieces.size() < 2;
    });
    EXPECT_EQ(pieces, c.pieces);
  }
}

TEST(SplitPinyin, TellsRowsAndTones) {
  const NameIndex syllables = MakeIndex({{"ni", 0}, {"hao", 1}});
  for (const bool backward : {false, true}) {
    std::string told;
    SplitPinyin(syllables, "ni3 x2 nini", backward, [&told](const SplitPiece& piece) {
      told += std::string(piece.text) + ' ' + std::to_string(piece.row) + ' ' +
              std::to_string(piece.raw_tone) + ", ";
      return true;
    });
    EXPECT_EQ(told, "ni3 0 3, x2 -1 2, ni 0 0, ni 0 0, ");
  }
}

TEST(NameIndex, HoldsNothing) {
  const NameIndex index = MakeIndex({});
  for (const std::string name : {"", "a", "abcdef", "abcdefg", "abcdefgh"}) {
    EXPECT_EQ(Find(index, name), NameIndex::kAbsent) << name;
  }
}

TEST(NameIndex, TellsNulFromTheEnd) {
  const NameIndex index = MakeIndex({{"a", 1}, {std::string("a\0b", 3), 2}});
  const struct {
    std::string name;
    int row;
  } cases[] = {
      {"a", 1},
      {std::string("a\0b", 3), 2},
      {std::string("a\0", 2), NameIndex::kAbsent},
      {std::string("a\0\0\0\0\0\0", 7), NameIndex::kAbsent},
      {std::string("\0a", 2), NameIndex::kAbsent},
      {std::string("\0", 1), NameIndex::kAbsent},
      {std::string("\0\0\0\0\0\0", 6), NameIndex::kAbsent},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Find(index, c.name), c.row) << testing::PrintToString(c.name);
  }
}

TEST(NameIndex, LeavesOutNamesThatDoNotFit) {
  const NameIndex index = MakeIndex({{"", 1}, {"a", 2}, {"zhuang", 3}, {"shuangx", 4}});
  const struct {
    const char* name;
    int row;
  } cases[] = {
      {"", NameIndex::kAbsent},       {"a", 2}, {"zhuang", 3}, {"shuangx", NameIndex::kAbsent},
      {"shuang", NameIndex::kAbsent},
  };
  for (const auto& c : cases) EXPECT_EQ(Find(index, c.name), c.row) << c.name;
}

TEST(NameIndex, GrowsWithTheNames) {
  // As many rows as syllable codes can number.
  constexpr int kMostRows = 6553;
  std::map<std::string, int> rows;
  for (int row = 0; row < kMostRows; ++row) rows["s" + std::to_string(row)] = row;
  const NameIndex index = MakeIndex(rows);
  for (int row = 0; row < kMostRows; ++row) {
    ASSERT_EQ(Find(index, "s" + std::to_string(row)), row);
    ASSERT_EQ(Find(index, "t" + std::to_string(row)), NameIndex::kAbsent);
  }
  EXPECT_EQ(Find(index, "s" + std::to_string(kMostRows)), NameIndex::kAbsent);
}

}  // namespace
}  // namespace qeo::sp::internal
