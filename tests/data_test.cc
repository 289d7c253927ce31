// The shipped samples of real lexicons: every line with a ready form converts, and the phones agree
// with the initials and finals that two of the sources give themselves.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {
namespace {

// One line of a sample.
struct Line {
  std::string text;
  std::string source_form;
  std::string ready;  // "" where the library's syllables do not hold it
  std::string source;
  std::string extra;
};

std::vector<Line> ReadSample(const std::string& name) {
  std::vector<Line> lines;
  for (const Row& row : ReadTsv(PHONEME_DATA_DIR "/" + name, 5)) {
    lines.push_back({row[0], row[1], row[2], row[3], row[4]});
  }
  return lines;
}

std::vector<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

struct Counts {
  int lines = 0;
  int ready = 0;
  int syllables = 0;
};

void ExpectCounts(const Counts& counts, const Counts& expected) {
  EXPECT_EQ(counts.lines, expected.lines);
  EXPECT_EQ(counts.ready, expected.ready);
  EXPECT_EQ(counts.syllables, expected.syllables);
}

// Converts a line's ready form both ways; the text shows its syllables between spaces.
void ExpectConverts(int language, const Line& line, Counts& counts) {
  SCOPED_TRACE(line.ready);
  const std::vector<std::string> words = Words(line.ready);
  std::vector<SyllableInfo> syllables;
  std::vector<unsigned short> codes;
  EXPECT_EQ(py2ph(language, line.ready, syllables), 0);
  EXPECT_EQ(py2code(language, line.ready, codes), 0);
  ASSERT_EQ(syllables.size(), words.size());
  ASSERT_EQ(codes.size(), words.size());
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_EQ(syllables[i].code, codes[i]);
    EXPECT_EQ(syllables[i].language, language);
    EXPECT_EQ(code2py(language, codes[i], true), words[i]);
    EXPECT_EQ(static_cast<char>('0' + syllables[i].tone), words[i].back());
  }
  counts.syllables += static_cast<int>(words.size());
}

Counts ExpectSampleConverts(int language, const std::string& name) {
  Counts counts;
  for (const Line& line : ReadSample(name)) {
    ++counts.lines;
    if (line.ready.empty()) continue;
    ++counts.ready;
    ExpectConverts(language, line, counts);
  }
  return counts;
}

// The rows of the syllable table that no line of a sample reaches.
std::vector<std::string> UnreachedSyllables(const Language& language, const std::string& name) {
  std::set<std::size_t> reached;
  for (const Line& line : ReadSample(name)) {
    std::vector<unsigned short> codes;
    py2code(language.id, line.ready, codes);
    for (const unsigned short code : codes) reached.insert(code / 10U);
  }
  std::vector<std::string> unreached;
  for (const GoldenSyllable& row : language.syllables()) {
    if (reached.count(static_cast<std::size_t>(row.id)) == 0) unreached.push_back(row.spelling);
  }
  return unreached;
}

}  // namespace

TEST(MandarinSample, EveryReadyLineConverts) {
  ExpectCounts(ExpectSampleConverts(LANGUAGE_MANDARIN, "mandarin.tsv"), {2891, 2880, 9843});
}

TEST(MandarinSample, ReachesAllSyllablesButTwo) {
  EXPECT_EQ(UnreachedSyllables(kMandarin, "mandarin.tsv"), (std::vector<std::string>{"E", "nia"}));
}

TEST(CantoneseSample, EveryReadyLineConverts) {
  ExpectCounts(ExpectSampleConverts(LANGUAGE_CANTONESE, "cantonese.tsv"), {6134, 5448, 7404});
}

TEST(CantoneseSample, ReachesAllSyllables) {
  EXPECT_EQ(UnreachedSyllables(kCantonese, "cantonese.tsv"), std::vector<std::string>{});
}

// The sources write a word's syllables without spaces between them; digits alone part them.
TEST(CantoneseSample, WordsConvertAsTheSourceWritesThem) {
  int compared = 0;
  for (const Line& line : ReadSample("cantonese.tsv")) {
    if (line.ready.empty()) continue;
    std::vector<unsigned short> ready;
    std::vector<unsigned short> as_written;
    EXPECT_EQ(py2code(LANGUAGE_CANTONESE, line.ready, ready), 0) << line.ready;
    EXPECT_EQ(py2code(LANGUAGE_CANTONESE, line.source_form, as_written), 0) << line.source_form;
    EXPECT_EQ(as_written, ready) << line.source_form;
    ++compared;
  }
  EXPECT_EQ(compared, 5448);
}

TEST(EnglishSample, EveryLineConvertsToSyllablesAndBytes) {
  Counts counts;
  std::set<std::string> names;
  for (const Line& line : ReadSample("english.tsv")) {
    SCOPED_TRACE(line.ready);
    ++counts.lines;
    if (line.ready.empty()) continue;
    ++counts.ready;
    const std::size_t shown =
        1 + static_cast<std::size_t>(std::count(line.ready.begin(), line.ready.end(), ','));
    std::vector<SyllableInfo> syllables;
    std::vector<unsigned char> phone_ids;
    std::vector<SyllableInfo> read_back;
    EXPECT_EQ(pr2ph(LANGUAGE_AMERICAN_ENGLISH, line.ready, syllables), 0);
    EXPECT_EQ(pr2ph(LANGUAGE_AMERICAN_ENGLISH, line.ready, phone_ids), 0);
    EXPECT_EQ(ph2ph(LANGUAGE_AMERICAN_ENGLISH, phone_ids, read_back), 0);
    EXPECT_EQ(syllables.size(), shown);
    EXPECT_EQ(phone_ids.size(), Words(line.ready).size());  // a byte for each name and digit
    EXPECT_EQ(Spell(read_back), Spell(syllables));
    counts.syllables += static_cast<int>(syllables.size());
    for (const SyllableInfo& syllable : syllables) {
      for (const PhoneInfo* phone : syllable.phones) names.insert(phone->name);
    }
  }
  ExpectCounts(counts, {2322, 2322, 6234});
  EXPECT_EQ(names.size(), 40U);  // every phone but "sil"
  EXPECT_EQ(names.count("sil"), 0U);
}

