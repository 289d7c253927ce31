// Whole words: the cut that keeps every letter, how many there are, the first of them, and whether
// the longest match from the front and from the end agree.

#include "notation/cutting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <map>
#include <ostream>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "notation/rarities.h"
#include "phoneme/phoneme.h"
#include "tests/testing.h"

namespace qeo::notation {
namespace {

using sp::LANGUAGE_AMERICAN_ENGLISH;
using sp::LANGUAGE_CANTONESE;
using sp::LANGUAGE_MANDARIN;

using Strings = std::vector<std::string>;

std::string Small(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

// A cut as text, its syllables between spaces. Each row must spell the letters of its range, and
// the ranges must be in order.
std::string Show(int language, const std::string& text, const std::vector<CutSyllable>& cut) {
  std::string shown;
  std::size_t end = 0;
  for (const CutSyllable& syllable : cut) {
    const std::string letters = text.substr(syllable.range.offset, syllable.range.length);
    EXPECT_LE(end, syllable.range.offset);
    EXPECT_EQ(sp::code2py(language, static_cast<unsigned short>(syllable.row * 10), true),
              Small(letters) + '0');
    end = syllable.range.end();
    shown += shown.empty() ? letters : ' ' + letters;
  }
  return shown;
}

Strings Show(int language, const std::string& text,
             const std::vector<std::vector<CutSyllable>>& cuts) {
  Strings shown;
  shown.reserve(cuts.size());
  for (const std::vector<CutSyllable>& cut : cuts) shown.push_back(Show(language, text, cut));
  return shown;
}

std::string Repeat(const std::string& text, std::size_t times) {
  std::string repeated;
  repeated.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) repeated += text;
  return repeated;
}

TEST(CutWhole, Words) {
  using namespace std::string_literals;
  struct {
    int language;
    std::string text;
    bool covers;
    const char* syllables;
    std::uint64_t count;
    bool directions_differ;
  } const cases[] = {
      {LANGUAGE_MANDARIN, "nihao", true, "ni hao", 2, false},   // also ni ha o
      {LANGUAGE_MANDARIN, "zhuang", true, "zhuang", 2, false},  // also zhu ang
      {LANGUAGE_MANDARIN, "shuishui", true, "shui shui", 1, false},
      {LANGUAGE_MANDARIN, "lve", true, "lve", 2, false},
      // The longest match from the front loses letters.
      {LANGUAGE_MANDARIN, "yipinguo", true, "yi pin guo", 2, true},
      {LANGUAGE_MANDARIN, "nver", true, "nv er", 1, true},
      // Equal numbers of syllables: in Mandarin as few as can be that take an apostrophe.
      {LANGUAGE_MANDARIN, "fangan", true, "fan gan", 2, true},
      {LANGUAGE_MANDARIN, "keneng", true, "ke neng", 2, true},
      {LANGUAGE_MANDARIN, "yinai", true, "yi nai", 2, true},
      {LANGUAGE_MANDARIN, "yangao", true, "yan gao", 4, true},
      {LANGUAGE_MANDARIN, "zhene", true, "zhe ne", 2, true},
      {LANGUAGE_MANDARIN, "xian", true, "xian", 2, false},
      // In Cantonese what is common, where such a syllable costs 2 bits more.
      {LANGUAGE_CANTONESE, "gaanaadaai", true, "gaa naa daai", 2, true},
      {LANGUAGE_CANTONESE, "cinaa", true, "cin aa", 2, true},
      {LANGUAGE_CANTONESE, "cino", true, "ci no", 2, true},
      {LANGUAGE_CANTONESE, "ngongo", true, "ngon go", 8, true},
      // In Mandarin a nasal is never cut off, in Cantonese it is a syllable like others.
      {LANGUAGE_MANDARIN, "n", true, "n", 1, false},
      {LANGUAGE_MANDARIN, "ng", true, "ng", 1, false},
      {LANGUAGE_MANDARIN, "hng", true, "hng", 1, false},
      {LANGUAGE_MANDARIN, "nun", false, "nu", 0, false},
      {LANGUAGE_MANDARIN, "din", false, "di", 0, false},
      {LANGUAGE_MANDARIN, "wong", false, "wo", 0, false},
      {LANGUAGE_MANDARIN, "mgoi", false, "o", 0, true},
      {LANGUAGE_MANDARIN, "NiN", true, "Ni N", 1, false},  // a capital begins a word
      {LANGUAGE_MANDARIN, "MaM", true, "Ma M", 1, false},
      {LANGUAGE_MANDARIN, "NgnI", false, "", 0, false},
      {LANGUAGE_MANDARIN, "n-ng", false, "n ng", 0, false},  // and so does another byte
      {LANGUAGE_CANTONESE, "mgoi", true, "m goi", 1, false},
      {LANGUAGE_CANTONESE, "mhou", true, "m hou", 1, false},
      {LANGUAGE_CANTONESE, "deoimzyu", true, "deoi m zyu", 2, false},
      {LANGUAGE_CANTONESE, "hoeng", true, "hoeng", 3, false},
      // Capitals open syllables, and are small letters.
      {LANGUAGE_MANDARIN, "XiAn", true, "Xi An", 1, false},
      {LANGUAGE_MANDARIN, "Xian", true, "Xian", 2, false},
      {LANGUAGE_MANDARIN, "FanGan", true, "Fan Gan", 1, false},
      {LANGUAGE_MANDARIN, "FangAn", true, "Fang An", 1, false},
      {LANGUAGE_MANDARIN, "XIAN", false, "A N", 0, false},
      {LANGUAGE_MANDARIN, "FanganFangan", true, "Fan gan Fan gan", 4, true},
      {LANGUAGE_MANDARIN, "E", true, "E", 1, false},  // the row of "e"
      // Nothing covers: the fewest letters are left out.
      {LANGUAGE_MANDARIN, "hello", false, "he lo", 0, true},
      {LANGUAGE_MANDARIN, "huar", false, "hua", 0, true},
      {LANGUAGE_MANDARIN, "xyz", false, "", 0, false},
      {LANGUAGE_MANDARIN, "baxba", false, "ba ba", 0, false},  // one "ba" from either end
      {LANGUAGE_MANDARIN, "xxnihao", false, "ni hao", 0, true},
      {LANGUAGE_MANDARIN, "XxNihao", false, "Ni hao", 0, false},  // only "Xx" is dropped
      {LANGUAGE_CANTONESE, "nihao", false, "o", 0, true},
      // Bytes that are not letters are in no syllable.
      {LANGUAGE_MANDARIN, "fangan ", false, "fan gan", 0, false},
      {LANGUAGE_MANDARIN, "xi'an", false, "xi an", 0, false},
      {LANGUAGE_MANDARIN, "ni3hao3", false, "ni hao", 0, false},
      {LANGUAGE_MANDARIN, "n-i", false, "n", 0, false},
      {LANGUAGE_MANDARIN, "l\u00FC", false, "", 0, false},
      {LANGUAGE_MANDARIN, "n\0i"s, false, "n", 0, false},
      {LANGUAGE_MANDARIN, "\0"s, false, "", 0, false},
      {LANGUAGE_MANDARIN, "\xFF", false, "", 0, false},
      {LANGUAGE_MANDARIN, "@[`{", false, "", 0, false},  // the neighbours of A, Z, a and z
      {LANGUAGE_MANDARIN, "", true, "", 1, false},
      {LANGUAGE_CANTONESE, "jyutping", true, "jyut ping", 1, false},
      {LANGUAGE_CANTONESE, "hoenggong", true, "hoeng gong", 6, false},
      {LANGUAGE_CANTONESE, "", true, "", 1, false},
      {LANGUAGE_AMERICAN_ENGLISH, "a", false, "", 0, false},
      {LANGUAGE_AMERICAN_ENGLISH, "nihao", false, "", 0, false},
      {LANGUAGE_AMERICAN_ENGLISH, "", true, "", 1, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    const Cut cut = CutWhole(c.language, c.text);
    EXPECT_EQ(cut.covers, c.covers);
    EXPECT_EQ(Show(c.language, c.text, cut.syllables), c.syllables);
    EXPECT_EQ(cut.count, c.count);
    EXPECT_TRUE(cut.cuts.empty());
    EXPECT_EQ(cut.directions_differ, c.directions_differ);
  }
}

// Where letters are left out, which ones: by fewest syllables, by cost, and where all that is equal
// so that what comes first is a syllable, and a longer one.
TEST(CutWhole, LettersLeftOut) {
  struct {
    int language;
    std::string text;
    const char* shown;  // what is left out in brackets
  } const cases[] = {
      {LANGUAGE_MANDARIN, "hmien", "[h] mi en"},  // as few letters as can be: not hm en, nor mie n
      {LANGUAGE_CANTONESE, "hmien", "[h] mi e [n]"},
      {LANGUAGE_CANTONESE, "aaa", "aa [a]"},
      {LANGUAGE_CANTONESE, "ginaaah", "gin aa [ah]"},
      {LANGUAGE_CANTONESE, "auungui", "au ung [ui]"},  // ung and gui cost the same
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    std::string shown;
    std::size_t end = 0;
    const auto show = [&shown](const std::string& piece) {
      shown += shown.empty() ? piece : ' ' + piece;
    };
    const auto leave_out = [&](std::size_t to) {
      if (end < to) show('[' + c.text.substr(end, to - end) + ']');
    };
    for (const CutSyllable& syllable : CutWhole(c.language, c.text).syllables) {
      leave_out(syllable.range.offset);
      show(c.text.substr(syllable.range.offset, syllable.range.length));
      end = syllable.range.end();
    }
    leave_out(c.text.size());
    EXPECT_EQ(shown, c.shown);
  }
}

TEST(CutWhole, RangesAndRows) {
  const Cut cut = CutWhole(LANGUAGE_MANDARIN, "yiPinguo", 1);
  ASSERT_EQ(cut.cuts.size(), 1U);
  for (const auto& syllables : {cut.syllables, cut.cuts[0]}) {
    ASSERT_EQ(syllables.size(), 3U);
    const struct {
      std::size_t offset;
      std::size_t length;
      const char* spelling;
    } expected[] = {{0, 2, "yi"}, {2, 3, "pin"}, {5, 3, "guo"}};
    for (std::size_t i = 0; i < syllables.size(); ++i) {
      EXPECT_EQ(syllables[i].range.offset, expected[i].offset);
      EXPECT_EQ(syllables[i].range.length, expected[i].length);
      const auto code = static_cast<unsigned short>(syllables[i].row * 10);
      EXPECT_EQ(sp::code2py(LANGUAGE_MANDARIN, code, false), expected[i].spelling);
    }
  }
}

TEST(CutWhole, ListsTheFirstCuts) {
  struct {
    const char* text;
    std::size_t max_cuts;
    Strings cuts;
  } const cases[] = {
      {"xian", 0, {}},
      {"xian", 1, {"xian"}},
      {"xian", 2, {"xian", "xi an"}},
      {"xian", 3, {"xian", "xi an"}},
      {"xian", std::numeric_limits<std::size_t>::max(), {"xian", "xi an"}},
      {"fangan", 100, {"fan gan", "fang an"}},
      {"FanGan", 3, {"Fan Gan"}},
      {"xianai", 100, {"xia nai", "xian ai", "xi a nai", "xi an ai"}},
      {"shuishui", 9, {"shui shui"}},
      {"", 9, {""}},
      {"hello", 9, {}},
      {"fang an", 9, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.text << ", " << c.max_cuts);
    const Cut cut = CutWhole(LANGUAGE_MANDARIN, c.text, c.max_cuts);
    EXPECT_EQ(Show(LANGUAGE_MANDARIN, c.text, cut.cuts), c.cuts);
  }
  EXPECT_EQ(CutWhole(LANGUAGE_AMERICAN_ENGLISH, "", 9).cuts.size(), 1U);
  EXPECT_EQ(CutWhole(LANGUAGE_AMERICAN_ENGLISH, "a", 9).cuts.size(), 0U);
}

// "xian" has 2 cuts and no syllable reaches over its end, so each one more multiplies by 2.
TEST(CutWhole, CountsWithoutListing) {
  struct {
    std::size_t times;
    const char* end;
    std::uint64_t count;
  } const cases[] = {
      {2, "", 4},
      {32, "", std::uint64_t{1} << 32},
      {62, "", std::uint64_t{1} << 62},
      {62, "xia", std::uint64_t{1} << 63},    // xia, xi a
      {62, "zhong", std::uint64_t{1} << 62},  // one cut
      {64, "", kUncountedCuts},               // 2 to the power of 64, just too many
      {65, "xia", kUncountedCuts},
      {100000, "", kUncountedCuts},
      {100000, "x", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.times << " times, " << c.end);
    const Cut cut = CutWhole(LANGUAGE_MANDARIN, Repeat("xian", c.times) + c.end, 3);
    EXPECT_EQ(cut.count, c.count);
    EXPECT_EQ(cut.covers, c.count != 0);
    EXPECT_EQ(cut.syllables.size(), c.times + (c.end[0] != '\0' && c.count != 0 ? 1 : 0));
    EXPECT_EQ(cut.cuts.size(), c.count == 0 ? 0U : 3U);
  }
}

TEST(CutWhole, UnregisteredLanguagesAreServedByMandarin) {
  std::size_t seen = 0;
  for (const int language : sp::UnregisteredIds()) {
    SCOPED_TRACE(language);
    for (const std::string text : {"yipinguo", "jyutping", "E", ""}) {
      const Cut cut = CutWhole(language, text, 9);
      const Cut mandarin = CutWhole(LANGUAGE_MANDARIN, text, 9);
      EXPECT_EQ(cut.covers, mandarin.covers);
      EXPECT_EQ(cut.count, mandarin.count);
      EXPECT_EQ(cut.directions_differ, mandarin.directions_differ);
      EXPECT_EQ(Show(LANGUAGE_MANDARIN, text, cut.syllables),
                Show(LANGUAGE_MANDARIN, text, mandarin.syllables));
      EXPECT_EQ(Show(LANGUAGE_MANDARIN, text, cut.cuts),
                Show(LANGUAGE_MANDARIN, text, mandarin.cuts));
      ++seen;
    }
  }
  EXPECT_EQ(seen, 72U);
}

TEST(CutLetters, Words) {
  using namespace std::string_literals;
  struct {
    int language;
    std::string text;
    const char* whole;
    const char* forward;
    const char* backward;
  } const cases[] = {
      {LANGUAGE_MANDARIN, "", "", "", ""},
      {LANGUAGE_MANDARIN, "nihao", "ni hao", "ni hao", "ni hao"},
      {LANGUAGE_MANDARIN, "fangan", "fan gan", "fang an", "fan gan"},
      {LANGUAGE_MANDARIN, "keneng", "ke neng", "ken eng", "ke neng"},
      {LANGUAGE_MANDARIN, "XiAn", "Xi An", "Xi An", "Xi An"},
      {LANGUAGE_MANDARIN, "E", "E", "E", "E"},
      // What the longest match does not reach is left out, up to the next capital.
      {LANGUAGE_MANDARIN, "yipinguo", "yi pin guo", "yi ping", "yi pin guo"},
      {LANGUAGE_MANDARIN, "nver", "nv er", "nve", "nv er"},
      {LANGUAGE_MANDARIN, "hello", "he lo", "he", "lo"},
      {LANGUAGE_MANDARIN, "baxba", "ba ba", "ba", "ba"},
      {LANGUAGE_MANDARIN, "HelloNihao", "He lo Ni hao", "He Ni hao", "lo Ni hao"},
      {LANGUAGE_MANDARIN, "NiHaoq", "Ni Hao", "Ni Hao", "Ni"},
      {LANGUAGE_MANDARIN, "qNiHao", "Ni Hao", "Ni Hao", "Ni Hao"},
      {LANGUAGE_MANDARIN, "XIAN", "A N", "A N", "A N"},
      {LANGUAGE_MANDARIN, "xyz", "", "", ""},
      // Bytes that are not letters fit nowhere.
      {LANGUAGE_MANDARIN, "ni3hao", "ni hao", "ni", "hao"},
      {LANGUAGE_MANDARIN, "ni hao", "ni hao", "ni", "hao"},
      {LANGUAGE_MANDARIN, "ni'Hao", "ni Hao", "ni Hao", "Hao"},
      {LANGUAGE_MANDARIN, "nihao ", "ni hao", "ni hao", ""},
      {LANGUAGE_MANDARIN, "l\u00FCan", "an", "", "an"},
      {LANGUAGE_MANDARIN, "ni\0hao"s, "ni hao", "ni", "hao"},
      {LANGUAGE_CANTONESE, "ngongo", "ngon go", "ngong o", "ngo ngo"},
      // The longest matches cut nasals off, as the library does.
      {LANGUAGE_MANDARIN, "nun", "nu", "nu n", "nu n"},
      {LANGUAGE_MANDARIN, "wong", "wo", "wo ng", "wo ng"},
      {LANGUAGE_CANTONESE, "jyutping", "jyut ping", "jyut ping", "jyut ping"},
      {LANGUAGE_AMERICAN_ENGLISH, "nihao", "", "", ""},
      {LANGUAGE_AMERICAN_ENGLISH, "", "", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    const auto cut = [&c](Cutting cutting) {
      return Show(c.language, c.text, CutLetters(c.language, c.text, cutting));
    };
    EXPECT_EQ(cut(Cutting::kWhole), c.whole);
    EXPECT_EQ(cut(Cutting::kForward), c.forward);
    EXPECT_EQ(cut(Cutting::kBackward), c.backward);
  }
}

TEST(CutLetters, NoneReadsEachWordAsOneSyllable) {
  struct {
    int language;
    std::string text;
    const char* syllables;
  } const cases[] = {
      {LANGUAGE_MANDARIN, "", ""},
      {LANGUAGE_MANDARIN, "xian", "xian"},
      {LANGUAGE_MANDARIN, "nihao", ""},
      {LANGUAGE_MANDARIN, "ni hao ng", "ni hao ng"},
      {LANGUAGE_MANDARIN, "zhuangzhuang zhuang", "zhuang"},
      {LANGUAGE_MANDARIN, "NiHaoma", "Ni"},
      {LANGUAGE_MANDARIN, "niHaoMa", "ni Hao Ma"},
      {LANGUAGE_MANDARIN, "NIhao", "N"},
      {LANGUAGE_MANDARIN, "33hao--ma3", "hao ma"},
      {LANGUAGE_MANDARIN, "l\u00FCan", "an"},
      {LANGUAGE_MANDARIN, "hoa jyut", ""},
      {LANGUAGE_CANTONESE, "jyut ping m mgoi", "jyut ping m"},
      {LANGUAGE_AMERICAN_ENGLISH, "ni", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    EXPECT_EQ(Show(c.language, c.text, CutLetters(c.language, c.text, Cutting::kNone)),
              c.syllables);
  }
}

TEST(CutLetters, UnregisteredLanguagesAreServedByMandarin) {
  std::size_t seen = 0;
  for (const int language : sp::UnregisteredIds()) {
    SCOPED_TRACE(language);
    const auto cut = [language](Cutting cutting) {
      return Show(LANGUAGE_MANDARIN, "yipinguo", CutLetters(language, "yipinguo", cutting));
    };
    EXPECT_EQ(cut(Cutting::kWhole), "yi pin guo");
    EXPECT_EQ(cut(Cutting::kForward), "yi ping");
    EXPECT_EQ(cut(Cutting::kBackward), "yi pin guo");
    EXPECT_EQ(cut(Cutting::kNone), "");
    ++seen;
  }
  EXPECT_EQ(seen, 18U);
}

TEST(CutLetters, NothingInAWayThatIsNone) {
  EXPECT_EQ(CutLetters(LANGUAGE_MANDARIN, "yipinguo", static_cast<Cutting>(4)).size(), 0U);
}

TEST(CutLetters, LongTextsAreNoProblem) {
  const std::string text = Repeat("yiping", 100000);
  for (const Cutting cutting : {Cutting::kWhole, Cutting::kForward, Cutting::kBackward}) {
    EXPECT_EQ(CutLetters(LANGUAGE_MANDARIN, text, cutting).size(), 200000U);
  }
}

// The words of a text: its runs of letters, which a capital ends.
std::vector<Range> Words(const std::string& text) {
  const std::regex word("[A-Za-z][a-z]*");
  std::vector<Range> words;
  for (std::sregex_iterator at(text.begin(), text.end(), word), end; at != end; ++at) {
    words.push_back(
        {static_cast<std::size_t>(at->position()), static_cast<std::size_t>(at->length())});
  }
  return words;
}

// A slow second form: every way to cut a text or leave letters out, one by one.
class EveryCut {
 public:
  EveryCut(int language, int row_count) : is_mandarin_(language == LANGUAGE_MANDARIN) {
    const auto* const rarities =
        is_mandarin_ ? internal::kMandarinRarities : internal::kCantoneseRarities;
    for (int row = 0; row < row_count; ++row) {
      rarities_[sp::code2py(language, static_cast<unsigned short>(row * 10), false)] =
          rarities[row];
    }
  }

  // In the order of preference. With `leave_out` also those that leave letters out.
  Strings Cuts(const std::string& text, bool leave_out) {
    words_ = Words(text);
    found_.clear();
    Extend(text, 0, leave_out, {});
    std::sort(found_.begin(), found_.end());
    if (found_.size() > 1 && found_[0].IsAsGoodAs(found_[1])) ++ties_;
    Strings shown;
    for (const Candidate& candidate : found_) shown.push_back(candidate.shown);
    return shown;
  }

  // How often only the lengths decided which cut is the best.
  int ties() const { return ties_; }

 private:
  struct Candidate {
    std::size_t left_out = 0;
    std::size_t syllables = 0;
    std::size_t cost = 0;
    std::vector<int> minus_lengths;  // 0 for a letter that is left out
    std::string shown;

    bool operator<(const Candidate& other) const {
      return std::tie(left_out, syllables, cost, minus_lengths) <
             std::tie(other.left_out, other.syllables, other.cost, other.minus_lengths);
    }
    bool IsAsGoodAs(const Candidate& other) const {
      return std::tie(left_out, syllables, cost) ==
             std::tie(other.left_out, other.syllables, other.cost);
    }
  };

  bool IsWord(std::size_t begin, std::size_t length) const {
    return std::any_of(words_.begin(), words_.end(), [&](const Range& word) {
      return word.offset == begin && word.length == length;
    });
  }

  bool IsWithinWord(std::size_t place) const {
    return std::none_of(words_.begin(), words_.end(),
                        [&](const Range& word) { return word.offset == place; });
  }

  bool IsSyllable(const std::string& piece, std::size_t begin) const {
    const auto is_capital = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (std::any_of(piece.begin() + 1, piece.end(), is_capital)) return false;
    const std::set<std::string> nasals = {"m", "n", "ng", "hm", "hng"};
    if (is_mandarin_ && nasals.count(Small(piece)) != 0 && !IsWord(begin, piece.size())) {
      return false;
    }
    return rarities_.count(Small(piece)) != 0;
  }

  std::size_t Cost(const std::string& piece, std::size_t begin, const std::string& text) const {
    const std::string small = Small(piece);
    const std::set<std::string> nasals = {"m", "n", "ng"};
    const bool is_open = std::string("aeo").find(small[0]) != std::string::npos;
    const bool is_penalised = IsWithinWord(begin) && (is_open || nasals.count(small) != 0);
    const std::size_t more_than_all = 255 * text.size() + 1;
    const std::size_t two_bits = 32;  // in sixteenths
    const std::size_t penalty = is_mandarin_ ? more_than_all : two_bits;
    return rarities_.at(small) + (is_penalised ? penalty : 0);
  }

  // NOLINTNEXTLINE(misc-no-recursion): as deep as the word is long, and plain to see
  void Extend(const std::string& text, std::size_t begin, bool leave_out,
              const Candidate& candidate) {
    if (begin == text.size()) found_.push_back(candidate);
    if (begin == text.size()) return;
    for (std::size_t length = 1; length <= 15 && begin + length <= text.size(); ++length) {
      const std::string piece = text.substr(begin, length);
      if (!IsSyllable(piece, begin)) continue;
      Candidate longer = candidate;
      ++longer.syllables;
      longer.cost += Cost(piece, begin, text);
      longer.minus_lengths.push_back(-static_cast<int>(length));
      longer.shown += longer.shown.empty() ? piece : ' ' + piece;
      Extend(text, begin + length, leave_out, longer);
    }
    if (!leave_out) return;
    Candidate shorter = candidate;
    ++shorter.left_out;
    shorter.minus_lengths.push_back(0);
    Extend(text, begin + 1, leave_out, shorter);
  }

  bool is_mandarin_;
  std::map<std::string, std::uint8_t> rarities_;
  std::vector<Range> words_;
  std::vector<Candidate> found_;
  int ties_ = 0;
};

// What pyw2py gives, in text order: runs between capitals keep their order, so each is asked alone.
Strings LongestMatch(int language, const std::string& word, bool backward) {
  Strings pieces;
  for (std::size_t begin = 0; begin < word.size();) {
    std::size_t end = begin + 1;
    while (end < word.size() && (word[end] < 'A' || word[end] > 'Z')) ++end;
    Strings of_run;
    sp::pyw2py(language, word.substr(begin, end - begin), of_run, backward);
    if (backward) std::reverse(of_run.begin(), of_run.end());
    pieces.insert(pieces.end(), of_run.begin(), of_run.end());
    begin = end;
  }
  return pieces;
}

class CutWholeAgainstEveryCut : public testing::TestWithParam<sp::Language> {
 protected:
  using Random = std::mt19937;

  std::string Syllable(Random& random) const {
    const auto row = random() % static_cast<unsigned>(GetParam().syllable_count);
    return sp::code2py(GetParam().id, static_cast<unsigned short>(row * 10), false);
  }

  std::string Word(Random& random) const {
    std::string word;
    for (auto left = random() % 6 + 1; left > 0; --left) {
      std::string syllable = Syllable(random);
      if (random() % 8 == 0 && syllable[0] >= 'a') {
        syllable[0] = static_cast<char>(syllable[0] - 'a' + 'A');
      }
      word += syllable;
    }
    return word;
  }

  void ExpectDirections(const std::string& word, const Cut& cut) const {
    EXPECT_EQ(cut.directions_differ,
              LongestMatch(GetParam().id, word, false) != LongestMatch(GetParam().id, word, true));
  }

  // CutLetters gives what CutWhole and the library give.
  void ExpectCutLetters(const std::string& word, const Cut& cut) const {
    const int language = GetParam().id;
    const auto pieces = [&](Cutting cutting) {
      const std::vector<CutSyllable> syllables = CutLetters(language, word, cutting);
      std::istringstream shown(Small(Show(language, word, syllables)));
      return Strings(std::istream_iterator<std::string>(shown), {});
    };
    EXPECT_EQ(Show(language, word, CutLetters(language, word, Cutting::kWhole)),
              Show(language, word, cut.syllables));
    Strings forward;
    sp::pyw2py(language, word + ' ', forward, false);
    EXPECT_EQ(pieces(Cutting::kForward), forward);
    EXPECT_EQ(pieces(Cutting::kBackward), LongestMatch(language, word, true));
  }

  EveryCut every_cut_{GetParam().id, GetParam().syllable_count};
};

TEST_P(CutWholeAgainstEveryCut, Words) {
  Random random(20240501);
  std::size_t most = 0;
  int differing = 0;
  for (int i = 0; i < 20000; ++i) {
    const std::string word = Word(random);
    SCOPED_TRACE(word);
    const Strings expected = every_cut_.Cuts(word, false);
    const Cut cut = CutWhole(GetParam().id, word, expected.size() + 1);
    EXPECT_EQ(cut.covers, !expected.empty());  // "E" is a syllable and never found
    EXPECT_EQ(cut.count, expected.size());
    EXPECT_EQ(Show(GetParam().id, word, cut.cuts), expected);
    if (cut.covers) {
      EXPECT_EQ(Show(GetParam().id, word, cut.syllables), expected[0]);
    }
    ExpectDirections(word, cut);
    ExpectCutLetters(word, cut);
    most = std::max(most, expected.size());
    differing += cut.directions_differ ? 1 : 0;
  }
  EXPECT_GT(most, 50U);
  EXPECT_GT(differing, 1000);
}

// Random letters, most of which fit nowhere.
TEST_P(CutWholeAgainstEveryCut, LettersLeftOut) {
  constexpr std::string_view kLetters = "aaeiouunnggghzxAN";
  Random random(7);
  int covered = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string word;
    for (auto left = random() % 11; left > 0; --left) word += kLetters[random() % kLetters.size()];
    SCOPED_TRACE(word);
    const Strings expected = every_cut_.Cuts(word, true);
    const Cut cut = CutWhole(GetParam().id, word);
    EXPECT_EQ(Show(GetParam().id, word, cut.syllables), expected.at(0));
    EXPECT_EQ(cut.covers, !every_cut_.Cuts(word, false).empty());
    ExpectDirections(word, cut);
    ExpectCutLetters(word, cut);
    covered += cut.covers ? 1 : 0;
  }
  EXPECT_GT(covered, 1000);
  EXPECT_LT(covered, 19000);
  const int least_ties = GetParam().id == LANGUAGE_CANTONESE ? 20 : 0;  // as "aaa" is one
  EXPECT_GE(every_cut_.ties(), least_ties);
}

INSTANTIATE_TEST_SUITE_P(Languages, CutWholeAgainstEveryCut,
                         testing::Values(sp::kMandarin, sp::kCantonese), sp::LanguageName);

// Real words of several syllables, their tones and spaces taken out: how many are cut as the source
// has them. No letter of theirs is lost.
struct Counts {
  int words = 0;
  int forward = 0;
  int backward = 0;
  int whole = 0;
  int with_apostrophes = 0;  // of `whole`, when they are written
  int covered = 0;
};

bool operator==(const Counts& a, const Counts& b) {
  return std::tie(a.words, a.forward, a.backward, a.whole, a.with_apostrophes, a.covered) ==
         std::tie(b.words, b.forward, b.backward, b.whole, b.with_apostrophes, b.covered);
}

void PrintTo(const Counts& counts, std::ostream* out) {
  *out << "{" << counts.words << ", " << counts.forward << ", " << counts.backward << ", "
       << counts.whole << ", " << counts.with_apostrophes << ", " << counts.covered << "}";
}

Strings Syllables(const std::string& ready) {
  Strings syllables;
  std::istringstream stream(ready);
  for (std::string syllable; stream >> syllable;) {
    syllable.pop_back();  // the tone
    syllables.push_back(syllable);
  }
  return syllables;
}

void CountWord(int language, const Strings& syllables, Counts& counts) {
  if (syllables.size() < 2) return;
  std::string word;
  std::string with_apostrophes;
  std::string expected;
  for (const std::string& syllable : syllables) {
    const bool is_open = std::string("aeo").find(syllable[0]) != std::string::npos;
    if (is_open && !word.empty()) with_apostrophes += '\'';
    word += syllable;
    with_apostrophes += syllable;
    expected += expected.empty() ? syllable : ' ' + syllable;
  }
  const auto is_cut_right = [&](const std::string& text) {
    return Show(language, text, CutWhole(language, text).syllables) == expected;
  };
  ++counts.words;
  counts.forward += LongestMatch(language, word, false) == syllables ? 1 : 0;
  counts.backward += LongestMatch(language, word, true) == syllables ? 1 : 0;
  counts.whole += is_cut_right(word) ? 1 : 0;
  counts.with_apostrophes += is_cut_right(with_apostrophes) ? 1 : 0;
  counts.covered += CutWhole(language, word).covers ? 1 : 0;
}

TEST(CutWhole, RealWords) {
  struct {
    int language = 0;
    const char* file = nullptr;
    const char* source = nullptr;
    Counts counts;  // words, forward, backward, whole, with apostrophes, covered
  } const cases[] = {
      {LANGUAGE_MANDARIN, "mandarin.tsv", "phrase-pinyin", {866, 849, 861, 863, 866, 866}},
      {LANGUAGE_MANDARIN, "mandarin.tsv", "aishell3", {512, 460, 505, 509, 512, 512}},
      {LANGUAGE_CANTONESE, "cantonese.tsv", "hkcancor", {1716, 1667, 1679, 1710, 1710, 1716}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.source);
    Counts counts;
    for (const sp::Row& row : sp::ReadTsv(std::string(PHONEME_DATA_DIR "/") + c.file, 5)) {
      const std::string& ready = row[2];
      if (row[3] == c.source && !ready.empty()) CountWord(c.language, Syllables(ready), counts);
    }
    EXPECT_EQ(counts, c.counts);
  }
}

}  // namespace
}  // namespace qeo::notation
