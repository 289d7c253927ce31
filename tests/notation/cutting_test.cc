// Whole words: the cut that keeps every letter, how many there are, the first of them, and whether
// the longest match from the front and from the end agree.

#include "notation/cutting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <ostream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

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
// the ranges must stand in order.
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
      {LANGUAGE_MANDARIN, "zhuang", true, "zhuang", 4, false},  // zhua ng, zhu ang, zhu a ng
      {LANGUAGE_MANDARIN, "shuishui", true, "shui shui", 1, false},
      {LANGUAGE_MANDARIN, "lve", true, "lve", 2, false},
      {LANGUAGE_MANDARIN, "ng", true, "ng", 1, false},
      // The longest match from the front loses letters.
      {LANGUAGE_MANDARIN, "yipinguo", true, "yi pin guo", 4, true},
      {LANGUAGE_MANDARIN, "nver", true, "nv er", 1, true},
      // Equal numbers of syllables: the longest first.
      {LANGUAGE_MANDARIN, "fangan", true, "fang an", 8, true},
      {LANGUAGE_MANDARIN, "keneng", true, "ken eng", 6, true},
      {LANGUAGE_MANDARIN, "xian", true, "xian", 4, false},
      {LANGUAGE_CANTONESE, "ngongo", true, "ngong o", 8, true},
      // Capitals open syllables, and are small letters.
      {LANGUAGE_MANDARIN, "XiAn", true, "Xi An", 2, false},
      {LANGUAGE_MANDARIN, "Xian", true, "Xian", 4, false},
      {LANGUAGE_MANDARIN, "FanGan", true, "Fan Gan", 4, false},
      {LANGUAGE_MANDARIN, "XIAN", false, "A N", 0, false},
      {LANGUAGE_MANDARIN, "FanganFangan", true, "Fang an Fang an", 64, true},
      {LANGUAGE_MANDARIN, "E", true, "E", 1, false},  // the row of "e"
      // Nothing covers: the fewest letters are left out.
      {LANGUAGE_MANDARIN, "hello", false, "he lo", 0, true},
      {LANGUAGE_MANDARIN, "huar", false, "hua", 0, true},
      {LANGUAGE_MANDARIN, "xyz", false, "", 0, false},
      {LANGUAGE_MANDARIN, "baxba", false, "ba ba", 0, false},  // one "ba" from either end
      {LANGUAGE_MANDARIN, "xxnihao", false, "ni hao", 0, true},
      {LANGUAGE_MANDARIN, "XxNihao", false, "Ni hao", 0, false},  // only "Xx" is dropped
      {LANGUAGE_CANTONESE, "nihao", false, "o", 0, true},
      // Bytes that are no letters are in no syllable.
      {LANGUAGE_MANDARIN, "fangan ", false, "fang an", 0, false},
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
      {"xian", 2, {"xian", "xia n"}},
      {"xian", 3, {"xian", "xia n", "xi an"}},
      {"xian", 4, {"xian", "xia n", "xi an", "xi a n"}},
      {"xian", 5, {"xian", "xia n", "xi an", "xi a n"}},
      {"xian", std::numeric_limits<std::size_t>::max(), {"xian", "xia n", "xi an", "xi a n"}},
      {"fangan",
       100,
       {"fang an", "fan gan", "fang a n", "fan ga n", "fa ng an", "fa n gan", "fa ng a n",
        "fa n ga n"}},
      {"FanGan", 3, {"Fan Gan", "Fan Ga n", "Fa n Gan"}},
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

// "xian" has 4 cuts and no syllable reaches over its end, so each one more multiplies by 4.
TEST(CutWhole, CountsWithoutListing) {
  struct {
    std::size_t times;
    const char* end;
    std::uint64_t count;
  } const cases[] = {
      {1, "", 4},
      {16, "", std::uint64_t{1} << 32},
      {31, "", std::uint64_t{1} << 62},
      {31, "xia", std::uint64_t{1} << 63},    // xia, xi a
      {31, "zhong", std::uint64_t{1} << 62},  // one cut
      {32, "", kUncountedCuts},               // 2 to the power of 64, just too many
      {33, "xia", kUncountedCuts},
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
      {LANGUAGE_MANDARIN, "fangan", "fang an", "fang an", "fan gan"},
      {LANGUAGE_MANDARIN, "keneng", "ken eng", "ken eng", "ke neng"},
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
      // Bytes that are no letters fit nowhere.
      {LANGUAGE_MANDARIN, "ni3hao", "ni hao", "ni", "hao"},
      {LANGUAGE_MANDARIN, "ni hao", "ni hao", "ni", "hao"},
      {LANGUAGE_MANDARIN, "ni'Hao", "ni Hao", "ni Hao", "Hao"},
      {LANGUAGE_MANDARIN, "nihao ", "ni hao", "ni hao", ""},
      {LANGUAGE_MANDARIN, "l\u00FCan", "an", "", "an"},
      {LANGUAGE_MANDARIN, "ni\0hao"s, "ni hao", "ni", "hao"},
      {LANGUAGE_CANTONESE, "ngongo", "ngong o", "ngong o", "ngo ngo"},
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
    ++seen;
  }
  EXPECT_EQ(seen, 18U);
}

