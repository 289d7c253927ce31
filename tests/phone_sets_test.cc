// What the library knows: names, tables, stand-ins, pieces of a text.

#include "phoneme/phone_sets.h"

#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {

constexpr int kUnregistered[] = {0, -1, 9999, 10002, 19999, 20001, 29999, 30000};

// The list whole, as a program would print it.
TEST(Languages, NamesAndCodes) {
  std::string list;
  for (const LanguageNames& language : Languages()) {
    list += std::to_string(language.id) + ' ' + std::string(language.name) + ':';
    for (const std::string_view code : language.codes) list += ' ' + std::string(code);
    list += '\n';
  }
  EXPECT_EQ(list,
            "10000 mandarin: zh zho zh-CN cmn cmn-CN\n"
            "10001 cantonese: yue yue-HK zh-HK\n"
            "20000 english: en eng en-US\n");
}

// A language that is registered is in the list, and no other.
TEST(Languages, AreThoseThatAreRegistered) {
  std::vector<int> registered;  // which phones of another language serve otherwise
  for (int id = 0; id < 40000; ++id) {
    if (GetPhoneInfoById(id, 0)->language == id) registered.push_back(id);
  }
  std::vector<int> listed;
  for (const LanguageNames& language : Languages()) {
    listed.push_back(language.id);
    EXPECT_FALSE(language.name.empty()) << language.id;
    EXPECT_FALSE(language.codes.empty()) << language.id;
  }
  EXPECT_EQ(listed, registered);
}

// Each name finds its own language, so none is listed twice.
TEST(Languages, EachNameFindsItsLanguage) {
  for (const LanguageNames& language : Languages()) {
    EXPECT_EQ(LanguageOfName(language.name), language.id) << language.name;
    for (const std::string_view code : language.codes) {
      EXPECT_EQ(LanguageOfName(code), language.id) << code;
    }
  }
}

TEST(LanguageOfName, ReadsNamesAndCodesInAnyCase) {
  using namespace std::string_literals;
  const struct {
    std::string name;
    std::optional<int> language;
  } cases[] = {
      {"mandarin", LANGUAGE_MANDARIN},
      {"Mandarin", LANGUAGE_MANDARIN},
      {"CANTONESE", LANGUAGE_CANTONESE},
      {"zh-cn", LANGUAGE_MANDARIN},
      {"zh_CN", LANGUAGE_MANDARIN},
      {"CMN", LANGUAGE_MANDARIN},
      {"zh_hk", LANGUAGE_CANTONESE},
      {"YUE", LANGUAGE_CANTONESE},
      {"EN_us", LANGUAGE_AMERICAN_ENGLISH},
      {"", std::nullopt},
      {"z", std::nullopt},
      {"zh-", std::nullopt},
      {"-zh", std::nullopt},
      {"zh--CN", std::nullopt},
      {" zh", std::nullopt},
      {"zh\0"s, std::nullopt},
      {"zh-Hans", std::nullopt},
      {"zh-TW", std::nullopt},
      {"en-GB", std::nullopt},
      {"zh_CN.UTF-8", std::nullopt},
      {"10000", std::nullopt},
      {"en-\xC5\xB1S", std::nullopt},
      {"\xEF\xBD\x85n", std::nullopt},  // a full-width e
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LanguageOfName(c.name), c.language) << testing::PrintToString(c.name);
  }
}

TEST(KnownLanguages, HasAllNamesAndCodes) {
  EXPECT_EQ(KnownLanguages(),
            "mandarin (zh, zho, zh-CN, cmn, cmn-CN), cantonese (yue, yue-HK, zh-HK), "
            "english (en, eng, en-US)");
}

// The tables are those that the library fills for itself.
TEST(FindPhoneSet, HasEveryRegisteredLanguageAndNoOther) {
  std::map<int, SpMapping> table;
  InitializeMandarinSet(table);
  InitializeCantoneseSet(table);
  InitializeAmericanSet(table);
  for (const auto& [id, expected] : table) {
    const SpMapping* const found = FindPhoneSet(id);
    ASSERT_NE(found, nullptr) << id;
    EXPECT_EQ(found->phone_list, expected.phone_list) << id;
    EXPECT_EQ(found->phone_count, expected.phone_count) << id;
    EXPECT_EQ(found->phone_map, expected.phone_map) << id;
    EXPECT_EQ(found->pinyin_list, expected.pinyin_list) << id;
    EXPECT_EQ(found->pinyin_count, expected.pinyin_count) << id;
    EXPECT_EQ(found->pinyin_map, expected.pinyin_map) << id;
    EXPECT_EQ(found->max_pinyin_length, expected.max_pinyin_length) << id;
  }
  for (const int id : kUnregistered) EXPECT_EQ(FindPhoneSet(id), nullptr) << id;
}

TEST(TopTone, IsTheHighestThatIsNotFolded) {
  const auto expect_top = [](int language, int top) {
    EXPECT_EQ(TopTone(language), top) << language;
    for (signed char tone = 1; tone < kTonesPerRow; ++tone) {
      EXPECT_EQ(ToneAdaptation(language, tone) == tone, tone <= TopTone(language)) << language;
    }
  };
  expect_top(LANGUAGE_MANDARIN, 5);
  expect_top(LANGUAGE_CANTONESE, 7);
  expect_top(LANGUAGE_AMERICAN_ENGLISH, 5);
  for (const int id : kUnregistered) expect_top(id, 5);
}

