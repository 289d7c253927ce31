// Pinyin: the shared normaliser with the rules of Pinyin.

#include "notation/pinyin.h"

#include "notation/normalizer.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {

Normalized NormalizePinyin(std::string_view text, RuleSet rules) {
  static constexpr internal::Notation kPinyin = {sp::LANGUAGE_MANDARIN, kPinyinRules, '5', true};
  return internal::Normalize(kPinyin, text, rules, nullptr);
}

}  // namespace qeo::notation
