// Syllables as people write them: every syllable and tone of both languages, words that can be read
// in one way only, and what cannot be written.

#include "notation/spelling.h"

#include <gtest/gtest.h>
#include <utf8proc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "notation/pinyin.h"
#include "phoneme/phoneme.h"
#include "tests/testing.h"

namespace qeo::notation {
namespace {

using sp::LANGUAGE_AMERICAN_ENGLISH;
using sp::LANGUAGE_CANTONESE;
using sp::LANGUAGE_MANDARIN;

using Codes = std::vector<unsigned short>;
using Syllables = std::vector<sp::SyllableInfo>;

constexpr unsigned kMandarinRows = 417;
constexpr unsigned kCantoneseRows = 619;

unsigned short Code(unsigned row, unsigned tone) {
  return static_cast<unsigned short>(row * 10 + tone);
}

Codes AllCodes(unsigned row_count, unsigned top_tone) {
  Codes codes;
  for (unsigned row = 0; row < row_count; ++row) {
    for (unsigned tone = 1; tone <= top_tone; ++tone) codes.push_back(Code(row, tone));
  }
  return codes;
}

Codes ToCodes(int language, const std::string& text) {
  Codes codes;
  EXPECT_EQ(sp::py2code(language, text, codes), 0) << text;
  return codes;
}

Syllables ToSyllables(int language, const Codes& codes) {
  Syllables syllables(codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) {
    EXPECT_EQ(sp::code2ph(language, codes[i], syllables[i]), 0) << codes[i];
  }
  return syllables;
}

void ExpectWritten(const Spelling& spelling, const std::string& text) {
  EXPECT_EQ(spelling.text, text);
  EXPECT_FALSE(spelling.unwritable.has_value());
}

void ExpectUnwritable(const Spelling& spelling, std::size_t index) {
  EXPECT_EQ(spelling.text, "");
  EXPECT_EQ(spelling.unwritable, std::optional<std::size_t>(index));
}

TEST(MarkedPinyin, Words) {
  const struct {
    const char* text;  // what py2code reads
    const char* word;
    const char* spaced;
  } cases[] = {
      {"ni3hao3", "nǐhǎo", "nǐ hǎo"},
      {"zhong1guo2ren2", "zhōngguórén", "zhōng guó rén"},
      {"ma1 ma2 ma3 ma4 ma5", "māmámǎmàma", "mā má mǎ mà ma"},
      // a and e come first, then the o of "ou", then the last vowel.
      {"biao3 jie3", "biǎojiě", "biǎo jiě"},
      {"lou2 zhou1 you3", "lóuzhōuyǒu", "lóu zhōu yǒu"},
      {"liu2 jiu3 gui4 shui3", "liújiǔguìshuǐ", "liú jiǔ guì shuǐ"},
      {"guo2 xiong2 suo3", "guóxióngsuǒ", "guó xióng suǒ"},
      // v is u with diaeresis; after j, q, x and y it is written u.
      {"lv1 lv2 lv3 lv4 lv5", "lǖlǘlǚlǜlü", "lǖ lǘ lǚ lǜ lü"},
      {"nv3 lve4 nve4 lve5", "nǚlüènüèlüe", "nǚ lüè nüè lüe"},
      {"ju1 qu4 xu3 yu2 yue4 quan2", "jūqùxǔyúyuèquán", "jū qù xǔ yú yuè quán"},
      // Inside a word a, e and o have an apostrophe before them.
      {"xi1an1", "xī'ān", "xī ān"},
      {"nv3er2", "nǚ'ér", "nǚ ér"},
      {"hai3ou1", "hǎi'ōu", "hǎi ōu"},
      {"a1 yi2", "āyí", "ā yí"},
      {"e4 e5 o2", "è'e'ó", "è e ó"},
      // So have m, n and ng, which could end the syllable before them.
      {"xi1 n5", "xī'n", "xī n"},
      {"xin1", "xīn", "xīn"},
      {"ya1 ng5 gao1", "yā'nggāo", "yā ng gāo"},
      {"a1 m2 hm5 hng5", "ā'ḿhmhng", "ā ḿ hm hng"},
      // Syllables without a vowel, with a letter of their own or a combining mark.
      {"m1 m2 m3 m4 m5", "m̄'ḿ'm̌'m̀'m", "m̄ ḿ m̌ m̀ m"},
      {"n1 n2 n3 n4 n5", "n̄'ń'ň'ǹ'n", "n̄ ń ň ǹ n"},
      {"ng1 ng2 ng3 ng4 ng5", "n̄g'ńg'ňg'ǹg'ng", "n̄g ńg ňg ǹg ng"},
      {"hm1 hm2 hm3 hm4 hm5", "hm̄hḿhm̌hm̀hm", "hm̄ hḿ hm̌ hm̀ hm"},
      {"hng1 hng2 hng3 hng4 hng5", "hn̄ghńghňghǹghng", "hn̄g hńg hňg hǹg hng"},
      {"", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const Codes codes = ToCodes(LANGUAGE_MANDARIN, c.text);
    ExpectWritten(MarkedPinyin(codes, Spacing::kWord), c.word);
    ExpectWritten(MarkedPinyin(codes, Spacing::kSpace), c.spaced);
    Syllables syllables = {sp::StaleSyllable()};
    ASSERT_EQ(sp::py2ph(LANGUAGE_MANDARIN, c.text, syllables), 0);
    ExpectWritten(MarkedPinyin(syllables, Spacing::kWord), c.word);
    ExpectWritten(MarkedPinyin(syllables, Spacing::kSpace), c.spaced);
  }
}

// No text is read as "E", row 80; its code is written all the same.
TEST(MarkedPinyin, CircumflexE) {
  const Codes codes = {801, 802, 803, 804, 805};
  ExpectWritten(MarkedPinyin(codes, Spacing::kSpace), "ê̄ ế ê̌ ề ê");
  ExpectWritten(MarkedPinyin(codes, Spacing::kWord), "ê̄'ế'ê̌'ề'ê");
}

// A record keeps its code in the low 16 bits.
TEST(MarkedPinyin, CodeOfARecord) {
  Syllables syllables = ToSyllables(LANGUAGE_MANDARIN, {2243});
  syllables[0].code |= 0x30000;
  ExpectWritten(MarkedPinyin(syllables, Spacing::kWord), "nǐ");
}

TEST(MarkedPinyin, Unwritable) {
  const struct {
    Codes codes;
    std::size_t index;
  } cases[] = {
      {{2240}, 0},              // tone 0
      {{2243, 1173, 2246}, 2},  // tone 6
      {{2243, 2249, 2240}, 1},
      {{4165, 4171}, 1},  // no row 417
      {{65535}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.codes));
    ExpectUnwritable(MarkedPinyin(c.codes, Spacing::kWord), c.index);
    ExpectUnwritable(MarkedPinyin(c.codes, Spacing::kSpace), c.index);
  }
  Syllables syllables;
  ASSERT_EQ(sp::pr2ph(LANGUAGE_MANDARIN, "n i 3, a 1", syllables), 0);  // no codes
  ExpectUnwritable(MarkedPinyin(syllables, Spacing::kWord), 0);
  syllables = ToSyllables(LANGUAGE_MANDARIN, {2243, 1173});
  syllables.push_back(ToSyllables(LANGUAGE_CANTONESE, {2243})[0]);
  ExpectUnwritable(MarkedPinyin(syllables, Spacing::kWord), 2);
  syllables.back() = sp::SyllableInfo();
  ExpectUnwritable(MarkedPinyin(syllables, Spacing::kSpace), 2);
}

// All 65,536 codes: written are those with a row and a tone of the language.
template <typename Write>
void ExpectWritable(Write write, unsigned row_count, unsigned top_tone) {
  unsigned written = 0;
  for (unsigned code = 0; code <= 0xFFFF; ++code) {
    const bool exists = code / 10 < row_count && code % 10 >= 1 && code % 10 <= top_tone;
    const Spelling spelling = write(Codes{static_cast<unsigned short>(code)});
    ASSERT_EQ(spelling.unwritable.has_value(), !exists) << code;
    ASSERT_EQ(spelling.text.empty(), !exists) << code;
    written += exists ? 1 : 0;
  }
  EXPECT_EQ(written, row_count * top_tone);
}

TEST(MarkedPinyin, EveryCode) {
  ExpectWritable([](const Codes& codes) { return MarkedPinyin(codes, Spacing::kWord); },
                 kMandarinRows, 5);
}

TEST(Jyutping, EveryCode) {
  ExpectWritable([](const Codes& codes) { return Jyutping(codes, Spacing::kWord); }, kCantoneseRows,
                 7);
}

// A text taken apart: the letters as the library writes them, and the place and tone of each mark.
struct Parts {
  std::string letters;
  std::vector<std::size_t> marked;
  std::vector<unsigned> tones;
};

std::string Decompose(const std::string& text) {
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.c_str());
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> form(utf8proc_NFD(bytes),
                                                                     &std::free);
  return form == nullptr ? "" : reinterpret_cast<const char*>(form.get());
}

std::string Compose(const std::string& text) {
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.c_str());
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> form(utf8proc_NFC(bytes),
                                                                     &std::free);
  return form == nullptr ? "" : reinterpret_cast<const char*>(form.get());
}

