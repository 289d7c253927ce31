// The American English set: groups, features, and phones that share them. The table as a
// whole is held against the golden rows in registry_test.

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {
namespace {

std::string FeatureOf(const std::string& name) {
  const PhoneInfo* phone = GetPhoneInfoByDescription(LANGUAGE_AMERICAN_ENGLISH, name);
  std::string feature;
  for (int index = 0; index < 8; ++index) feature += GetPhoneFeature(phone, index);
  return feature;
}

}  // namespace

TEST(AmericanEnglishPhones, TypesComeInThreeGroups) {
  const SpMapping mapping = kAmericanEnglish.mapping();
  ASSERT_EQ(mapping.phone_count, 41U);
  for (int id = 0; id < 41; ++id) {
    const int type = id == 0 ? 0 : id <= 16 ? 2 : 1;  // vowels come before consonants
    EXPECT_EQ(mapping.phone_list[id].type, type) << id;
  }
}

TEST(AmericanEnglishPhones, NoNameTwiceAndNoNullName) {
  const SpMapping mapping = kAmericanEnglish.mapping();
  EXPECT_EQ(mapping.phone_map.size(), 41U);
  for (const auto& [name, phone] : mapping.phone_map) {
    ASSERT_NE(phone, nullptr) << name;
    EXPECT_EQ(phone->name, name);
  }
}

TEST(AmericanEnglishPhones, FeaturesHaveEightCharacters) {
  const SpMapping mapping = kAmericanEnglish.mapping();
  ASSERT_EQ(mapping.phone_count, 41U);
  const char zero[8] = {};
  for (int id = 0; id < 41; ++id) {
    const char* feature = mapping.phone_list[id].feature;
    EXPECT_EQ(std::memchr(feature, 0, 8), nullptr) << id;
    EXPECT_EQ(std::memcmp(feature + 8, zero, sizeof zero), 0) << id;
  }
}

TEST(AmericanEnglishPhones, Features) {
  // clang-format off
  struct {
    const char* name;
    const char* feature;
  } const cases[] = {
      {"sil", "-000000-"},  // silence has a feature string like every phone
      {"aa", "+l33-000"},
      {"iy", "+l11-000"},
      {"ax", "+a22-000"},
      {"er", "+l22-r00"},
      {"b", "-0000sl+"},
      {"ch", "-0000ap-"},
      {"hh", "-0000fg-"},
      {"zh", "-0000fp+"},
  };
  // clang-format on
  for (const auto& c : cases) {
    EXPECT_EQ(FeatureOf(c.name), c.feature) << c.name;
  }
}

TEST(AmericanEnglishPhones, ShHasTheFeaturesOfS) {
  EXPECT_EQ(FeatureOf("sh"), "-0000fa-");
  EXPECT_EQ(FeatureOf("s"), "-0000fa-");
}

TEST(AmericanEnglishPhones, AwHasTheFeaturesOfAyAndOwThoseOfOy) {
  EXPECT_EQ(FeatureOf("aw"), "+d32-000");
  EXPECT_EQ(FeatureOf("ay"), "+d32-000");
  EXPECT_EQ(FeatureOf("ow"), "+d23+000");
  EXPECT_EQ(FeatureOf("oy"), "+d23+000");
}

TEST(AmericanEnglishPhones, NoOtherTwoPhonesShareTheirFeatures) {
  std::map<std::string, std::vector<std::string>> names;
  for (const GoldenPhone& phone : kAmericanEnglish.phones()) {
    names[FeatureOf(phone.name)].push_back(phone.name);
  }
  std::vector<std::vector<std::string>> shared;
  for (const auto& [feature, group] : names) {
    if (group.size() > 1) shared.push_back(group);
  }
  EXPECT_EQ(shared,
            (std::vector<std::vector<std::string>>{{"ow", "oy"}, {"aw", "ay"}, {"s", "sh"}}));
}

TEST(AmericanEnglishPhones, NoSyllables) {
  const SpMapping mapping = kAmericanEnglish.mapping();
  EXPECT_EQ(mapping.pinyin_list, nullptr);
  EXPECT_EQ(mapping.pinyin_count, 0U);
  EXPECT_TRUE(mapping.pinyin_map.empty());
  EXPECT_EQ(mapping.max_pinyin_length, 0U);
}

}  // namespace qeo::sp
