#ifndef FUZZ_NORMALIZING_H_
#define FUZZ_NORMALIZING_H_

// What must hold for every result of a normaliser of Chinese, whatever the text and the rules.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/fuzzing.h"
#include "notation/notation.h"
#include "phoneme/phoneme.h"
#include "tests/reference/normalizing.h"

namespace qeo::fuzzing {

inline bool IsWithin(notation::Range range, std::size_t offset) {
  return offset >= range.offset && offset - range.offset < range.length;
}

template <typename Record>
bool IsWithinAny(const std::vector<Record>& records, std::size_t offset) {
  return std::any_of(records.begin(), records.end(),
                     [&](const Record& record) { return IsWithin(record.range, offset); });
}

inline bool IsSmallLetter(char c) { return c >= 'a' && c <= 'z'; }
inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }
inline bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

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

template <typename Record>
void ExpectRangesInOrder(std::size_t size, const std::vector<Record>& records) {
  std::size_t last = 0;
  for (const Record& record : records) {
    Expect(record.range.offset >= last, "ranges are in text order");
    Expect(record.range.length > 0, "ranges are not empty");
    Expect(record.range.offset < size && record.range.length <= size - record.range.offset,
           "ranges are in the text");
    last = record.range.offset;
  }
}

/// Small letters, digits that close them, and single spaces between them.
inline void ExpectNotation(const std::string& text) {
  char last = ' ';
  for (const char c : text) {
    Expect(IsSmallLetter(c) || (IsDigit(c) && IsSmallLetter(last)) || (c == ' ' && last != ' '),
           "the text is in the library's notation");
    last = c;
  }
  Expect(text.empty() || last != ' ', "the text does not end in a space");
}

inline void ExpectOrigins(const std::string& input, const notation::Normalized& result) {
  Expect(result.origins.size() == result.text.size(), "each byte has an origin");
  Expect(std::is_sorted(result.origins.begin(), result.origins.end()), "origins never fall");
  for (std::size_t i = 0; i < result.text.size(); ++i) {
    Expect(result.origins[i] < input.size(), "an origin is in the input");
    Expect(result.text[i] == ' ' || !IsWithinAny(result.problems, result.origins[i]),
           "nothing comes from a problem");
  }
}

inline void ExpectOwners(const std::string& input, const notation::Normalized& result) {
  for (std::size_t i = 0; i < input.size(); ++i) {
    const bool is_separator = IsBlank(input[i]) || input[i] == '\'' || input[i] == '`';
    const bool is_origin = std::binary_search(result.origins.begin(), result.origins.end(), i);
    Expect(is_separator || is_origin || IsWithinAny(result.applied, i) ||
               IsWithinAny(result.problems, i),
           "no byte is lost");
  }
}

/// The library reads the text; in one with digits each run of letters is a syllable.
inline void ExpectLibraryReads(int language, const std::string& text) {
  std::vector<unsigned short> codes;
  Expect(sp::py2code(language, text, codes) == 0, "the library reads the text");
  if (std::none_of(text.begin(), text.end(), IsDigit)) return;
  std::size_t runs = 0;
  char last = ' ';
  for (const char c : text) {
    if (IsSmallLetter(c) && !IsSmallLetter(last)) ++runs;
    last = c;
  }
  Expect(codes.size() == runs, "each run of letters is a syllable");
}

inline void ExpectSound(int language, const std::string& input,
                        const notation::Normalized& result) {
  ExpectRangesInOrder(input.size(), result.applied);
  ExpectRangesInOrder(input.size(), result.problems);
  ExpectNotation(result.text);
  ExpectOrigins(input, result);
  ExpectOwners(input, result);
  ExpectLibraryReads(language, result.text);
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

/// With full-width digits, which are read on another path than ASCII ones.
inline std::string WithFullWidthDigits(const std::string& text) {
  std::string wide;
  for (const char c : text) {
    if (IsDigit(c)) {
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
