#ifndef NOTATION_NORMALIZER_H_
#define NOTATION_NORMALIZER_H_

// The one way from romanised Chinese as it is written to the library's notation. What Pinyin and
// Jyutping do not share is a rule that only one of them uses. Not installed.

#include <string_view>

#include "notation/jyutping.h"
#include "notation/pinyin.h"
#include "notation/records.h"
#include "notation/syllable_sink.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {

/// What sets one notation of Chinese apart from the other.
struct ChineseNotation {
  int language = 0;
  RuleSet rules;               // those that it has
  char top_tone = '\0';        // the last digit that is a tone
  bool has_tone_zero = false;  // "0" is one too, the neutral tone
};

inline constexpr ChineseNotation kPinyin = {sp::LANGUAGE_MANDARIN, kPinyinRules, '5', true};
/// The library writes 7 for a syllable without a tone.
inline constexpr ChineseNotation kJyutping = {sp::LANGUAGE_CANTONESE, kJyutpingRules, '7', false};

/// Reads a text by `rules`, all of which the notation has, into a sink that has them too. `aliases`
/// may be null. With `are_words_syllables` a word of a text without tones is one syllable, and is
/// not cut in order to rewrite a part of it.
void Normalize(const ChineseNotation& notation, std::string_view text, RuleSet rules,
               const AliasTable* aliases, bool are_words_syllables, SyllableSink& sink);

}  // namespace qeo::notation::internal

#endif  // NOTATION_NORMALIZER_H_