TEST(TonesOf, AreThoseThatModelsHavePhonesFor) {
  const auto expect_tones = [](int language, int first, int last, int none) {
    const Tones tones = TonesOf(language);
    EXPECT_EQ(tones.first, first) << language;
    EXPECT_EQ(tones.last, last) << language;
    EXPECT_EQ(tones.none, none) << language;
  };
  expect_tones(LANGUAGE_MANDARIN, 1, 5, -1);
  expect_tones(LANGUAGE_CANTONESE, 1, 6, 7);
  expect_tones(LANGUAGE_AMERICAN_ENGLISH, 0, 2, -1);
  for (const int id : kUnregistered) expect_tones(id, 0, 2, -1);
}

TEST(ServingLanguage, IsStatedForEachConversion) {
  const struct {
    int id;
    int syllables;
    int pronunciations;
    int phones;
  } cases[] = {
      {LANGUAGE_MANDARIN, 10000, 10000, 10000},
      {LANGUAGE_CANTONESE, 10001, 10001, 10001},
      {LANGUAGE_AMERICAN_ENGLISH, 20000, 20000, 20000},
      {10002, 10000, 20000, 10000},
      {19999, 10000, 20000, 10000},
      {20001, 10000, 20000, 20000},
      {29999, 10000, 20000, 20000},
      {30000, 10000, 20000, 10000},
      {0, 10000, 20000, 10000},
      {-1, 10000, 20000, 10000},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ServingLanguage(Conversion::kSyllables, c.id), c.syllables) << c.id;
    EXPECT_EQ(ServingLanguage(Conversion::kPronunciations, c.id), c.pronunciations) << c.id;
    EXPECT_EQ(ServingLanguage(Conversion::kPhones, c.id), c.phones) << c.id;
  }
}

// The conversions themselves name the language that served.
TEST(ServingLanguage, IsTheOneThatServes) {
  std::vector<SyllableInfo> syllables;
  std::vector<int> ids(std::begin(kUnregistered), std::end(kUnregistered));
  for (const LanguageNames& language : Languages()) ids.push_back(language.id);
  for (const int id : ids) {
    pr2ph(id, "sil 0", syllables);
    EXPECT_EQ(syllables.at(0).language, ServingLanguage(Conversion::kPronunciations, id));
    EXPECT_EQ(GetPhoneInfoById(id, 0)->language, ServingLanguage(Conversion::kPhones, id));
    if (ServingLanguage(Conversion::kSyllables, id) == LANGUAGE_AMERICAN_ENGLISH) continue;
    EXPECT_EQ(py2ph(id, "a1", syllables) + py2ph(id, "aa1", syllables), -1) << "one has it";
    SyllableInfo first;
    ASSERT_EQ(code2ph(id, 1, first), 0);
    EXPECT_EQ(first.language, ServingLanguage(Conversion::kSyllables, id));
  }
}

// "0+3 224 3": offset, length, row, tone; "?" for what is not a syllable.
std::string ShowPieces(int language, const std::string& text, bool backward = false) {
  std::vector<TextPiece> pieces(3);
  FindPieces(language, text, pieces, backward);
  std::string shown;
  for (const TextPiece& piece : pieces) {
    if (!shown.empty()) shown += ", ";
    shown += std::to_string(piece.offset) + '+' + std::to_string(piece.length) + ' ';
    shown += piece.row < 0 ? "?" : FindPhoneSet(language)->pinyin_list[piece.row].pinyin;
    shown += ' ' + std::to_string(piece.raw_tone);
  }
  return shown;
}

TEST(IsSeparator, IsWhatNoPieceHolds) {
  std::string separators;
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    if (IsSeparator(c)) separators += c;
    // "xi?an1" is cut there by a separator, and by a capital or a digit, which are of a piece.
    std::vector<TextPiece> pieces;
    FindPieces(LANGUAGE_MANDARIN, std::string("xi") + c + "an1", pieces);
    const bool is_cut_out = pieces.size() == 2 && pieces[0].length + pieces[1].length == 5;
    EXPECT_EQ(is_cut_out, IsSeparator(c)) << byte;
  }
  EXPECT_EQ(separators, "\t\n\v\f\r '`");
}

TEST(FindPieces, GivesPlacesRowsAndTones) {
  const struct {
    std::string text;
    std::string pieces;
  } cases[] = {
      {"", ""},
      {" ' ", ""},
      {"ni3hao3", "0+3 ni 3, 3+4 hao 3"},
      {"ni3 hoa3", "0+3 ni 3, 4+4 ? 0"},
      {"NiHao9", "0+2 ni 0, 2+4 hao 9"},
      {"nihao3", "0+6 ? 0"},
      {" yipinguo", "1+2 yi 0, 3+4 ping 0"},
      {"xi1'an1", "0+3 xi 1, 4+3 an 1"},
      {"n-i hao", "0+3 ? 0, 4+3 hao 0"},
      {"\xe4\xbd\xa0 ni3", "4+3 ni 3"},
      {"zhuangg", "0+6 zhuang 0"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ShowPieces(LANGUAGE_MANDARIN, c.text), c.pieces) << testing::PrintToString(c.text);
  }
  EXPECT_EQ(ShowPieces(LANGUAGE_MANDARIN, "fangan ni", false), "0+4 fang 0, 4+2 an 0, 7+2 ni 0");
  EXPECT_EQ(ShowPieces(LANGUAGE_MANDARIN, "fangan ni", true), "3+3 gan 0, 0+3 fan 0, 7+2 ni 0");
  EXPECT_EQ(ShowPieces(LANGUAGE_CANTONESE, "nei5hou2"), "0+4 nei 5, 4+4 hou 2");
  EXPECT_EQ(ShowPieces(LANGUAGE_AMERICAN_ENGLISH, "ni3 ni"), "0+3 ? 0");
}

}  // namespace qeo::sp
