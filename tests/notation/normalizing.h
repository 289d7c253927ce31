#ifndef PHONEME_TESTS_NOTATION_NORMALIZING_H_
#define PHONEME_TESTS_NOTATION_NORMALIZING_H_

// What the tests of the normalisers share: their results as plain text, and what must hold for
// every result, whatever the text and the rules.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "notation/records.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {

// Any of the records with a range, as "tone-mark 1+2, full-width 4+3".
template <typename Record, typename Name>
std::string Show(const std::vector<Record>& records, Name name) {
  std::string shown;
  for (const Record& record : records) {
    if (!shown.empty()) shown += ", ";
    shown += std::string(name(record)) + ' ' + std::to_string(record.range.offset) + '+' +
             std::to_string(record.range.length);
  }
  return shown;
}

inline std::string Show(const std::vector<Application>& applied) {
  return Show(applied, [](const Application& a) { return RuleName(a.rule); });
}

inline std::string Show(const std::vector<Problem>& problems) {
  return Show(problems, [](const Problem& p) { return ProblemName(p.kind); });
}

inline bool Contains(Range range, std::size_t offset) {
  return offset >= range.offset && offset - range.offset < range.length;
}

template <typename Record>
bool IsWithin(const std::vector<Record>& records, std::size_t offset) {
  return std::any_of(records.begin(), records.end(),
                     [&](const Record& record) { return Contains(record.range, offset); });
}

inline bool IsSmallLetter(char c) { return c >= 'a' && c <= 'z'; }
inline bool IsTextDigit(char c) { return c >= '0' && c <= '9'; }

inline char ToSmallLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline bool IsLibrarySeparator(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r') || c == '\'' || c == '`';
}

template <typename Record>
void ExpectRangesInOrder(std::string_view input, const std::vector<Record>& records) {
  std::size_t last = 0;
  for (const Record& record : records) {
    EXPECT_GE(record.range.offset, last);
    EXPECT_GT(record.range.length, 0U);
    EXPECT_LE(record.range.end(), input.size());
    last = record.range.offset;
  }
}

// Small letters, digits that close them and single spaces between them.
inline void ExpectNotation(const std::string& text) {
  char last = ' ';
  for (const char c : text) {
    EXPECT_TRUE(IsSmallLetter(c) || (IsTextDigit(c) && IsSmallLetter(last)) ||
                (c == ' ' && last != ' '));
    last = c;
  }
  EXPECT_TRUE(text.empty() || last != ' ');
}

// Each byte of the output is a byte of the input, or was made by a rule, or is a space; none comes
// from the bytes of a problem.
inline void ExpectOriginsTell(std::string_view input, const Normalized& result) {
  ASSERT_EQ(result.origins.size(), result.text.size());
  EXPECT_TRUE(std::is_sorted(result.origins.begin(), result.origins.end()));
  for (std::size_t i = 0; i < result.text.size(); ++i) {
    const std::size_t origin = result.origins[i];
    ASSERT_LT(origin, input.size());
    if (result.text[i] == ' ') continue;
    EXPECT_FALSE(IsWithin(result.problems, origin)) << "output byte " << i;
    const bool is_tone_of_letter =
        IsTextDigit(result.text[i]) && i > 0 && result.origins[i - 1] == origin;
    if (is_tone_of_letter || IsWithin(result.applied, origin)) continue;
    EXPECT_EQ(result.text[i], ToSmallLetter(input[origin])) << "output byte " << i;
  }
}

inline void ExpectEachByteHasAnOwner(std::string_view input, const Normalized& result) {
  for (std::size_t i = 0; i < input.size(); ++i) {
    const bool is_in_output = std::binary_search(result.origins.begin(), result.origins.end(), i);
    EXPECT_TRUE(is_in_output || IsWithin(result.applied, i) || IsWithin(result.problems, i) ||
                IsLibrarySeparator(input[i]))
        << "input byte " << i;
  }
}

// The library reads the text; one that has digits gives a syllable for each run of letters.
inline void ExpectLibraryReads(int language, const std::string& text) {
  std::vector<unsigned short> codes = {999};
  EXPECT_EQ(sp::py2code(language, text, codes), 0);
  if (std::none_of(text.begin(), text.end(), IsTextDigit)) return;
  std::size_t runs = 0;
  char last = ' ';
  for (const char c : text) {
    if (IsSmallLetter(c) && !IsSmallLetter(last)) ++runs;
    last = c;
  }
  EXPECT_EQ(codes.size(), runs);
}

// What must hold for every result. A failure shows the input.
inline void ExpectSound(int language, const std::string& input, const Normalized& result) {
  SCOPED_TRACE(testing::PrintToString(input) + " -> " + testing::PrintToString(result.text) +
               " applied " + Show(result.applied) + " problems " + Show(result.problems));
  ExpectRangesInOrder(input, result.applied);
  ExpectRangesInOrder(input, result.problems);
  ExpectNotation(result.text);
  ExpectOriginsTell(input, result);
  ExpectEachByteHasAnOwner(input, result);
  ExpectLibraryReads(language, result.text);
}

// Texts of fragments and bytes in any order, and sets of rules.
class RandomTexts {
 public:
  std::string Text(const std::vector<std::string>& fragments) {
    std::string text;
    for (std::size_t parts = Below(9); parts > 0; --parts) {
      if (Below(8) == 0) {
        text += static_cast<char>(Below(256));
      } else {
        text += fragments[Below(fragments.size())];
      }
    }
    return text;
  }

  RuleSet Rules() {
    RuleSet rules;
    for (int i = 0; i < kRuleCount; ++i) {
      if (Below(4) != 0) rules = rules.With(static_cast<Rule>(i));
    }
    return rules;
  }

  std::size_t Below(std::size_t limit) { return engine_() % limit; }

 private:
  std::mt19937 engine_{20240607};
};

}  // namespace qeo::notation

#endif  // PHONEME_TESTS_NOTATION_NORMALIZING_H_
