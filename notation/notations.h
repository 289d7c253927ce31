#ifndef NOTATION_NOTATIONS_H_
#define NOTATION_NOTATIONS_H_

/// The notations that syllables are read from and written in, and what is known of each.

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "notation/export.h"
#include "notation/records.h"

namespace qeo::notation {

enum class Notation : std::uint8_t {
  kPinyin,         ///< "ni3hao3", "nǐhǎo", "nihao"
  kMarkedPinyin,   ///< "nǐ hǎo"; it is read as kPinyin
  kJyutping,       ///< "nei5 hou2"
  kArpabet,        ///< "HH AH0 L OW1"
  kText,           ///< romanised text as the library itself reads it, "ni3 hao3"
  kPhones,         ///< "n i h ao"
  kTonedPhones,    ///< "n i3 h ao3": the tone stands with the final or vowel
  kCodes,          ///< syllable codes in decimal, "2243 1173"
  kIds,            ///< phone-id bytes in decimal, "17 45 3 28 33 3"
  kPronunciation,  ///< "n i 3, h ao 3"
};
inline constexpr int kNotationCount = 10;

/// What is known of a notation.
struct NotationFacts {
  Notation notation = Notation::kText;
  std::string_view name;   ///< "toned-phones": as options write it
  std::string_view title;  ///< "Pinyin with tone marks": as messages do
  std::int32_t language;   ///< that it writes; 0 for one of every language
  /// Those that count when it is read, in use by default or not; none where the library itself
  /// reads it.
  RuleSet rules;
  bool has_codes;   ///< what is read has syllable codes, so the language needs a syllable table
  bool is_read;     ///< Analyze and Reader read it
  bool is_written;  ///< Writer writes it
};

/// What is known of each, in the order of the enumeration. Constant data.
NOTATION_EXPORT const NotationFacts& FactsOf(Notation notation);

/// All notations in that order.
NOTATION_EXPORT const std::array<Notation, kNotationCount>& AllNotations();

/// The notation of a name; nothing for any other text.
NOTATION_EXPORT std::optional<Notation> NotationOfName(std::string_view name);

/// What people write in a registered language: kPinyin, kJyutping or kArpabet. Nothing for any
/// other id.
NOTATION_EXPORT std::optional<Notation> OwnNotation(int language);

/// The language whose tables serve an id in a notation: that of the notation, if it has one of its
/// own.
NOTATION_EXPORT std::int32_t ServingLanguage(Notation notation, int language);

}  // namespace qeo::notation

#endif  // NOTATION_NOTATIONS_H_
