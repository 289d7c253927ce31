// How many blocks of memory each conversion allocates when its output container is reused. The
// counts are exact: this executable is linked to allocation_counter.cc.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "tests/allocation_counter.h"

namespace qeo::sp {
namespace {

using Bytes = std::vector<unsigned char>;

// Calls once so that the output containers have their size, then counts a second call.
template <typename Call>
std::size_t AllocationsOfASecondCall(const Call& call) {
  call();
  const std::size_t before = allocations::Count();
  call();
  return allocations::Count() - before;
}

std::string Repeat(const std::string& unit, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += unit;
  return text;
}

}  // namespace

// The phone sets are there before main: also the first call of the process makes nothing.
TEST(Allocations, NoneInTheFirstCall) {
  const std::size_t before = allocations::Count();
  const int id = GetPhoneInfoById(LANGUAGE_CANTONESE, 94)->id;
  EXPECT_EQ(allocations::Count() - before, 0U);
  EXPECT_EQ(id, 94);
}

// The counter itself.
TEST(Allocations, AreCounted) {
  static const void* volatile seen;  // or a compiler may do without the block
  EXPECT_EQ(AllocationsOfASecondCall([] {
              const std::vector<int> block(3);
              seen = block.data();
            }),
            1U);
  EXPECT_EQ(AllocationsOfASecondCall([] {
              const std::vector<std::string> blocks(2, Repeat("x", 5));
              seen = blocks.data();
            }),
            1U);
  EXPECT_NE(seen, nullptr);
  EXPECT_EQ(AllocationsOfASecondCall([] {}), 0U);
}

TEST(Allocations, NoneInPy2Code) {
  struct {
    int language;
    std::string text;
    std::size_t syllables;
  } const cases[] = {
      {10000, "ni3hao3", 2},
      {10000, "zhong1 guo2 ren2", 3},
      {10000, "nihao", 2},
      {10000, "NiHao", 2},
      {10000, "Nihaoma", 3},
      {10000, "zhuangzhuangzhuangzhuangzhuang", 5},
      {10000, " Xi'an ", 2},
      {10001, "nei5hou2", 2},
      {10001, "neihou", 2},
      {10001, "gwaang1kwaang1ngaang1", 3},
      {30000, "ni3hao3", 2},  // served by Mandarin
      {10000, Repeat("shuang1", 10'000), 10'000},
      {10000, Repeat("shuang", 700'000), 700'000},  // 4 MB without a separator
      {10001, Repeat("Gwaang", 10'000), 10'000},
      {10000, "", 0},
      {10000, "ni3xyz3", 0},  // fails
      {10000, Repeat("x", 100'000), 0},
      {20000, "hello", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 40));
    std::vector<unsigned short> codes;
    codes.reserve(1);
    EXPECT_EQ(AllocationsOfASecondCall([&] { py2code(c.language, c.text, codes); }), 0U);
    EXPECT_EQ(codes.size(), c.syllables);
  }
}

TEST(Allocations, OneASyllableInPy2Ph) {
  struct {
    int language;
    std::string text;
    std::size_t syllables;
    std::size_t allocations;
  } const cases[] = {
      {10000, "ni3hao3", 2, 2},
      {10000, "nihao", 2, 2},
      {10000, "NiHao", 2, 2},
      {10000, "a1", 1, 1},
      {10000, "m2", 1, 1},
      {10000, "ng4", 1, 0},  // an empty phone list
      {10000, "ni3ng4", 2, 1},
      {10000, "zhuangzhuangzhuang", 3, 3},
      {10001, "nei5hou2", 2, 2},
      {10001, "neihou", 2, 2},
      {12345, "ni3hao3", 2, 2},
      {10000, Repeat("shuang1", 10'000), 10'000, 10'000},
      {10000, Repeat("shuang", 100'000), 100'000, 100'000},
      {10000, "", 0, 0},
      {10000, "hello", 1, 1},
      {20000, "hello", 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 40));
    std::vector<SyllableInfo> syllables;
    EXPECT_EQ(AllocationsOfASecondCall([&] { py2ph(c.language, c.text, syllables); }),
              c.allocations);
    EXPECT_EQ(syllables.size(), c.syllables);
  }
}

TEST(Allocations, NoneInPyw2PyOnceTheStringsExist) {
  struct {
    int language;
    std::string word;
    std::size_t syllables;
  } const cases[] = {
      {10000, "nihao", 2},
      {10000, "ni3hao3", 2},
      {10000, "Nihao", 2},
      {10000, "zhuangzhuangzhuangzhuangzhuang", 5},
      {10000, "zhuang1zhuang1zhuang1", 3},
      {10001, "neihou", 2},
      {10001, "Gwaang1 kwaang1", 2},
      {12345, "nihao", 2},
      {10000, Repeat("shuang", 100'000), 100'000},
      {10000, "", 0},
      {20000, "hello", 0},
  };
  for (const auto& c : cases) {
    for (const bool backward : {false, true}) {
      SCOPED_TRACE(c.word.substr(0, 40) + (backward ? " backward" : ""));
      std::vector<std::string> syllables;
      EXPECT_EQ(AllocationsOfASecondCall([&] { pyw2py(c.language, c.word, syllables, backward); }),
                0U);
      EXPECT_EQ(syllables.size(), c.syllables);
    }
  }
}

TEST(Allocations, OneASyllableInPr2PhToSyllablesAndNoneToBytes) {
  struct {
    int language;
    std::string text;
    std::size_t syllables;
    std::size_t bytes;
  } const cases[] = {
      {10000, "n i 3, h ao 3", 2, 6},
      {10001, "n ei 5, h ou 2", 2, 6},
      {20000, "hh ah 0, l ow 1", 2, 6},
      {20000, "s t r eh ng k th s 1", 1, 9},
      {20000, " aa 1,,\t zh 2 \n", 2, 4},
      {12345, "aa 1", 1, 2},
      {10000, Repeat("zh uang 1, ", 10'000), 10'000, 30'000},
      {20000, Repeat("aa ", 12) + "1", 1, 13},  // longer than any real syllable
      {20000, "", 0, 0},
      {20000, " , ", 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 40));
    std::vector<SyllableInfo> syllables;
    EXPECT_EQ(AllocationsOfASecondCall([&] { pr2ph(c.language, c.text, syllables); }), c.syllables);
    EXPECT_EQ(syllables.size(), c.syllables);
    Bytes phone_ids;
    const auto to_bytes = [&] {
      phone_ids.clear();
      pr2ph(c.language, c.text, phone_ids);
    };
    EXPECT_EQ(AllocationsOfASecondCall(to_bytes), 0U);
    EXPECT_EQ(phone_ids.size(), c.bytes);
  }
}

TEST(Allocations, OneASyllableInPh2Ph) {
  Bytes many;
  for (int i = 0; i < 10'000; ++i) many.insert(many.end(), {24, 35, 3});
  Bytes one_long(1'000, 24);
  one_long.push_back(3);
  struct {
    int language;
    Bytes phone_ids;
    std::size_t syllables;
    std::size_t allocations;
  } const cases[] = {
      {10000, {24, 35, 3, 28, 43, 3}, 2, 2},
      {10001, {104, 6}, 1, 1},
      {20000, {42, 44, 41, 19, 39, 35, 45, 42, 1}, 1, 1},
      {12345, {33, 13, 0, 36, 23, 1}, 2, 2},
      {10000, {24, 35, 3, 4}, 2, 1},  // the second has no phones
      {10000, {1, 2, 3}, 3, 0},
      {10000, Bytes(1'000, 24), 0, 0},  // never closed
      {10000, {}, 0, 0},
      {10000, many, 10'000, 10'000},
      {10000, one_long, 1, 1},
  };
  for (const auto& c : cases) {
    std::vector<SyllableInfo> syllables;
    SCOPED_TRACE(testing::PrintToString(c.phone_ids));
    EXPECT_EQ(AllocationsOfASecondCall([&] { ph2ph(c.language, c.phone_ids, syllables); }),
              c.allocations);
    EXPECT_EQ(syllables.size(), c.syllables);
  }
}

TEST(Allocations, NoneInCode2PhAndCode2Py) {
  SyllableInfo syllable;
  syllable.phones.reserve(2);
  const std::size_t before = allocations::Count();
  std::size_t phones = 0;
  std::size_t letters = 0;
  for (const int language : {10000, 10001, 20000, 30000}) {
    for (int code = 0; code < 65536; ++code) {
      syllable.phones.clear();
      code2ph(language, static_cast<unsigned short>(code), syllable);
      phones += syllable.phones.size();
      letters += code2py(language, static_cast<unsigned short>(code), true).size();
    }
  }
  EXPECT_EQ(allocations::Count() - before, 0U);
  EXPECT_GT(phones, 20'000U);
  EXPECT_GT(letters, 200'000U);
}

TEST(Allocations, NoneInTheLookups) {
  const std::string names[] = {"iou", "aa", "E", "nope", ""};
  const PhoneInfo* phone = GetPhoneInfoById(LANGUAGE_AMERICAN_ENGLISH, 8);
  const std::size_t before = allocations::Count();
  int sum = 0;
  for (const int language : {10000, 10001, 20000, 20005, 30000}) {
    for (int value = 0; value < 256; ++value) {
      sum += ph2tp(language, static_cast<unsigned char>(value));
      sum += ToneAdaptation(language, static_cast<signed char>(value - 128));
      sum += GetPhoneInfoById(language, value)->type;
      sum += GetPhoneFeature(phone, value);
    }
    for (const std::string& name : names) {
      sum += GetPhoneInfoByDescription(language, name) == nullptr ? 1 : 0;
      sum += LexiconModulePhoneTypeStr(name.c_str(), language);
      sum += LexiconEnPhoneTypeStr(name.c_str()) + LexiconEnPhoneId(name.c_str());
      sum += LanguageOfName(name).value_or(0);
    }
  }
  EXPECT_EQ(allocations::Count() - before, 0U);
  EXPECT_NE(sum, 0);
}

}  // namespace qeo::sp
