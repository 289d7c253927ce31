// Every public function of phoneme and xstr when memory runs out, at every allocation of a call:
// nothing but std::bad_alloc leaves it, no block is lost, its output can be used again, and the
// library answers as before.

#include "tests/exhaustion.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"
#include "xstr/xstr.h"

namespace qeo::sp {
namespace {

using Codes = std::vector<unsigned short>;
using Bytes = std::vector<unsigned char>;
using Pieces = std::vector<std::string>;
using Syllables = std::vector<SyllableInfo>;
using Table = std::map<int, SpMapping>;

std::string Show(const Codes& codes) { return testing::PrintToString(codes); }
std::string Show(const Bytes& bytes) { return testing::PrintToString(bytes); }
std::string Show(const Pieces& pieces) { return testing::PrintToString(pieces); }
std::string Show(const Syllables& syllables) { return testing::PrintToString(Spell(syllables)); }
std::string Show(const SyllableInfo& syllable) { return testing::PrintToString(Spell(syllable)); }

template <typename Row>
std::size_t CountNulls(const std::map<std::string, const Row*>& rows) {
  std::size_t count = 0;
  for (const auto& [name, row] : rows) count += row == nullptr ? 1 : 0;
  return count;
}

std::string Show(const Table& table) {
  std::string shown;
  for (const auto& [language, mapping] : table) {
    shown += std::to_string(language) + ": " + std::to_string(mapping.phone_count) + " phones, " +
             std::to_string(mapping.phone_map.size()) + " names, " +
             std::to_string(CountNulls(mapping.phone_map)) + " without a phone, " +
             std::to_string(mapping.pinyin_count) + " syllables, " +
             std::to_string(mapping.pinyin_map.size()) + " spellings, " +
             std::to_string(CountNulls(mapping.pinyin_map)) + " without a row, " +
             std::to_string(mapping.max_pinyin_length) + " letters at most; ";
  }
  return shown;
}

template <typename Value>
std::string Show(const std::optional<Value>& value) {
  return testing::PrintToString(value);
}

// How a caller makes an output ready for the next call.
template <typename Output>
void Empty(Output& output) {
  output = Output();
}

void Empty(Bytes& bytes) { bytes.clear(); }
void Empty(SyllableInfo& syllable) { syllable.phones.clear(); }
void Empty(Table&) {}  // an entry is completed, not cleared

// How many allocations there are to fail in a call that fills an output.
template <typename Output, typename Fill>
std::size_t Exhaust(const Output& stale, const Fill& fill) {
  const auto show = [](const Output& output) { return Show(output); };
  const auto empty = [](Output& output) { Empty(output); };
  return exhaustion::Exhaustion(stale, fill, show, empty).Run();
}

// The same for a call that returns its result.
template <typename Call>
std::size_t Exhaust(const Call& call) {
  return Exhaust(std::optional<decltype(call())>(), [&](std::optional<decltype(call())>& value) {
    value = call();
    return 0;
  });
}

std::string Repeat(const std::string& unit, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += unit;
  return text;
}

// What the library answers about every language, to be the same before and after.
std::string AskAllLanguages() {
  std::string answers;
  Syllables syllables;
  for (const Language& language : kLanguages) {
    for (int row = 0; row < language.syllable_count; ++row) {
      SyllableInfo syllable;
      code2ph(language.id, static_cast<unsigned short>(row * 10 + 1), syllable);
      py2ph(language.id, code2py(language.id, static_cast<unsigned short>(row * 10 + 1), true),
            syllables);
      answers += Show(syllable) + Show(syllables);
    }
    for (int id = 0; id < language.phone_count; ++id) {
      const std::string name = GetPhoneInfoById(language.id, id)->name;
      pr2ph(language.id, name + " 1", syllables);
      answers += Show(syllables) + name;
      answers += GetPhoneInfoByDescription(language.id, name)->name;
    }
  }
  return answers;
}

class Exhaustion : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(AskAllLanguages(), answers_before_); }

 private:
  const std::string answers_before_ = AskAllLanguages();
};

struct TextCase {
  int language;
  std::string text;
};

const std::vector<TextCase>& Texts() {
  static const std::vector<TextCase> texts = {
      {10000, "ni3hao3"},
      {10000, "NiHaoMa"},
      {10000, "Xi'an zhuang1 ng4 E2"},
      {10000, "zhuangzhuangzhuangzhuangzhuang"},
      {10000, Repeat("shuang1", 40)},
      {10000, "ni3hao3xyz3"},  // fails at its end
      {10001, "nei5hou2"},
      {10001, "gwaangkwaangngaang"},
      {12345, "ni3hao3"},  // served by Mandarin
  };
  return texts;
}

