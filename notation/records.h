#ifndef NOTATION_RECORDS_H_
#define NOTATION_RECORDS_H_

/// What the functions of qeo::notation take and return: rules that can be switched, the record of
/// where each was applied, and the problems that were found. Offsets and lengths are bytes of the
/// text that the caller passed in.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "notation/export.h"

namespace qeo::notation {

/// A change that a normaliser makes to what dictionaries and corpora write.
enum class Rule : std::uint8_t {
  kFullWidth,      ///< full-width letters and digits to ASCII
  kPunctuation,    ///< middle dots, commas and other punctuation to a space
  kDiaeresis,      ///< "u:", u with diaeresis, "lue" and "nue" to v (Pinyin)
  kToneMark,       ///< tone marks to digits; unmarked among marked to 5 (Pinyin)
  kNeutralTone,    ///< tone 0 or none to the neutral tone (Pinyin)
  kErhua,          ///< "r5" to "er5", also after a word with tone marks (Pinyin)
  kFusedErhua,     ///< "dianr3" to "dian3 er5" (Pinyin)
  kAbbreviation,   ///< abbreviations and lone full-width letters kept apart and reported
  kGlued,          ///< a space between glued syllables, "wan2gung1" (Jyutping)
  kAlias,          ///< a spelling replaced by its entry in an alias table (Jyutping)
  kLowerCase,      ///< phone names to lower case (ARPAbet)
  kReducedVowel,   ///< AH0 to ax (ARPAbet)
  kSecondStress,   ///< stress 2 folded to 1 (ARPAbet)
  kMissingStress,  ///< a vowel without a stress digit read as 0 (ARPAbet)
};
inline constexpr int kRuleCount = 14;

/// The name of a rule as options and reports write it: "tone-mark".
NOTATION_EXPORT std::string_view RuleName(Rule rule);

/// A set of rules.
class RuleSet {
 public:
  constexpr RuleSet() = default;

  constexpr bool Has(Rule rule) const { return (bits_ & Bit(rule)) != 0; }
  constexpr RuleSet With(Rule rule) const { return RuleSet(bits_ | Bit(rule)); }
  constexpr RuleSet With(RuleSet rules) const { return RuleSet(bits_ | rules.bits_); }
  constexpr RuleSet Without(Rule rule) const { return RuleSet(bits_ & ~Bit(rule)); }
  /// Those that are in both sets.
  constexpr RuleSet Common(RuleSet rules) const { return RuleSet(bits_ & rules.bits_); }

 private:
  explicit constexpr RuleSet(std::uint32_t bits) : bits_(bits) {}
  static constexpr std::uint32_t Bit(Rule rule) {
    return std::uint32_t{1} << static_cast<unsigned>(rule);
  }

  std::uint32_t bits_ = 0;
};

/// Bytes of a text.
struct Range {
  std::size_t offset = 0;
  std::size_t length = 0;

  constexpr std::size_t end() const { return offset + length; }
};

/// One application of a rule, and the bytes of the input that it changed.
struct Application {
  Rule rule = Rule::kFullWidth;
  Range range;
};

enum class ProblemKind : std::uint8_t {
  kUnknownSyllable,
  kLettersLost,
  kBadTone,
  kForeignText,
  kUnknownPhone,
  kInvalidUtf8,
  kUnknownCode,     ///< not a syllable code, or beyond the table
  kUnknownPhoneId,  ///< not a byte of a phone-id sequence
  kPhonesLost,      ///< phones that no byte closes
};
inline constexpr int kProblemKindCount = 9;

/// The name of a kind of problem as messages write it: "unknown syllable".
NOTATION_EXPORT std::string_view ProblemName(ProblemKind kind);

/// What a problem's hint is.
enum class Hint : std::uint8_t {
  kNone,
  kSpelling,  ///< `suggestion` is one slip of the keyboard away
  kAlias,     ///< `suggestion` is what the alias table that is shipped gives (Jyutping)
  kGap,       ///< `initial` and `final` exist, but not together
};

/// The name of a hint as reports write it: "spelling"; empty for kNone.
NOTATION_EXPORT std::string_view HintName(Hint hint);

/// Bytes of the input that could not be placed.
struct Problem {
  ProblemKind kind = ProblemKind::kForeignText;
  Range range;
  /// What may have been meant, as the library writes it: a phone, or from Analyze a syllable, with
  /// its tone digit where that is one of the language. Empty but for kSpelling and kAlias.
  std::string suggestion;
  Hint hint = Hint::kNone;
  /// The bytes that the hint is about, those that `suggestion` may replace. More than `range` where
  /// that has only the letters that a cut leaves out ("i" of "yai"), less where that has several
  /// syllables ("yái" of "yáichái"). Empty without a hint, but in a syllable of ids or of a
  /// pronunciation that is not read: there it is what is wrong, and `range` the whole syllable.
  Range piece = {};
  /// kGap: "l" and "an" of "lan", in static storage; else empty.
  std::string_view initial = {};
  std::string_view final = {};
};

/// What a notation cannot express of a syllable.
enum class Gap : std::uint8_t {
  kNone,
  kNoPhones,          ///< a syllable of ids or of a pronunciation without any
  kMissingPhone,      ///< its row names an initial or final that the phone set does not have
  kNoTone,            ///< it was read without a tone, which its language needs
  kBadTone,           ///< its digit is not a tone of its language
  kToneWithoutFinal,  ///< it has no final or vowel to carry the tone
  kManyFinals,        ///< it has more than one, of which only the first would have the tone
  kNoSpelling,        ///< the name of its row is not read back, as "E" of Mandarin
};

/// The name of a kind of gap as messages write it: "missing phone". Those of a tone that cannot be
/// written are all "bad tone"; empty for kNone.
NOTATION_EXPORT std::string_view GapName(Gap gap);

/// A text in the library's notation, and how it was made.
struct Normalized {
  std::string text;
  /// For each byte of `text`, where in the input it comes from: the offset of the byte, or of the
  /// first byte of what a rule changed. Never decreases from one byte to the next.
  std::vector<std::size_t> origins;
  std::vector<Application> applied;  ///< in input order
  std::vector<Problem> problems;     ///< in input order; empty when all was placed
};

}  // namespace qeo::notation

#endif  // NOTATION_RECORDS_H_
