// Pinyin: the shared normaliser with the rules of Pinyin.

#include "notation/pinyin.h"

#include "notation/normalizer.h"

namespace qeo::notation {

Normalized NormalizePinyin(std::string_view text, RuleSet rules) {
  return internal::Normalize(internal::kPinyin, text, rules, nullptr);
}

}  // namespace qeo::notation