Parts TakeApart(const std::string& text) {
  static const std::map<std::string, unsigned> tones = {
      {"\u0304", 1}, {"\u0301", 2}, {"\u030C", 3}, {"\u0300", 4}};
  const std::string decomposed = Decompose(text);
  Parts parts;
  for (std::size_t i = 0; i < decomposed.size(); ++i) {
    const bool is_mark = (decomposed[i] & 0x80) != 0;
    const std::string mark = is_mark ? decomposed.substr(i++, 2) : "";
    if (!is_mark) {
      parts.letters += decomposed[i];
    } else if (mark == "\u0308" && parts.letters.back() == 'u') {
      parts.letters.back() = 'v';
    } else if (mark == "\u0302" && parts.letters.back() == 'e') {
      parts.letters.back() = 'E';
    } else {
      parts.marked.push_back(parts.letters.size() - 1);
      parts.tones.push_back(tones.at(mark));
    }
  }
  return parts;
}

TEST(MarkedPinyin, EverySyllable) {
  std::set<std::string> texts;
  for (unsigned row = 0; row < kMandarinRows; ++row) {
    const std::string spelling = sp::code2py(LANGUAGE_MANDARIN, Code(row, 0), false);
    SCOPED_TRACE(spelling);
    std::set<std::size_t> marked;
    for (unsigned tone = 1; tone <= 5; ++tone) {
      const std::string text = MarkedPinyin(Codes{Code(row, tone)}, Spacing::kWord).text;
      const Parts parts = TakeApart(text);
      EXPECT_EQ(parts.letters, spelling);
      EXPECT_EQ(parts.tones, tone == 5 ? std::vector<unsigned>() : std::vector<unsigned>{tone});
      EXPECT_EQ(Compose(text), text);
      marked.insert(parts.marked.begin(), parts.marked.end());
      texts.insert(text);
    }
    EXPECT_EQ(marked.size(), 1U);
  }
  EXPECT_EQ(texts.size(), kMandarinRows * 5);
}

