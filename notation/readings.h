#ifndef NOTATION_READINGS_H_
#define NOTATION_READINGS_H_

// What letters stand for: a syllable as it is written, or one that a rule or an alias makes of
// them. Not installed.

#include <cstddef>
#include <cstdint>

#include "notation/alias_table.h"
#include "notation/records.h"
#include "notation/syllable_set.h"
#include "notation/word.h"

namespace qeo::notation::internal {

struct Reading {
  PackedSpelling spelling = 0;  // for the library; 0 when the letters are not a syllable
  std::int16_t row = SyllableSet::kNothing;  // of `spelling`
  bool is_lone_r = false;                    // "r" as "er"
  bool is_alias = false;
  bool is_respelled = false;  // "lue" as "lve"
  bool has_fused_r = false;   // after `spelling`, a syllable more
  std::uint8_t rarity = 0;    // of `spelling`

  bool IsKnown() const { return spelling != 0; }
  bool IsRewritten() const { return is_lone_r || is_alias || is_respelled || has_fused_r; }
};

/// Reads letters as syllables of a language.
class Readings {
 public:
  /// `aliases` may be null, and has to stay while this is used.
  Readings(int language, RuleSet rules, const AliasTable* aliases)
      : rules_(rules),
        aliases_(rules.Has(Rule::kAlias) ? aliases : nullptr),
        syllables_(SyllableSet::Of(language)) {}

  /// The row of letters that are a syllable as they are; negative when they are not a syllable, or
  /// when aliases are in use.
  int PlainRow(PackedSpelling letters) const {
    return aliases_ == nullptr ? syllables_.Find(letters).row : SyllableSet::kNothing;
  }

  /// Whether letters that begin no syllable may go on as one that an alias or a rule makes, but for
  /// one letter that a rule adds.
  bool MayGoOn(PackedSpelling letters) const { return aliases_ != nullptr || IsRespelled(letters); }

  /// Whether letters may be read as other ones, where `is_syllable` says whether they are one.
  bool MayRewrite(PackedSpelling letters, std::size_t count, bool is_syllable) const {
    const bool is_made = UnpackLetter(letters, count - 1) == 'r' || IsRespelled(letters);
    return aliases_ != nullptr || (!is_syllable && is_made);
  }

  /// Letters with others around them, where an r alone is not a syllable.
  Reading OfLetters(PackedSpelling letters, std::size_t count) const;

  /// A piece by itself, which may be a lone r.
  Reading OfPiece(const Word& word, Piece piece) const;

  /// Whether a cut of the piece may have syllables that are rewritten.
  bool MayRewrite(const Word& word, Piece piece) const;

 private:
  // Whether ue is written for ve.
  bool IsRespelled(PackedSpelling letters) const {
    const bool is_written = letters == Pack("lue") || letters == Pack("nue");
    return is_written && rules_.Has(Rule::kDiaeresis);
  }
  Reading Unfused(PackedSpelling letters, std::size_t count) const;

  RuleSet rules_;
  const AliasTable* aliases_;
  const SyllableSet& syllables_;
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_READINGS_H_
