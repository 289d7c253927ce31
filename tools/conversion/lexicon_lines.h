#ifndef TOOLS_CONVERSION_LEXICON_LINES_H_
#define TOOLS_CONVERSION_LEXICON_LINES_H_

// The lines of the files that lexicons come in: which part is the word, and which its
// pronunciation.

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/conversion/notations.h"

namespace qeo::tool {

enum class Format {
  kLines,    ///< the whole line is a pronunciation
  kTsv,      ///< one field of tab-separated fields; "# " begins a comment
  kCedict,   ///< TRADITIONAL SIMPLIFIED [pronunciation] /gloss/; "#" begins a comment
  kCmudict,  ///< WORD or WORD(2), pronunciation, "# comment"; ";;;" and "# " begin a comment
  kKaldi,    ///< WORD and pronunciation
};

inline constexpr Named<Format> kFormats[] = {
    {"lines", Format::kLines},     {"tsv", Format::kTsv},     {"cedict", Format::kCedict},
    {"cmudict", Format::kCmudict}, {"kaldi", Format::kKaldi},
};

/// Which of the two headwords of a CEDICT line is the word.
enum class Headword { kSimplified, kTraditional };

inline constexpr Named<Headword> kHeadwords[] = {
    {"simplified", Headword::kSimplified},
    {"traditional", Headword::kTraditional},
};

struct Layout {
  Format format = Format::kLines;
  std::size_t column = 0;  ///< the field with the pronunciation, counted from 1 (kTsv)
  Headword headword = Headword::kSimplified;

  /// Returns whether a line is an entry that begins with a word, and not just text.
  bool HasWords() const { return format != Format::kLines && format != Format::kTsv; }
};

enum class EntryKind { kEntry, kComment, kBroken };

/// A line as views into it.
struct Entry {
  EntryKind kind = EntryKind::kEntry;  ///< kComment also for an empty line of a format with words
  std::string_view word;               ///< where the format has words
  std::string_view text;               ///< the pronunciation
};

/// Reads a line without its end. A line is broken when it has no such field, or lacks the word or
/// the pronunciation that its format asks for.
Entry ReadEntry(const Layout& layout, std::string_view line);

/// What is wrong with a broken line of a layout.
std::string BrokenLineProblem(const Layout& layout);

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_LEXICON_LINES_H_