// Lines without a ready form: syllables that the tables do not hold, foreign words, punctuation.
TEST(Samples, LinesWithoutAReadyForm) {
  struct {
    int language;
    const char* file;
    const char* source;
    int lines;
    int failing;  // the others are cut short, or cut into capitals ("HongKong0", "@")
  } const cases[] = {
      {LANGUAGE_MANDARIN, "mandarin.tsv", "aishell3", 0, 0},
      {LANGUAGE_MANDARIN, "mandarin.tsv", "unihan", 11, 0},  // tone marks end the match
      {LANGUAGE_MANDARIN, "mandarin.tsv", "phrase-pinyin", 0, 0},
      {LANGUAGE_CANTONESE, "cantonese.tsv", "hkcancor", 550, 522},
      {LANGUAGE_CANTONESE, "cantonese.tsv", "lshk", 136, 136},
      {LANGUAGE_AMERICAN_ENGLISH, "english.tsv", "festlex-cmu", 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.source);
    int lines = 0;
    int failing = 0;
    for (const Line& line : ReadSample(c.file)) {
      if (line.source != c.source || !line.ready.empty()) continue;
      std::vector<unsigned short> codes;
      failing += py2code(c.language, line.source_form, codes) == -1 ? 1 : 0;
      ++lines;
    }
    EXPECT_EQ(lines, c.lines);
    EXPECT_EQ(failing, c.failing);
  }
}

// Initials and finals as the sources give them

namespace {

bool IsInitial(const std::string& phone) { return phone.back() < '0' || phone.back() > '9'; }

// Mandarin phones as the aishell3 lines write them, in our terms: "y", "w" and "sp" are not phones,
// the syllable er is "e rr", and a fused r is "rr". A final carries its tone.
std::vector<std::string> ReadInitialsAndFinals(const std::string& annotation) {
  std::vector<std::string> phones;
  for (const std::string& word : Words(annotation)) {
    if (word == "y" || word == "w" || word == "sp") continue;
    if (word != "rr") {
      phones.push_back(word);
      continue;
    }
    const bool after_e = phones.back().size() == 2 && phones.back()[0] == 'e';
    const bool e_is_alone = phones.size() == 1 || !IsInitial(phones[phones.size() - 2]);
    if (after_e && e_is_alone) {
      phones.back() = std::string("er") + phones.back()[1];
    } else {
      phones.emplace_back("er5");
    }
  }
  return phones;
}

// The phones of a text in the same form.
std::vector<std::string> InitialsAndFinals(const std::string& text) {
  std::vector<SyllableInfo> syllables;
  EXPECT_EQ(py2ph(LANGUAGE_MANDARIN, text, syllables), 0);
  std::vector<std::string> phones;
  for (const SyllableInfo& syllable : syllables) {
    for (const PhoneInfo* phone : syllable.phones) phones.emplace_back(phone->name);
    phones.back() += std::to_string(syllable.tone);
  }
  return phones;
}

// A Cantonese syllable's phones as the lshk lines write them, in our terms: a w-syllable is stored
// as a final that begins with u, and a syllable without an initial has "-" there.
std::string ReadInitialAndFinal(const std::string& annotation) {
  const std::vector<std::string> words = Words(annotation);
  if (words.size() != 2) return "not an initial and a final";
  if (words[0] == "-") return words[1];
  if (words[0] == "w") return "u" + words[1];
  return words[0] + " " + words[1];
}

}  // namespace

TEST(MandarinSample, PhonesAgreeWithTheInitialsAndFinalsOfAishell3) {
  int compared = 0;
  std::size_t phone_count = 0;
  for (const Line& line : ReadSample("mandarin.tsv")) {
    if (line.source != "aishell3") continue;
    const std::vector<std::string> phones = InitialsAndFinals(line.ready);
    EXPECT_EQ(phones, ReadInitialsAndFinals(line.extra)) << line.ready;
    phone_count += phones.size();
    ++compared;
  }
  EXPECT_EQ(compared, 512);
  EXPECT_EQ(phone_count, 10701U);
}

TEST(CantoneseSample, PhonesAgreeWithTheInitialsAndFinalsOfLshk) {
  int lines = 0;
  int compared = 0;
  for (const Line& line : ReadSample("cantonese.tsv")) {
    if (line.source != "lshk") continue;
    ++lines;
    std::vector<SyllableInfo> syllables;
    const int result = py2ph(LANGUAGE_CANTONESE, line.source_form, syllables);
    // a line without a ready form is a syllable that the table does not hold
    EXPECT_EQ(result, line.ready.empty() ? -1 : 0) << line.source_form;
    if (line.ready.empty()) continue;
    ASSERT_EQ(syllables.size(), 1U) << line.source_form;
    EXPECT_EQ(PhoneNames(syllables[0]), ReadInitialAndFinal(line.extra)) << line.source_form;
    EXPECT_EQ(static_cast<char>('0' + syllables[0].tone), line.source_form.back());
    ++compared;
  }
  EXPECT_EQ(lines, 2336);
  EXPECT_EQ(compared, 2200);
}

}  // namespace qeo::sp
