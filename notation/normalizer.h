#ifndef NOTATION_NORMALIZER_H_
#define NOTATION_NORMALIZER_H_

// The one way from romanised Chinese as it is written to the library's notation. What Pinyin and
// Jyutping do not share is a rule that only one of them uses. Not installed.

#include <string_view>

#include "notation/jyutping.h"
#include "notation/records.h"

namespace qeo::notation::internal {

/// What sets a notation apart from the others.
struct Notation {
  int language = 0;
  RuleSet rules;               // those that it has
  char top_tone = '\0';        // the last digit that is a tone
  bool has_tone_zero = false;  // "0" is one too, the neutral tone
};

/// Normalises a text by those of `rules` that the notation has. `aliases` may be null.
Normalized Normalize(const Notation& notation, std::string_view text, RuleSet rules,
                     const AliasTable* aliases);

}  // namespace qeo::notation::internal

#endif  // NOTATION_NORMALIZER_H_