TEST(CutLetters, NothingInAWayThatIsNone) {
  EXPECT_EQ(CutLetters(LANGUAGE_MANDARIN, "yipinguo", static_cast<Cutting>(3)).size(), 0U);
}

TEST(CutLetters, LongTextsAreNoProblem) {
  const std::string text = Repeat("yiping", 100000);
  for (const Cutting cutting : {Cutting::kWhole, Cutting::kForward, Cutting::kBackward}) {
    EXPECT_EQ(CutLetters(LANGUAGE_MANDARIN, text, cutting).size(), 200000U);
  }
}

// A slow second form: every way to cut a text or leave letters out, one by one.
class EveryCut {
 public:
  EveryCut(int language, int row_count) {
    for (int row = 0; row < row_count; ++row) {
      syllables_.insert(sp::code2py(language, static_cast<unsigned short>(row * 10), false));
    }
  }

  // In the order of preference. With `leave_out` also those that leave letters out.
  Strings Cuts(const std::string& text, bool leave_out) {
    found_.clear();
    Extend(text, 0, leave_out, {});
    std::sort(found_.begin(), found_.end());
    Strings shown;
    for (const Candidate& candidate : found_) shown.push_back(candidate.shown);
    return shown;
  }

 private:
  struct Candidate {
    std::size_t left_out = 0;
    std::size_t syllables = 0;
    std::vector<int> minus_lengths;  // 0 for a letter that is left out
    std::string shown;

    bool operator<(const Candidate& other) const {
      return std::tie(left_out, syllables, minus_lengths) <
             std::tie(other.left_out, other.syllables, other.minus_lengths);
    }
  };

  bool IsSyllable(const std::string& piece) const {
    const auto is_capital = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (std::any_of(piece.begin() + 1, piece.end(), is_capital)) return false;
    return syllables_.count(Small(piece)) != 0;
  }

  // NOLINTNEXTLINE(misc-no-recursion): as deep as the word is long, and plain to see
  void Extend(const std::string& text, std::size_t begin, bool leave_out,
              const Candidate& candidate) {
    if (begin == text.size()) found_.push_back(candidate);
    if (begin == text.size()) return;
    for (std::size_t length = 1; length <= 15 && begin + length <= text.size(); ++length) {
      const std::string piece = text.substr(begin, length);
      if (!IsSyllable(piece)) continue;
      Candidate longer = candidate;
      ++longer.syllables;
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

  std::set<std::string> syllables_;
  std::vector<Candidate> found_;
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
}

INSTANTIATE_TEST_SUITE_P(Languages, CutWholeAgainstEveryCut,
                         testing::Values(sp::kMandarin, sp::kCantonese), sp::LanguageName);

// Real words, their tones and spaces taken out: how many are cut as the source has them. No letter
// of theirs is lost.
struct Counts {
  int words = 0;
  int forward = 0;
  int backward = 0;
  int whole = 0;
  int covered = 0;
};

bool operator==(const Counts& a, const Counts& b) {
  return std::tie(a.words, a.forward, a.backward, a.whole, a.covered) ==
         std::tie(b.words, b.forward, b.backward, b.whole, b.covered);
}

void PrintTo(const Counts& counts, std::ostream* out) {
  *out << "{" << counts.words << ", " << counts.forward << ", " << counts.backward << ", "
       << counts.whole << ", " << counts.covered << "}";
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
  std::string word;
  std::string expected;
  for (const std::string& syllable : syllables) {
    word += syllable;
    expected += expected.empty() ? syllable : ' ' + syllable;
  }
  const Cut cut = CutWhole(language, word);
  ++counts.words;
  counts.forward += LongestMatch(language, word, false) == syllables ? 1 : 0;
  counts.backward += LongestMatch(language, word, true) == syllables ? 1 : 0;
  counts.whole += Show(language, word, cut.syllables) == expected ? 1 : 0;
  counts.covered += cut.covers ? 1 : 0;
}

TEST(CutWhole, RealWords) {
  struct {
    int language = 0;
    const char* file = nullptr;
    const char* source = nullptr;
    Counts counts;  // words, forward, backward, whole, covered
  } const cases[] = {
      {LANGUAGE_MANDARIN, "mandarin.tsv", "unihan", {1502, 1502, 1502, 1502, 1502}},
      {LANGUAGE_MANDARIN, "mandarin.tsv", "phrase-pinyin", {866, 849, 861, 857, 866}},
      {LANGUAGE_MANDARIN, "mandarin.tsv", "aishell3", {512, 460, 505, 484, 512}},
      {LANGUAGE_CANTONESE, "cantonese.tsv", "hkcancor", {3248, 3199, 3211, 3218, 3248}},
      {LANGUAGE_CANTONESE, "cantonese.tsv", "lshk", {2200, 2200, 2200, 2200, 2200}},
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