const std::vector<TextCase>& Pronunciations() {
  static const std::vector<TextCase> texts = {
      {10000, "n i 3, h ao 3"},
      {10000, "n i 3, ng 1, E 2"},  // names without a phone
      {10001, "gw aang 1"},
      {20000, "hh ah 0, l ow 1"},
      {20000, Repeat("s t r eh ng k th s 1,", 10)},
      {20000, Repeat("aa ", 40) + "1"},  // longer than any real syllable
      {20000, "hh ah 0, l ow"},          // fails at its end
      {20000, "hh ah 0, l"},
      {20000, "hh ah 0, zz 1"},
      {12345, "aa 1"},
  };
  return texts;
}

}  // namespace

TEST_F(Exhaustion, Py2Ph) {
  for (const TextCase& c : Texts()) {
    SCOPED_TRACE(c.text);
    for (const Syllables& stale : {Syllables(), Syllables(3, StaleSyllable())}) {
      EXPECT_GT(Exhaust(stale, [&](Syllables& out) { return py2ph(c.language, c.text, out); }), 0U);
    }
  }
}

TEST_F(Exhaustion, Py2Code) {
  for (const TextCase& c : Texts()) {
    SCOPED_TRACE(c.text);
    for (const Codes& stale : {Codes(), Codes{999}}) {
      EXPECT_GT(Exhaust(stale, [&](Codes& out) { return py2code(c.language, c.text, out); }), 0U);
    }
  }
}

TEST_F(Exhaustion, Pyw2Py) {
  for (const TextCase& c : Texts()) {
    SCOPED_TRACE(c.text);
    for (const bool backward : {false, true}) {
      const auto cut = [&](Pieces& out) { return pyw2py(c.language, c.text, out, backward); };
      EXPECT_GT(Exhaust(Pieces(), cut), 0U);
      EXPECT_GT(Exhaust(Pieces(1, Repeat("stale", 9)), cut), 0U);
    }
  }
}

// A piece that is not a syllable is passed on, however long: beyond what a string holds in itself.
TEST_F(Exhaustion, Pyw2PyOfALongPiece) {
  const std::string text = Repeat("x", 100) + "3 " + Repeat("y", 1000) + "3";
  EXPECT_GT(Exhaust(Pieces(), [&](Pieces& out) { return pyw2py(10000, text, out, false); }), 3U);
}

TEST_F(Exhaustion, Pr2PhToSyllables) {
  for (const TextCase& c : Pronunciations()) {
    SCOPED_TRACE(c.text);
    for (const Syllables& stale : {Syllables(), Syllables(3, StaleSyllable())}) {
      EXPECT_GT(Exhaust(stale, [&](Syllables& out) { return pr2ph(c.language, c.text, out); }), 0U);
    }
  }
}

TEST_F(Exhaustion, Pr2PhToBytes) {
  for (const TextCase& c : Pronunciations()) {
    SCOPED_TRACE(c.text);
    for (const Bytes& stale : {Bytes(), Bytes{20, 3}}) {
      Exhaust(stale, [&](Bytes& out) { return pr2ph(c.language, c.text, out); });
    }
  }
  const std::string text = Pronunciations().front().text;
  EXPECT_GT(Exhaust(Bytes(), [&](Bytes& out) { return pr2ph(10000, text, out); }), 0U);
}

TEST_F(Exhaustion, Ph2Ph) {
  Bytes one_long(1000, 24);
  one_long.push_back(3);
  Bytes many;
  for (int i = 0; i < 40; ++i) many.insert(many.end(), {24, 35, 3});
  struct {
    int language;
    Bytes phone_ids;
  } const cases[] = {
      {10000, {24, 35, 3, 28, 43, 3}},
      {10001, {104, 6}},
      {10000, {24, 35, 3, 4}},        // a syllable without phones
      {20000, {33, 13, 0, 200, 23}},  // fails
      {12345, {33, 13, 0}},
      {10000, one_long},
      {10000, many},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.phone_ids));
    for (const Syllables& stale : {Syllables(), Syllables(3, StaleSyllable())}) {
      EXPECT_GT(Exhaust(stale, [&](Syllables& out) { return ph2ph(c.language, c.phone_ids, out); }),
                0U);
    }
  }
}