// Where the mark is, for each ending that a Mandarin syllable can have.
TEST(MarkedPinyin, EveryEnding) {
  // clang-format off
  const std::map<std::string, std::string> endings = {
      {"a",    "ǎ"},    {"ai",   "ǎi"},   {"an",   "ǎn"},   {"ang",  "ǎng"},  {"ao",   "ǎo"},
      {"e",    "ě"},    {"ei",   "ěi"},   {"en",   "ěn"},   {"eng",  "ěng"},  {"er",   "ěr"},
      {"o",    "ǒ"},    {"ong",  "ǒng"},  {"ou",   "ǒu"},
      {"i",    "ǐ"},    {"ia",   "iǎ"},   {"ian",  "iǎn"},  {"iang", "iǎng"}, {"iao",  "iǎo"},
      {"ie",   "iě"},   {"in",   "ǐn"},   {"ing",  "ǐng"},  {"iong", "iǒng"}, {"iu",   "iǔ"},
      {"u",    "ǔ"},    {"ua",   "uǎ"},   {"uai",  "uǎi"},  {"uan",  "uǎn"},  {"uang", "uǎng"},
      {"ue",   "uě"},   {"ui",   "uǐ"},   {"un",   "ǔn"},   {"uo",   "uǒ"},
      {"v",    "ǚ"},    {"ve",   "üě"},
      {"E",    "ê̌"},    {"m",    "m̌"},    {"n",    "ň"},    {"ng",   "ňg"},
  };
  // clang-format on
  std::set<std::string> seen;
  for (unsigned row = 0; row < kMandarinRows; ++row) {
    const std::string spelling = sp::code2py(LANGUAGE_MANDARIN, Code(row, 0), false);
    SCOPED_TRACE(spelling);
    std::size_t opening = spelling.find_first_of("aeiouvE");
    if (opening == std::string::npos) opening = spelling.find_first_of("mn");
    const std::string ending = spelling.substr(opening);
    ASSERT_EQ(endings.count(ending), 1U);
    ExpectWritten(MarkedPinyin(Codes{Code(row, 3)}, Spacing::kWord),
                  spelling.substr(0, opening) + endings.at(ending));
    seen.insert(ending);
  }
  EXPECT_EQ(seen.size(), endings.size());
}

