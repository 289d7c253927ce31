#ifndef TOOLS_COMMANDS_LEXICON_CHECK_H_
#define TOOLS_COMMANDS_LEXICON_CHECK_H_

// Checks a pronunciation lexicon, whose entries are a word and its phones, against the phone set
// of a language.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lexicon/lexicon.h"
#include "tools/report/findings.h"

namespace qeo::tool {

/// Checks the entries of one file. A phone is between blanks and may be followed by digits, its
/// tone or stress, and a comma; a digit may also be alone. Memory grows with the lexicon, for
/// finding duplicates.
class LexiconCheck {
 public:
  /// `ignores_case`: phones may be written in upper case.
  LexiconCheck(int language, bool ignores_case, FindingWriter& findings);

  /// Checks an entry of line `line`; `offset` is where its phones begin in the line.
  void Add(std::uint64_t line, std::size_t offset, const lexicon::Entry& entry);

  /// Notes the phones that have not occurred, silence aside. `line_count` is that of the file.
  void Finish(std::uint64_t line_count);

 private:
  std::string Known(std::string_view piece) const;
  void CheckPhone(std::uint64_t line, std::size_t offset, const std::string& name,
                  std::string_view written);

  FindingWriter& findings_;
  bool ignores_case_;
  std::vector<std::string> names_;                          // of the phones, in table order
  std::map<std::string, bool, std::less<>> seen_;           // by name
  std::unordered_map<std::string, std::uint64_t> entries_;  // word and phones to the first line
};

}  // namespace qeo::tool

#endif  // TOOLS_COMMANDS_LEXICON_CHECK_H_
