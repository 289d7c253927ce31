#ifndef FUZZ_NORMALIZING_H_
#define FUZZ_NORMALIZING_H_

// What the targets of the normalisers share besides the invariants of tests/reference/.

#include <optional>
#include <string>

#include "fuzz/fuzzing.h"
#include "notation/notation.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"
#include "tests/reference/invariants.h"
#include "tests/reference/normalizing.h"

namespace qeo::fuzzing {

/// A set of rules: mostly the usual ones, else one bit a rule.
inline notation::RuleSet ChooseRules(Input& input, notation::RuleSet usual) {
  if (input.Choose(4) != 0) return usual;
  const int bits = input.TakeInt();
  notation::RuleSet rules;
  for (int i = 0; i < notation::kRuleCount; ++i) {
    const auto rule = static_cast<notation::Rule>(i);
    if ((static_cast<unsigned>(bits) >> static_cast<unsigned>(i) & 1U) != 0) {
      rules = rules.With(rule);
    }
  }
  return rules;
}

/// What the reference form makes of the input, if it models it.
inline void ExpectReference(const notation::Normalized& result,
                            const std::optional<sp::reference::Reading>& expected) {
  Expect(!expected || sp::reference::Same(result, *expected),
         "text and problems are the reference's");
}

/// Of a result's own text, normalised again.
inline void ExpectNothingMoreToDo(const std::string& text, const notation::Normalized& again) {
  Expect(again.text == text, "normalised again it is the same");
  Expect(again.applied.empty(), "no rule is applied again");
  Expect(again.problems.empty(), "there is no problem left");
}

// Whether a text may have small letters of full width. One alone is foreign where nothing else is
// beyond ASCII, which digits of full width are.
inline bool MayHaveWideLetters(const std::string& text) {
  return text.find("\xef\xbd") != std::string::npos;
}

/// With full-width digits, which are read on another path than ASCII ones.
inline std::string WithFullWidthDigits(const std::string& text) {
  std::string wide;
  for (const char c : text) {
    if (ascii::IsDigit(c)) {
      wide += "\xEF\xBC";
      wide += static_cast<char>('\x90' + (c - '0'));
    } else {
      wide += c;
    }
  }
  return wide;
}

}  // namespace qeo::fuzzing

#endif  // FUZZ_NORMALIZING_H_
