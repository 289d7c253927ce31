#ifndef NOTATION_JYUTPING_H_
#define NOTATION_JYUTPING_H_

/// Jyutping as dictionaries and corpora write it ("wan2gung1", "ai3"), to the notation that the
/// library reads ("wan2 gung1", "ngai3").

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

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

/// A line of an alias table that cannot be used.
struct AliasError {
  std::size_t line = 0;  ///< counted from 1
  /// What is wrong, for people; begins with `field`, if that is not empty, in double quotes.
  std::string message;
  std::string field;  ///< the field that is wrong, as the line has it; empty when it is the line
};

struct ParsedAliases;

/// Spellings and the Jyutping syllables that replace them.
class AliasTable {
 public:
  /// Longest spelling that can be replaced, in letters.
  static constexpr std::size_t kMaxLength = 8;

  /// Reads a table: one alias a line, the spelling, a tab and the syllable that replaces it.
  ///
  ///   AliasTable::Parse("# lazy sounds\nni\tnei\n").table.Find("ni");  // "nei"
  ///
  /// Empty lines and lines that begin with "#" are left out; a line may end with CR LF, and the
  /// text may begin with a byte order mark. Spellings are small letters without tones.
  ///
  /// A line is an error, and has no place in the table, when it is not two fields, when a field is
  /// not a spelling of 1 to kMaxLength letters, when the second is not a syllable of Jyutping, or
  /// when the first is in an earlier line. `errors` lists all of them in order.
  NOTATION_EXPORT static ParsedAliases Parse(std::string_view text);

  /// The syllable that replaces `spelling`, or an empty text.
  NOTATION_EXPORT std::string_view Find(std::string_view spelling) const;

  /// Number of aliases.
  std::size_t size() const { return aliases_.size(); }
  bool empty() const { return aliases_.empty(); }

 private:
  std::map<std::string, std::string, std::less<>> aliases_;
};

/// What AliasTable::Parse returns.
struct ParsedAliases {
  AliasTable table;
  std::vector<AliasError> errors;  ///< empty when the text is right
};

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
