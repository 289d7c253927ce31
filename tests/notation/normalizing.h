#ifndef PHONEME_TESTS_NOTATION_NORMALIZING_H_
#define PHONEME_TESTS_NOTATION_NORMALIZING_H_

// What the tests of the normalisers share: their results as plain text, random texts and rules, and
// the check of the invariants of tests/reference/.

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "notation/records.h"
#include "tests/reference/invariants.h"
#include "tests/testing.h"

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

// What must hold for every result. A failure shows the input.
inline void ExpectSound(int language, const std::string& input, const Normalized& result) {
  SCOPED_TRACE(testing::PrintToString(input) + " -> " + testing::PrintToString(result.text) +
               " applied " + Show(result.applied) + " problems " + Show(result.problems));
  sp::reference::ExpectSound(language, input, result, sp::ExpectHolds);
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