// Reads words of tone-marked Pinyin in every way in which they can be read: a syllable that begins
// with a, e or o or is m, n or ng is at the beginning or after an apostrophe, any other does not
// need one.
class WordReader {
 public:
  WordReader() {
    for (const unsigned short code : AllCodes(kMandarinRows, 5)) {
      const std::string spelling = sp::code2py(LANGUAGE_MANDARIN, code, false);
      const bool is_nasal = spelling == "m" || spelling == "n" || spelling == "ng";
      const bool opens = std::string_view("aeEo").find(spelling[0]) != std::string_view::npos;
      const std::string text = MarkedPinyin(Codes{code}, Spacing::kWord).text;
      entries_[text] = {code, is_nasal || opens};
      longest_ = std::max(longest_, text.size());
    }
  }

  std::vector<Codes> Readings(std::string_view word) const {
    std::vector<Codes> readings;
    Codes codes;
    Read(word, true, codes, readings);
    return readings;
  }

 private:
  struct Entry {
    unsigned short code;
    bool needs_apostrophe;
  };

  // NOLINTNEXTLINE(misc-no-recursion): as deep as the word is long, and plain to see
  void Read(std::string_view rest, bool is_apart, Codes& codes,
            std::vector<Codes>& readings) const {
    if (rest.empty()) readings.push_back(codes);
    for (std::size_t length = 1; length <= std::min(longest_, rest.size()); ++length) {
      const auto entry = entries_.find(std::string(rest.substr(0, length)));
      if (entry == entries_.end() || (entry->second.needs_apostrophe && !is_apart)) continue;
      codes.push_back(entry->second.code);
      const bool has_apostrophe = rest.size() > length && rest[length] == '\'';
      Read(rest.substr(length + (has_apostrophe ? 1 : 0)), has_apostrophe, codes, readings);
      codes.pop_back();
    }
  }

  std::unordered_map<std::string, Entry> entries_;
  std::size_t longest_ = 0;
};

TEST(MarkedPinyin, WordsOfTwoAreReadInOneWay) {
  const WordReader reader;
  unsigned words = 0;
  for (unsigned first = 0; first < kMandarinRows; ++first) {
    for (unsigned second = 0; second < kMandarinRows; ++second) {
      for (const unsigned tones : {55U, 15U, 51U}) {  // without marks, and with one on either
        const Codes codes = {Code(first, tones / 10), Code(second, tones % 10)};
        const std::string word = MarkedPinyin(codes, Spacing::kWord).text;
        ASSERT_EQ(reader.Readings(word), std::vector<Codes>{codes}) << word;
        ++words;
      }
    }
  }
  EXPECT_EQ(words, 3 * kMandarinRows * kMandarinRows);
}

TEST(MarkedPinyin, LongerWordsAreReadInOneWay) {
  const WordReader reader;
  const Codes all = AllCodes(kMandarinRows, 5);
  std::mt19937 random(3);
  for (int i = 0; i < 20000; ++i) {
    Codes codes;
    for (auto left = random() % 4 + 3; left > 0; --left) {
      codes.push_back(all[random() % all.size()]);
    }
    const std::string word = MarkedPinyin(codes, Spacing::kWord).text;
    ASSERT_EQ(reader.Readings(word), std::vector<Codes>{codes}) << word;
    EXPECT_EQ(MarkedPinyin(ToSyllables(LANGUAGE_MANDARIN, codes), Spacing::kWord).text, word);
  }
}

