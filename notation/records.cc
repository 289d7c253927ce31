#include "notation/records.h"

namespace qeo::notation {

std::string_view RuleName(Rule rule) {
  switch (rule) {
    case Rule::kFullWidth:
      return "full-width";
    case Rule::kPunctuation:
      return "punctuation";
    case Rule::kDiaeresis:
      return "diaeresis";
    case Rule::kToneMark:
      return "tone-mark";
    case Rule::kNeutralTone:
      return "neutral-tone";
    case Rule::kErhua:
      return "erhua";
    case Rule::kFusedErhua:
      return "fused-erhua";
    case Rule::kAbbreviation:
      return "abbreviation";
    case Rule::kGlued:
      return "glued";
    case Rule::kAlias:
      return "alias";
    case Rule::kLowerCase:
      return "lower-case";
    case Rule::kReducedVowel:
      return "reduced-vowel";
    case Rule::kSecondStress:
      return "second-stress";
    case Rule::kMissingStress:
      return "missing-stress";
  }
  return {};
}

std::string_view ProblemName(ProblemKind kind) {
  switch (kind) {
    case ProblemKind::kUnknownSyllable:
      return "unknown syllable";
    case ProblemKind::kLettersLost:
      return "letters lost";
    case ProblemKind::kBadTone:
      return "bad tone";
    case ProblemKind::kForeignText:
      return "foreign text";
    case ProblemKind::kUnknownPhone:
      return "unknown phone";
    case ProblemKind::kInvalidUtf8:
      return "invalid UTF-8";
  }
  return {};
}

std::string_view HintName(Hint hint) {
  switch (hint) {
    case Hint::kNone:
      return {};
    case Hint::kSpelling:
      return "spelling";
    case Hint::kAlias:
      return "alias";
    case Hint::kGap:
      return "gap";
  }
  return {};
}

}  // namespace qeo::notation
