#ifndef NOTATION_ALIAS_TABLE_H_
#define NOTATION_ALIAS_TABLE_H_

/// Spellings that people use for syllables of Jyutping ("ai" for "ngai"), read from a file.

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "notation/export.h"

namespace qeo::notation {

/// A line of an alias table that cannot be used.
struct AliasError {
  std::size_t line = 0;  ///< counted from 1
  /// The message for the user. It begins with `field` in double quotes when that is not empty.
  std::string message;
  std::string field;  ///< the field that is wrong, as it is in the line; empty for the whole line
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

}  // namespace qeo::notation

#endif  // NOTATION_ALIAS_TABLE_H_