// What NormalizePinyin makes of a text without problems, as codes.
Codes Normalized(const std::string& text) {
  const notation::Normalized normalized = NormalizePinyin(text);
  EXPECT_TRUE(normalized.problems.empty()) << text;
  return ToCodes(LANGUAGE_MANDARIN, normalized.text);
}

constexpr unsigned kRowOfE = 80;  // no text is read as "E"

TEST(MarkedPinyin, EverySyllableIsNormalizedBack) {
  Codes all;
  for (const unsigned short code : AllCodes(kMandarinRows, 5)) {
    if (code / 10 == kRowOfE) continue;
    EXPECT_EQ(Normalized(MarkedPinyin(Codes{code}, Spacing::kWord).text), Codes{code});
    all.push_back(code);
  }
  EXPECT_EQ(all.size(), 2080U);
  EXPECT_EQ(Normalized(MarkedPinyin(all, Spacing::kSpace).text), all);
  EXPECT_EQ(Normalized(MarkedPinyin(all, Spacing::kWord).text), all);
}

TEST(MarkedPinyin, WordsAreNormalizedBack) {
  const Codes all = AllCodes(kMandarinRows, 5);
  std::mt19937 random(4);
  int words = 0;
  while (words < 20000) {
    Codes codes;
    for (auto left = random() % 6 + 1; left > 0; --left) {
      codes.push_back(all[random() % all.size()]);
    }
    const auto is_e = [](unsigned short code) { return code / 10 == kRowOfE; };
    const auto is_marked = [](unsigned short code) { return code % 10 != 5; };
    if (std::any_of(codes.begin(), codes.end(), is_e)) continue;
    if (std::none_of(codes.begin(), codes.end(), is_marked)) continue;  // a word to be cut
    const std::string word = MarkedPinyin(codes, Spacing::kWord).text;
    EXPECT_EQ(Normalized(word), codes) << word;
    ++words;
  }
}

// Two sources write marks themselves.
TEST(MarkedPinyin, RealTextIsWrittenAsItsSourceHasIt) {
  int lines = 0;
  for (const sp::Row& row : sp::ReadTsv(PHONEME_DATA_DIR "/mandarin.tsv", 5)) {
    if (row[2].empty() || row[3] == "aishell3") continue;
    ExpectWritten(MarkedPinyin(ToCodes(LANGUAGE_MANDARIN, row[2]), Spacing::kSpace), row[1]);
    ++lines;
  }
  EXPECT_EQ(lines, 2368);
}

TEST(Jyutping, Words) {
  const struct {
    const char* text;
    const char* word;
    const char* spaced;
  } cases[] = {
      {"nei5hou2", "nei5hou2", "nei5 hou2"},
      {"jyut6 ping3", "jyut6ping3", "jyut6 ping3"},
      {"aa3 ng5 m4", "aa3ng5m4", "aa3 ng5 m4"},
      {"nei", "nei7", "nei7"},
      {"nei8", "nei1", "nei1"},
      {"", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const Codes codes = ToCodes(LANGUAGE_CANTONESE, c.text);
    ExpectWritten(Jyutping(codes, Spacing::kWord), c.word);
    ExpectWritten(Jyutping(codes, Spacing::kSpace), c.spaced);
    Syllables syllables = {sp::StaleSyllable()};
    ASSERT_EQ(sp::py2ph(LANGUAGE_CANTONESE, c.text, syllables), 0);
    ExpectWritten(Jyutping(syllables, Spacing::kWord), c.word);
    ExpectWritten(Jyutping(syllables, Spacing::kSpace), c.spaced);
  }
}

TEST(Jyutping, EverySyllableReadsBack) {
  const Codes codes = AllCodes(kCantoneseRows, 7);
  EXPECT_EQ(codes.size(), 4333U);
  for (const unsigned short code : codes) {
    const Spelling spelling = Jyutping(Codes{code}, Spacing::kWord);
    ExpectWritten(spelling, sp::code2py(LANGUAGE_CANTONESE, code, true));
    EXPECT_EQ(ToCodes(LANGUAGE_CANTONESE, spelling.text), Codes{code});
  }
  for (const Spacing spacing : {Spacing::kWord, Spacing::kSpace}) {
    const Spelling spelling = Jyutping(codes, spacing);
    EXPECT_EQ(ToCodes(LANGUAGE_CANTONESE, spelling.text), codes);
    EXPECT_EQ(Jyutping(ToSyllables(LANGUAGE_CANTONESE, codes), spacing).text, spelling.text);
  }
}

TEST(Jyutping, CodeOfARecord) {
  Syllables syllables = ToSyllables(LANGUAGE_CANTONESE, {4035});
  syllables[0].code |= 0x30000;
  ExpectWritten(Jyutping(syllables, Spacing::kWord), "nei5");
}

TEST(Jyutping, Unwritable) {
  const struct {
    Codes codes;
    std::size_t index;
  } cases[] = {
      {{4030}, 0},              // tone 0
      {{4035, 2382, 4038}, 2},  // tone 8
      {{4035, 4039, 4030}, 1},
      {{6187, 6191}, 1},  // no row 619
      {{65535}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.codes));
    ExpectUnwritable(Jyutping(c.codes, Spacing::kWord), c.index);
    ExpectUnwritable(Jyutping(c.codes, Spacing::kSpace), c.index);
  }
  Syllables syllables;
  ASSERT_EQ(sp::pr2ph(LANGUAGE_CANTONESE, "n ei 5", syllables), 0);  // no code
  ExpectUnwritable(Jyutping(syllables, Spacing::kWord), 0);
  syllables = ToSyllables(LANGUAGE_CANTONESE, {4035});
  syllables.push_back(ToSyllables(LANGUAGE_MANDARIN, {2243})[0]);
  ExpectUnwritable(Jyutping(syllables, Spacing::kSpace), 1);
}

