// The names and codes of languages.

#include "phoneme/languages.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "phoneme/registry.h"
#include "testing.h"

namespace qeo::sp {

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
  std::vector<int> registered;
  const SpInfoTable table;
  for (const auto& entry : table.languages()) registered.push_back(entry.first);
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

}  // namespace qeo::sp
