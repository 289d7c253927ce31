#include "tests/reference/suggesting.h"

#include <cmath>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "notation/rarities.h"
#include "phoneme/phoneme.h"

namespace qeo::sp::reference {
namespace {

constexpr int kBit = notation::internal::kRarityBit;
constexpr int kOtherKey = 6 * kBit;
constexpr std::size_t kShortest = 3;

// The syllables, initials and finals of a language.
struct Table {
  explicit Table(int language) {
    std::map<int, SpMapping> table;
    InitializeMandarinSet(table);
    InitializeCantoneseSet(table);
    const SpMapping& mapping = table.at(language);
    for (std::size_t row = 0; row < mapping.pinyin_count; ++row) {
      const PinyinInfo& syllable = mapping.pinyin_list[row];
      const std::string spelling = syllable.pinyin;
      if (spelling != "E") rows[spelling] = row;  // text cannot name it
      if (syllable.initial_phone == nullptr || syllable.final_phone == nullptr) continue;
      initials.insert(syllable.initial);
      finals.insert(spelling.substr(std::string(syllable.initial).size()));
    }
  }

  std::map<std::string, std::size_t> rows;
  std::set<std::string> initials;
  std::set<std::string> finals;
};

const Table& TableOf(int language) {
  static const Table mandarin(LANGUAGE_MANDARIN);
  static const Table cantonese(LANGUAGE_CANTONESE);
  return language == LANGUAGE_CANTONESE ? cantonese : mandarin;
}

int RarityOf(int language, std::size_t row) {
  return language == LANGUAGE_CANTONESE ? notation::internal::kCantoneseRarities[row]
                                        : notation::internal::kMandarinRarities[row];
}

// Where a key is, in widths of a key: the rows are shifted against each other.
std::pair<double, int> PlaceOf(char letter) {
  const std::string rows[] = {"qwertyuiop", "asdfghjkl", "zxcvbnm"};
  const double shifts[] = {0, 0.25, 0.75};
  for (int row = 0; row < 3; ++row) {
    const std::size_t column = rows[row].find(letter);
    if (column != std::string::npos) return {static_cast<double>(column) + shifts[row], row};
  }
  return {0, -9};
}

bool AreBeside(char a, char b) {
  const auto [x, row] = PlaceOf(a);
  const auto [other_x, other_row] = PlaceOf(b);
  if (row == other_row) return std::abs(x - other_x) == 1;
  return std::abs(row - other_row) == 1 && std::abs(x - other_x) < 1;
}

int CostOfKey(char right, char hit) {
  if (!AreBeside(right, hit)) return kOtherKey;
  int count = 0;
  for (char key = 'a'; key <= 'z'; ++key) count += AreBeside(right, key) ? 1 : 0;
  return static_cast<int>(std::lround(kBit * std::log2(count)));
}

// All that one slip may have made these letters of, with what the slip costs.
std::multimap<std::string, int> Meant(const std::string& letters) {
  std::multimap<std::string, int> meant;
  for (std::size_t i = 0; i <= letters.size(); ++i) {
    for (char key = 'a'; key <= 'z'; ++key) {
      meant.emplace(letters.substr(0, i) + key + letters.substr(i), 0);
      if (i == letters.size()) continue;
      std::string replaced = letters;
      replaced[i] = key;
      meant.emplace(replaced, CostOfKey(key, letters[i]));
    }
    if (i == letters.size()) continue;
    const bool is_doubled = i > 0 && letters[i] == letters[i - 1];
    meant.emplace(letters.substr(0, i) + letters.substr(i + 1), is_doubled ? 0 : kOtherKey);
    if (i + 1 == letters.size()) continue;
    std::string transposed = letters;
    std::swap(transposed[i], transposed[i + 1]);
    meant.emplace(transposed, 0);
  }
  return meant;
}

std::string Gap(const Table& table, const std::string& letters) {
  for (std::size_t i = 1; i < letters.size(); ++i) {
    const std::string initial = letters.substr(0, i);
    const std::string final = letters.substr(i);
    if (table.initials.count(initial) > 0 && table.finals.count(final) > 0) {
      return std::string("gap ").append(initial).append("+").append(final);
    }
  }
  return "";
}

}  // namespace

std::string Suggest(int language, const std::string& letters) {
  const Table& table = TableOf(language);
  std::string gap = Gap(table, letters);
  if (!gap.empty() || letters.size() < kShortest) return gap;
  std::pair<int, std::size_t> best;  // what it costs, and its row
  std::string suggestion;
  for (const auto& [spelling, slip] : Meant(letters)) {
    const auto row = table.rows.find(spelling);
    if (row == table.rows.end()) continue;
    const std::pair<int, std::size_t> found = {slip + RarityOf(language, row->second), row->second};
    if (!suggestion.empty() && best <= found) continue;
    best = found;
    suggestion = spelling;
  }
  return suggestion;
}

}  // namespace qeo::sp::reference