TEST(PronunciationString, Syllables) {
  Syllables syllables;
  ASSERT_EQ(sp::py2ph(LANGUAGE_MANDARIN, "ni3 er2 jiu3 hng1", syllables), 0);
  ExpectWritten(PronunciationString(syllables), "n i 3, er 2, j iou 3, h 1");
  ASSERT_EQ(sp::py2ph(LANGUAGE_CANTONESE, "nei5wu", syllables), 0);
  ExpectWritten(PronunciationString(syllables), "n ei 5, uu 7");
  ASSERT_EQ(sp::pr2ph(LANGUAGE_AMERICAN_ENGLISH, ",hh ax 0,, l ow 1 ", syllables), 0);
  ExpectWritten(PronunciationString(syllables), "hh ax 0, l ow 1");
  ASSERT_EQ(sp::ph2ph(LANGUAGE_MANDARIN, {24, 35, 9, 10, 0}, syllables), 0);
  ExpectWritten(PronunciationString(syllables), "n i 9, sil 0");
  ExpectWritten(PronunciationString({}), "");
  sp::SyllableInfo both = ToSyllables(LANGUAGE_MANDARIN, {2243})[0];
  both.raw_tone = 4;
  ExpectWritten(PronunciationString({both}), "n i 3");
}

// What is read back has the same phones, and the digit as raw_tone.
void ExpectReadsBack(int language, const Syllables& syllables, const std::string& text) {
  Syllables read = {sp::StaleSyllable()};
  ASSERT_EQ(sp::pr2ph(language, text, read), 0) << text;
  ASSERT_EQ(read.size(), syllables.size()) << text;
  for (std::size_t i = 0; i < read.size(); ++i) {
    EXPECT_EQ(read[i].phones, syllables[i].phones) << text;
    EXPECT_EQ(read[i].raw_tone, syllables[i].tone + syllables[i].raw_tone) << text;
  }
}

TEST(PronunciationString, EverySyllableReadsBack) {
  const struct {
    const sp::Language& language;
    std::set<std::string> unwritable;
  } cases[] = {{sp::kMandarin, {"E", "ng"}}, {sp::kCantonese, {}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.language.name);
    std::set<std::string> unwritable;
    Syllables all;
    for (const unsigned short code : AllCodes(static_cast<unsigned>(c.language.syllable_count),
                                              static_cast<unsigned>(c.language.top_tone))) {
      const Syllables syllables = ToSyllables(c.language.id, {code});
      const Spelling spelling = PronunciationString(syllables);
      if (spelling.unwritable) unwritable.insert(sp::code2py(c.language.id, code, false));
      if (spelling.unwritable) continue;
      ExpectReadsBack(c.language.id, syllables, spelling.text);
      all.push_back(syllables[0]);
    }
    EXPECT_EQ(unwritable, c.unwritable);
    ExpectReadsBack(c.language.id, all, PronunciationString(all).text);
  }
}

