#ifndef PHONEME_TESTS_TESTING_H_
#define PHONEME_TESTS_TESTING_H_

// What more than one test uses: the languages and their golden rows, syllables spelled as plain
// text so that a table of them can be read at a glance, and a reader of tab-separated files.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "phoneme/phoneme.h"
#include "tests/stale.h"

namespace qeo::sp {

// A SyllableInfo with its phones as text: the names in order, one space between them, "-" for null.
struct Spelled {
  int language;
  std::string phones;
  unsigned code;
  int tone;
  int raw_tone;
};
using SpelledList = std::vector<Spelled>;

inline bool operator==(const Spelled& a, const Spelled& b) {
  return std::tie(a.language, a.phones, a.code, a.tone, a.raw_tone) ==
         std::tie(b.language, b.phones, b.code, b.tone, b.raw_tone);
}

inline void PrintTo(const Spelled& s, std::ostream* out) {
  *out << '{' << s.language << ", \"" << s.phones << "\", " << s.code << ", " << s.tone << ", "
       << s.raw_tone << '}';
}

inline std::string PhoneNames(const SyllableInfo& syllable) {
  std::string names;
  for (const PhoneInfo* phone : syllable.phones) {
    if (!names.empty()) names += ' ';
    names += phone == nullptr ? "-" : phone->name;
  }
  return names;
}

inline Spelled Spell(const SyllableInfo& syllable) {
  return {syllable.language, PhoneNames(syllable), syllable.code, syllable.tone, syllable.raw_tone};
}

inline SpelledList Spell(const std::vector<SyllableInfo>& syllables) {
  SpelledList spelled;
  for (const SyllableInfo& syllable : syllables) spelled.push_back(Spell(syllable));
  return spelled;
}

// How a test reports a property of tests/reference/ that does not hold.
inline void ExpectHolds(bool holds, const char* property) { EXPECT_TRUE(holds) << property; }

// The rows of a tab-separated file without its "# " lines. A file that is missing or a row with
// another number of fields is a failure of the running test.
using Row = std::vector<std::string>;

inline std::vector<Row> ReadTsv(const std::string& path, std::size_t field_count) {
  std::vector<Row> rows;
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  for (std::string line; std::getline(file, line);) {
    if (line.compare(0, 2, "# ") == 0) continue;
    Row row;
    for (std::size_t begin = 0; begin <= line.size();) {
      const std::size_t end = std::min(line.find('\t', begin), line.size());
      row.push_back(line.substr(begin, end - begin));
      begin = end + 1;
    }
    EXPECT_EQ(row.size(), field_count) << path << ": " << line;
    row.resize(field_count);
    rows.push_back(row);
  }
  return rows;
}

struct GoldenPhone {
  int id;
  int type;
  std::string name;
  std::string feature;  // "" for none
};

struct GoldenSyllable {
  int id;
  std::string spelling;
  std::string initial;  // "" for none
  std::string final;    // "" for none
  int initial_phone;    // id, kNoPhone for none
  int final_phone;      // id, kNoPhone for none
};

inline constexpr int kNoPhone = -1;

inline std::vector<GoldenPhone> GoldenPhones(const std::string& language) {
  std::vector<GoldenPhone> phones;
  for (const Row& row : ReadTsv(PHONEME_GOLDEN_DIR "/" + language + "_phones.tsv", 4)) {
    phones.push_back(
        {std::stoi(row[0]), std::stoi(row[1]), row[2], row[3] == "-" ? std::string() : row[3]});
  }
  return phones;
}

inline std::vector<GoldenSyllable> GoldenSyllables(const std::string& language) {
  const auto name = [](const std::string& field) { return field == "-" ? std::string() : field; };
  const auto phone = [](const std::string& field) {
    return field == "-" ? kNoPhone : std::stoi(field);
  };
  std::vector<GoldenSyllable> syllables;
  for (const Row& row : ReadTsv(PHONEME_GOLDEN_DIR "/" + language + "_syllables.tsv", 6)) {
    syllables.push_back(
        {std::stoi(row[0]), row[1], name(row[2]), name(row[3]), phone(row[4]), phone(row[5])});
  }
  return syllables;
}

// A language as the tests know it: its golden files, their row counts, and its builder.
struct Language {
  const char* name;  // stem of the golden files and of the test names
  int id;
  int phone_count;
  int syllable_count;  // 0: there is no syllable file
  int top_tone;        // a syllable without a digit has it
  void (*initialize)(std::map<int, SpMapping>& table);

  std::vector<GoldenPhone> phones() const { return GoldenPhones(name); }
  std::vector<GoldenSyllable> syllables() const {
    return syllable_count == 0 ? std::vector<GoldenSyllable>() : GoldenSyllables(name);
  }
  SpMapping mapping() const {
    std::map<int, SpMapping> table;
    initialize(table);
    return table[id];
  }
};

inline constexpr Language kMandarin = {"mandarin", 10000, 61, 417, 5, InitializeMandarinSet};
inline constexpr Language kCantonese = {"cantonese", 10001, 95, 619, 7, InitializeCantoneseSet};
inline constexpr Language kAmericanEnglish = {"american_english",   20000, 41, 0, 5,
                                              InitializeAmericanSet};

// All of them, for what must hold in every language.
inline constexpr Language kLanguages[] = {kMandarin, kCantonese, kAmericanEnglish};

inline void PrintTo(const Language& language, std::ostream* out) { *out << language.name; }

// "american_english" is "AmericanEnglish" in the name of a test.
inline std::string LanguageName(const testing::TestParamInfo<Language>& info) {
  std::string name;
  bool capital = true;
  for (const char c : std::string_view(info.param.name)) {
    if (c != '_') name += capital ? static_cast<char>(c - 'a' + 'A') : c;
    capital = c == '_';
  }
  return name;
}

// Language ids that are not registered; the lookups by phone serve the first list with American
// English and the second with Mandarin.
inline constexpr int kUnregisteredEnglish[] = {20001, 20005, 25000, 29999};
inline constexpr int kUnregisteredOther[] = {10002,
                                             10005,
                                             12345,
                                             9999,
                                             0,
                                             1,
                                             -1,
                                             -5,
                                             -10000,
                                             19999,
                                             30000,
                                             99999,
                                             std::numeric_limits<int>::max(),
                                             std::numeric_limits<int>::min()};

inline std::vector<int> UnregisteredIds() {
  std::vector<int> ids(std::begin(kUnregisteredEnglish), std::end(kUnregisteredEnglish));
  ids.insert(ids.end(), std::begin(kUnregisteredOther), std::end(kUnregisteredOther));
  return ids;
}

}  // namespace qeo::sp

#endif  // PHONEME_TESTS_TESTING_H_
