// The process locale changes no result: the same rows under C, UTF-8, Turkish, Latin-1 and GBK
// locales, where other bytes are letters, capitals, digits or white space, or where "I" has another
// lower case.

#include <gtest/gtest.h>

#include <locale>
#include <string>
#include <vector>

#include "locales.h"
#include "phoneme/phoneme.h"
#include "testing.h"
#include "xstr/xstr.h"

namespace qeo::sp {
namespace {

using Pieces = std::vector<std::string>;
using Bytes = std::vector<unsigned char>;

void ExpectPieces() {
  struct {
    int language;
    std::string text;
    Pieces pieces;
  } const cases[] = {
      {10000, "NiHao", {"ni", "hao"}},
      {10000, "NI3", {"n", "i3"}},  // "I" becomes "i", in Turkish too
      {10001, "AaI1", {"aa", "i1"}},
      {10000, "ni hao", {"ni", "hao"}},
      {10000, "ni\xa0hao", {"ni"}},             // no-break space of Latin-1
      {10000, "ni\x85hao", {"ni"}},             // next line of Latin-1
      {10000, "ni\xc0hao", {"ni"}},             // a Latin-1 capital
      {10000, "\xddni3", {"\xddni3"}},          // a Turkish capital
      {10000, "ni\xe9 ", {"ni\xe9"}},           // a Latin-1 letter is not one of the key
      {10000, "n\xfdi3", {"n\xfdi3"}},          // nor a Turkish one
      {10000, "Ni\xc0\xc1 ", {"ni\xc0\xc1"}},   // nor is it made lower case
      {10000, "ni\xc4\xb0 ", {"ni\xc4\xb0"}},   // dotted capital I in UTF-8
      {10000, "ni\xb2hao", {"ni"}},             // superscript two of Latin-1
      {10000, "ni\xa3\xb1", {"ni"}},            // full-width one in GBK
      {10000, "\xc4\xe3ni3", {"\xc4\xe3ni3"}},  // a GBK character
      {10000, "ni\xe3\x80\x80hao", {"ni"}},     // ideographic space in UTF-8
      {10000, "lÜ3", {"lÜ3"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    Pieces pieces;
    EXPECT_EQ(pyw2py(c.language, c.text, pieces, false), 0);
    EXPECT_EQ(pieces, c.pieces);
  }
}

void ExpectConversions() {
  std::vector<SyllableInfo> syllables;
  std::vector<unsigned short> codes;
  EXPECT_EQ(py2ph(10000, "Li4Ji1", syllables), 0);
  EXPECT_EQ(Spell(syllables),
            (SpelledList{{10000, "l i", 1754, 4, 0}, {10000, "j i", 1341, 1, 0}}));
  EXPECT_EQ(py2code(10001, "Jik6zI", codes), 0);
  EXPECT_EQ(codes, (std::vector<unsigned short>{2576}));
  EXPECT_EQ(py2code(10000, "ni\xb2", codes), 0);
  EXPECT_EQ(codes, (std::vector<unsigned short>{2245}));
  EXPECT_EQ(py2code(10000, "ni\xb2 ", codes), -1);
  EXPECT_EQ(code2py(10001, 6187, true), "zyut7");
  Bytes phone_ids;
  EXPECT_EQ(pr2ph(20000, "ih iy 1", phone_ids), 0);
  EXPECT_EQ(phone_ids, (Bytes{21, 22, 1}));
  EXPECT_EQ(pr2ph(20000, "aa \xb2", phone_ids), -1);
  EXPECT_EQ(phone_ids, Bytes());
  EXPECT_EQ(pr2ph(20000, "IH 1", phone_ids), -1);
  EXPECT_STREQ(GetPhoneInfoByDescription(20000, "IH")->name, "sil");
  EXPECT_EQ(LexiconEnPhoneId("IH"), 255);
  EXPECT_EQ(LexiconModulePhoneTypeStr("I", 10000), 1);
}

void ExpectStrings() {
  EXPECT_EQ(xstr::trim("\xa0 a \x85", "\t\r\n ", true), "\xa0 a \x85");
  EXPECT_EQ(xstr::split("1.234,5", ",", -1), (Pieces{"1.234", "5"}));
  EXPECT_EQ(xstr::to_u8s(1234567, 10), "1234567");  // no grouping of digits
  EXPECT_EQ(xstr::to_u8s(-18, 19), "-i");
}

void ExpectSameResults() {
  ExpectPieces();
  ExpectConversions();
  ExpectStrings();
}

}  // namespace

TEST_F(Locales, Classic) {
  ASSERT_TRUE(StartIn("C"));
  ExpectSameResults();
}

TEST_F(Locales, Utf8) {
  ASSERT_TRUE(StartIn("C.UTF-8"));
  ExpectSameResults();
}

TEST_F(Locales, OfCxxStreams) {
  std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
  ExpectSameResults();
}

TEST_F(Locales, OfOtherLanguages) { InMadeLocales(ExpectSameResults); }

}  // namespace qeo::sp