// Every phone with every digit, as bytes. The second phone named "iou" is read back as the first.
TEST(PronunciationString, EveryPhoneReadsBack) {
  constexpr unsigned char kSecondIou = 46;
  int phones = 0;
  for (const sp::Language& language : sp::kLanguages) {
    for (int id = 0; id < language.phone_count; ++id) {
      for (unsigned char digit = 0; digit <= 9; ++digit) {
        std::vector<unsigned char> bytes = {static_cast<unsigned char>(id + 10), digit};
        Syllables syllables;
        ASSERT_EQ(sp::ph2ph(language.id, bytes, syllables), 0);
        const Spelling spelling = PronunciationString(syllables);
        std::vector<unsigned char> read;
        ASSERT_EQ(sp::pr2ph(language.id, spelling.text, read), 0) << spelling.text;
        if (language.id == LANGUAGE_MANDARIN && bytes[0] == kSecondIou) --bytes[0];
        EXPECT_EQ(read, bytes) << spelling.text;
      }
      ++phones;
    }
  }
  EXPECT_EQ(phones, 61 + 95 + 41);
}

TEST(PronunciationString, RealEnglishReadsBack) {
  int lines = 0;
  for (const sp::Row& row : sp::ReadTsv(PHONEME_DATA_DIR "/english.tsv", 5)) {
    if (row[2].empty()) continue;
    Syllables syllables;
    ASSERT_EQ(sp::pr2ph(LANGUAGE_AMERICAN_ENGLISH, row[2], syllables), 0) << row[2];
    ExpectWritten(PronunciationString(syllables), row[2]);
    ++lines;
  }
  EXPECT_EQ(lines, 2322);
}

TEST(PronunciationString, Unwritable) {
  Syllables good;
  ASSERT_EQ(sp::py2ph(LANGUAGE_MANDARIN, "ni3hao3", good), 0);
  const auto with = [&good](const sp::SyllableInfo& last) {
    Syllables syllables = good;
    syllables.push_back(last);
    return PronunciationString(syllables);
  };
  Syllables read;
  ASSERT_EQ(sp::py2ph(LANGUAGE_MANDARIN, "ng4", read), 0);  // no phones
  ExpectUnwritable(with(read.at(0)), 2);
  ExpectUnwritable(PronunciationString(read), 0);
  for (const char* text : {"E 1", "n E 1", "ng 1"}) {  // a null phone
    SCOPED_TRACE(text);
    ASSERT_EQ(sp::pr2ph(LANGUAGE_MANDARIN, text, read), 0);
    ExpectUnwritable(with(read.at(0)), 2);
    ExpectUnwritable(PronunciationString(read), 0);
  }
  ASSERT_EQ(sp::ph2ph(LANGUAGE_MANDARIN, {24, 35, 3, 4}, read), 0);
  ExpectUnwritable(PronunciationString(read), 1);
  ASSERT_EQ(sp::py2ph(LANGUAGE_CANTONESE, "ng4", read), 0);  // another language
  ExpectUnwritable(with(read.at(0)), 2);
  ExpectWritten(PronunciationString(read), "ng 4");
  sp::SyllableInfo syllable = good[0];
  syllable.phones.push_back(read.at(0).phones.at(0));
  ExpectUnwritable(with(syllable), 2);
  ExpectUnwritable(PronunciationString({sp::SyllableInfo()}), 0);
  for (const int tone : {-128, -3, -1, 10, 127}) {
    SCOPED_TRACE(tone);
    syllable = good[0];
    syllable.tone = static_cast<std::int8_t>(tone);
    ExpectUnwritable(with(syllable), 2);
  }
  for (const int raw_tone : {10, 48, 255}) {
    SCOPED_TRACE(raw_tone);
    syllable = good[0];
    syllable.tone = 0;
    syllable.raw_tone = static_cast<std::uint8_t>(raw_tone);
    ExpectUnwritable(with(syllable), 2);
  }
}

}  // namespace
}  // namespace qeo::notation
