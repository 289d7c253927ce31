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
    case ProblemKind::kUnknownCode:
      return "unknown syllable code";
    case ProblemKind::kUnknownPhoneId:
      return "unknown phone-id byte";
    case ProblemKind::kPhonesLost:
      return "phones lost";
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

std::string_view GapName(Gap gap) {
  switch (gap) {
    case Gap::kNone:
      return {};
    case Gap::kNoPhones:
      return "no phones";
    case Gap::kMissingPhone:
      return "missing phone";
    case Gap::kNoTone:
      return "no tone";
    case Gap::kNoSpelling:
      return "no spelling";
    case Gap::kBadTone:
    case Gap::kToneWithoutFinal:
    case Gap::kManyFinals:
      return ProblemName(ProblemKind::kBadTone);
  }
  return {};
}

}  // namespace qeo::notation
