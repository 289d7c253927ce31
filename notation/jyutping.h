#ifndef NOTATION_JYUTPING_H_
#define NOTATION_JYUTPING_H_

/// Jyutping as dictionaries and corpora write it ("wan2gung1", "ai3"), to the notation that the
/// library reads ("wan2 gung1", "ngai3").

#include <string_view>

#include "notation/alias_table.h"
#include "notation/export.h"
#include "notation/records.h"

namespace qeo::notation {

/// The rules of NormalizeJyutping, all in use by default; kAlias does nothing without a table.
inline constexpr RuleSet kJyutpingRules = RuleSet()
                                              .With(Rule::kFullWidth)
                                              .With(Rule::kPunctuation)
                                              .With(Rule::kAbbreviation)
                                              .With(Rule::kGlued)
                                              .With(Rule::kAlias);

/// Converts Jyutping to the library's notation.
///
///   NormalizeJyutping("wan2gung1").text;            // "wan2 gung1"
///   NormalizeJyutping("nei5hou2，VQ6").text;        // "nei5 hou2"; .problems: foreign text
///   NormalizeJyutping("ai3", kJyutpingRules, &aliases).text;  // "ngai3"
///
/// `text` is UTF-8, one line or entry: whether it has tones is decided for all of it. In a text
/// with tone digits a run of letters is one syllable, with a digit or without. In a text without, a
/// run of letters stays one word, for the caller to cut (CutWhole), syllables or not; only a
/// syllable that an alias replaces is set apart. The result's `text` is small letters, tone digits
/// and single spaces; a space also takes the place of a problem.
///
/// The rules: kFullWidth, kPunctuation and kAbbreviation as NormalizePinyin has them (a syllable of
/// one capital with its digit is "M4"); kGlued, a space before a syllable that follows a digit
/// directly, reported with the bytes of that syllable; kAlias, a syllable that `aliases` has
/// replaced, known or not. `aliases` may be null.
///
/// The problems, their bytes left out of the text: kUnknownSyllable; kBadTone for a syllable with
/// the digit 0, 8 or 9 and for digits after the first (7, which code2py writes where there is no
/// tone, is read); kForeignText as with NormalizePinyin, thus also codes like "VQ6", words with
/// marks on letters, and foreign words; kInvalidUtf8.
///
/// No byte is lost, and the library reads the result, as with NormalizePinyin.
NOTATION_EXPORT Normalized NormalizeJyutping(std::string_view text, RuleSet rules = kJyutpingRules,
                                             const AliasTable* aliases = nullptr);

}  // namespace qeo::notation

#endif  // NOTATION_JYUTPING_H_
