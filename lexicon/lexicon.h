#ifndef LEXICON_LEXICON_H_
#define LEXICON_LEXICON_H_

/// lexicon: from the files that lexicons come in to words and their pronunciations, line by line.
/// This is the one header a caller includes.
///
///   const Layout layout = {Format::kCedict};
///   for (std::string_view rest = WithoutByteOrderMark(content); !rest.empty();) {
///     const Entry entry = ReadEntry(layout, TakeLine(rest).text);
///     if (entry.kind == EntryKind::kEntry) Add(entry.word, entry.text);
///   }
///
/// Text is bytes of any value, and white space that of ASCII; no process locale changes a result.
/// Results are views into the text that was passed. All functions are pure, safe from any thread,
/// and linear in the text. They allocate nothing and throw nothing, but for BrokenLineProblem,
/// which makes a string.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "lexicon/export.h"

namespace qeo::lexicon {

/// What the lines of a file hold.
enum class Format : std::uint8_t {
  kLines,    ///< the whole line is a pronunciation, also an empty one
  kTsv,      ///< tab-separated fields, one of them a pronunciation; "# " begins a comment
  kCedict,   ///< TRADITIONAL SIMPLIFIED [pronunciation] /gloss/; "#" begins a comment
  kCmudict,  ///< WORD or WORD(2), pronunciation, "# comment"; ";;;" and "# " begin a comment
  kKaldi,    ///< WORD and pronunciation; no comments
};

/// Which of the two words of a CEDICT line is the entry's.
enum class Headword : std::uint8_t { kSimplified, kTraditional };

/// A name, as the tool's options and Python's arguments write it.
template <typename Meaning>
struct Named {
  const char* name;
  Meaning meaning;
};

inline constexpr Named<Format> kFormats[] = {
    {"lines", Format::kLines},     {"tsv", Format::kTsv},     {"cedict", Format::kCedict},
    {"cmudict", Format::kCmudict}, {"kaldi", Format::kKaldi},
};

inline constexpr Named<Headword> kHeadwords[] = {
    {"simplified", Headword::kSimplified},
    {"traditional", Headword::kTraditional},
};

/// The format of a name in kFormats; nothing for any other text.
LEXICON_EXPORT std::optional<Format> FormatOfName(std::string_view name);

/// The headword of a name in kHeadwords; nothing for any other text.
LEXICON_EXPORT std::optional<Headword> HeadwordOfName(std::string_view name);

/// Where in a line its word and its pronunciation are.
struct Layout {
  Format format = Format::kLines;
  /// kTsv: the field with the pronunciation, counted from 1. No line has a field 0.
  std::size_t column = 2;
  Headword headword = Headword::kSimplified;  ///< kCedict

  /// Returns whether an entry has a word besides its pronunciation.
  constexpr bool HasWords() const { return format != Format::kLines && format != Format::kTsv; }
};

enum class EntryKind : std::uint8_t {
  kEntry,    ///< has the word, in a format with words, and the pronunciation
  kComment,  ///< a comment; in a format with words also a line of nothing but white space
  kBroken,   ///< lacks the field of that number, or the word or the pronunciation
};

/// A line as views into it. One that is empty still points into the line or to its end.
struct Entry {
  EntryKind kind = EntryKind::kEntry;
  /// kEntry: the word, not empty, of a format with words, else empty. A variant number of kCmudict
  /// is left out. kComment: empty. kBroken: what is in the word's place, if anything.
  std::string_view word;
  /// kEntry: the pronunciation. In a format with words it is not empty and has no white space at
  /// its ends; else it is the field or the line as it is. kComment and kBroken: empty.
  std::string_view text;
};

/// Reads a line without its end.
///
///   ReadEntry({Format::kCedict}, "女兒 女儿 [nu:3 er2] /daughter/");  // kEntry; 女儿, "nu:3 er2"
///   ReadEntry({Format::kTsv}, "hello\tni3hao3\tA1");                 // kEntry; "", "ni3hao3"
///   ReadEntry({Format::kKaldi}, "hello");                            // kBroken; "hello", ""
///
/// White space ends a word, and may also begin and end a line of a format with words. The
/// pronunciation of kCedict is between a "[" that follows both words and the first "]" after it.
/// kCmudict is as ParseCmudictLine of notation/arpabet.h reads it.
LEXICON_EXPORT Entry ReadEntry(const Layout& layout, std::string_view line);

/// What a broken line of a layout lacks, for messages: "no column 2".
LEXICON_EXPORT std::string BrokenLineProblem(const Layout& layout);

/// A line of a text.
struct Line {
  std::string_view text;  ///< without its end
  std::string_view end;   ///< "\n" or "\r\n"; "\n" in static storage for a last line without one
};

/// Takes the first line off `text`, which is empty after its last line. A text that is empty gives
/// an empty line. A carriage return ends a line only together with the line feed after it.
LEXICON_EXPORT Line TakeLine(std::string_view& text);

/// The content of a file without the UTF-8 byte order mark that it may begin with, which is not
/// part of the first line.
LEXICON_EXPORT std::string_view WithoutByteOrderMark(std::string_view content);

}  // namespace qeo::lexicon

#endif  // LEXICON_LEXICON_H_
