// The checks that tables go through at compile time, on tables that are wrong.

#include "phoneme/phone_set_builder.h"

#include <gtest/gtest.h>

#include "phoneme/phoneme.h"

namespace qeo::sp::internal {
namespace {

constexpr PhoneInfo kGood[] = {
    {0, LANGUAGE_CANTONESE, PHONE_TYPE_SILENCE, "sil", ""},
    {1, LANGUAGE_CANTONESE, PHONE_TYPE_INITIAL, "b", ""},
    {2, LANGUAGE_CANTONESE, PHONE_TYPE_FINAL, "aaaaaa", ""},  // the longest that there may be
};

PhoneInfo Row(int id, int language, int type) { return {id, language, type, "b", ""}; }

}  // namespace

TEST(TableChecks, MisplacedRows) {
  EXPECT_EQ(FirstMisplacedRow(kGood, LANGUAGE_CANTONESE), kNone);
  EXPECT_EQ(FirstMisplacedRow(kGood, LANGUAGE_MANDARIN), 0);
  const PhoneInfo wrong_first[] = {Row(1, 20000, 0), Row(1, 20000, 1), Row(2, 20000, 1)};
  EXPECT_EQ(FirstMisplacedRow(wrong_first, 20000), 0);
  const PhoneInfo wrong_id[] = {Row(0, 20000, 0), Row(1, 20000, 1), Row(3, 20000, 1)};
  EXPECT_EQ(FirstMisplacedRow(wrong_id, 20000), 2);
  const PhoneInfo wrong_language[] = {Row(0, 20000, 0), Row(1, 10000, 1), Row(2, 20000, 1)};
  EXPECT_EQ(FirstMisplacedRow(wrong_language, 20000), 1);
}

TEST(TableChecks, RowsOfWrongType) {
  EXPECT_EQ(FirstRowOfWrongType(kGood), kNone);
  const PhoneInfo no_silence[] = {Row(0, 20000, PHONE_TYPE_FINAL), Row(1, 20000, 1)};
  EXPECT_EQ(FirstRowOfWrongType(no_silence), 0);
  const PhoneInfo second_silence[] = {Row(0, 20000, 0), Row(1, 20000, 1), Row(2, 20000, 0)};
  EXPECT_EQ(FirstRowOfWrongType(second_silence), 2);
  const PhoneInfo unknown[] = {Row(0, 20000, 0), Row(1, 20000, 3)};
  EXPECT_EQ(FirstRowOfWrongType(unknown), 1);
}

TEST(TableChecks, RowsOfWrongName) {
  EXPECT_EQ(FirstRowOfWrongName(kGood), kNone);
  const PhoneInfo nameless[] = {{0, 20000, 0, "", ""}, {1, 20000, 1, "b", ""}};
  EXPECT_EQ(FirstRowOfWrongName(nameless), 0);
  const PhoneInfo long_name[] = {
      {0, 20000, 0, "sil", ""}, {1, 20000, 1, "b", ""}, {2, 20000, 1, "zhuangr", ""}};
  EXPECT_EQ(FirstRowOfWrongName(long_name), 2);
}

}  // namespace qeo::sp::internal