TEST_F(Exhaustion, Code2Ph) {
  for (const int language : {10000, 10001, 12345}) {
    for (const unsigned short code : Codes{0, 11, 2243, 4035}) {
      SCOPED_TRACE(code);
      const auto expand = [&](SyllableInfo& out) { return code2ph(language, code, out); };
      EXPECT_GT(Exhaust(SyllableInfo(), expand), 0U);
      EXPECT_GT(Exhaust(StaleSyllable(), expand), 0U);
    }
  }
  const auto fail = [](SyllableInfo& out) { return code2ph(20000, 11, out); };
  EXPECT_EQ(Exhaust(StaleSyllable(), fail), 0U);
}

// Small texts are kept in the string itself.
TEST_F(Exhaustion, Code2PyAndToU8sHaveNothingToFail) {
  for (const int language : {10000, 10001, 20000, 12345}) {
    for (const unsigned short code : Codes{0, 11, 2243, 4035, 65535}) {
      EXPECT_EQ(Exhaust([&] { return code2py(language, code, true); }), 0U);
      EXPECT_EQ(Exhaust([&] { return code2py(language, code, false); }), 0U);
    }
  }
  for (const int base : {1, 10, 36}) {
    EXPECT_EQ(Exhaust([&] { return xstr::to_u8s(-1234567, base); }), 0U);
  }
}

TEST_F(Exhaustion, ToU8sInSmallBases) {
  for (const int value : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), -1}) {
    const std::size_t failures = Exhaust([&] { return xstr::to_u8s(value, 2); });
    EXPECT_EQ(failures > 0, value != -1);
  }
}

// They find what is there, and allocate nothing.
TEST_F(Exhaustion, LookupsHaveNothingToFail) {
  const std::string names[] = {"sil", "iou", "aa", "E", "nope", "", Repeat("x", 100)};
  for (const int language : {10000, 10001, 20000, 20005, 30000}) {
    for (int i = -1; i < 256; i += 17) {
      EXPECT_EQ(Exhaust([&] { return GetPhoneInfoById(language, i); }), 0U);
      EXPECT_EQ(Exhaust([&] { return ToneAdaptation(language, static_cast<signed char>(i)); }), 0U);
      EXPECT_EQ(Exhaust([&] { return ph2tp(language, static_cast<unsigned char>(i)); }), 0U);
      const PhoneInfo* phone = GetPhoneInfoById(language, 7);
      EXPECT_EQ(Exhaust([&] { return GetPhoneFeature(phone, i); }), 0U);
    }
    for (const std::string& name : names) {
      EXPECT_EQ(Exhaust([&] { return GetPhoneInfoByDescription(language, name); }), 0U);
      EXPECT_EQ(Exhaust([&] { return LexiconModulePhoneTypeStr(name.c_str(), language); }), 0U);
      EXPECT_EQ(Exhaust([&] { return LexiconEnPhoneTypeStr(name.c_str()); }), 0U);
      EXPECT_EQ(Exhaust([&] { return LexiconEnPhoneId(name.c_str()); }), 0U);
      EXPECT_EQ(Exhaust([&] { return LanguageOfName(name); }), 0U);
    }
  }
}

// A table that a failure left half filled is completed by the next call.
TEST_F(Exhaustion, InitializeSets) {
  for (const Language& language : kLanguages) {
    SCOPED_TRACE(language.name);
    const auto fill = [&](Table& out) {
      language.initialize(out);
      return 0;
    };
    const auto phones = static_cast<std::size_t>(language.phone_count);
    EXPECT_GE(Exhaust(Table(), fill), phones + static_cast<std::size_t>(language.syllable_count));
  }
}

TEST_F(Exhaustion, Trim) {
  const std::string white_space = "\t\r\n ";
  for (const bool both_ends : {false, true}) {
    const std::string text = Repeat(" ", 50) + Repeat("ni3 ", 50);
    EXPECT_GT(Exhaust([&] { return xstr::trim(text, white_space, both_ends); }), 0U);
    EXPECT_GT(Exhaust([&] { return xstr::trim(text, "", both_ends); }), 0U);
    EXPECT_EQ(Exhaust([&] { return xstr::trim(" ni3 ", white_space, both_ends); }), 0U);
    EXPECT_EQ(Exhaust([&] { return xstr::trim("", white_space, both_ends); }), 0U);
  }
}

TEST_F(Exhaustion, Split) {
  for (const std::string& text : {std::string(), std::string("a"), std::string("n i 3"),
                                  Repeat("a ", 100), Repeat("zhuangzhuangzhuangzhuang ", 10)}) {
    for (const int max_parts : {-1, 1, 3}) {
      EXPECT_GT(Exhaust([&] { return xstr::split(text, " ", max_parts); }), 0U);
    }
    EXPECT_GT(Exhaust([&] { return xstr::split(text, "", -1); }), 0U);
  }
}

}  // namespace qeo::sp
