#ifndef NOTATION_CUTTING_H_
#define NOTATION_CUTTING_H_

/// Cuts words that are written without separators and tones ("yipinguo") so that every letter finds
/// its syllable, where the library's longest match may drop some ("yi", "ping").

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "notation/export.h"
#include "notation/records.h"

namespace qeo::notation {

/// One syllable of a cut.
struct CutSyllable {
  Range range;  ///< its letters in the text
  int row = 0;  ///< its row in the syllable table of the language
};

/// How a word without tones is cut.
enum class Cutting : std::uint8_t {
  kWhole,     ///< so that every letter finds its syllable, if that can be (CutWhole)
  kForward,   ///< the longest syllable from the front, again and again
  kBackward,  ///< the longest syllable from the end, again and again
  kNone,      ///< not at all: each word is one syllable, or is left out
};

/// `Cut::count` when there are this many cuts or more.
inline constexpr std::uint64_t kUncountedCuts = std::numeric_limits<std::uint64_t>::max();

/// How a text can be cut into syllables.
struct Cut {
  bool covers = false;  ///< whether a cut exists that covers every byte of the text
  /// The best cut, in text order: the one that leaves the fewest letters out (none when `covers`);
  /// of those the one of the fewest syllables; of those the one of the least cost; and of those the
  /// one which, where they first differ, has the longer syllable. There a letter that is left out
  /// counts as a syllable of no letters.
  std::vector<CutSyllable> syllables;
  std::uint64_t count = 0;  ///< cuts that cover every byte, or kUncountedCuts
  /// The first of those cuts, the best first: in the order that picks `syllables`.
  std::vector<std::vector<CutSyllable>> cuts;
  /// Whether the longest match from the front and the one from the end, as `pyw2py` makes them,
  /// give other syllables.
  bool directions_differ = false;
};

/// Cuts a text of letters into syllables of a language.
///
///   Cut cut = CutWhole(sp::LANGUAGE_MANDARIN, "yipinguo");
///   // cut.covers; cut.syllables: {0, 2} "yi", {2, 3} "pin", {5, 3} "guo"
///   CutWhole(sp::LANGUAGE_MANDARIN, "xian", 2).cuts;  // "xian"; "xi", "an"; .count is 2
///
/// The cost of a cut is the sum of its syllables' costs. A syllable costs how rare it is: in
/// sixteenths of a bit, as scripts/rarities counts it in real words. It costs more within a word
/// when it begins with a, e or o or is m, n or ng: 2 bits in Cantonese, and in Mandarin, whose
/// orthography writes an apostrophe there, more than all rarities of the text together. "keneng" is
/// thus "ke", "neng".
///
/// In Mandarin m, n, ng, hm and hng are syllables only as whole words: "nun" is not "nu", "n". A
/// word begins with the text, with a capital, and after a byte that is not a letter, and ends
/// before the next one or such a byte.
///
/// Letters are read as the library reads them: a capital is its small letter and opens a syllable,
/// so "XiAn" is cut only between "Xi" and "An". (The Mandarin syllable "E" is thus never found.) No
/// syllable holds any other byte: a text with a digit, a separator or a byte of 0x80 and above in
/// it is not covered, those bytes are left out like letters that fit nowhere, and its directions
/// are not compared. The empty text is covered by one cut, of no syllables.
///
/// At most `max_cuts` cuts are listed in `cuts`. An unregistered language is served by Mandarin; in
/// a language without syllables (American English) nothing but the empty text is covered.
///
/// Time and memory are linear in the text, for any `count`; with `max_cuts`, in the text times
/// the number of cuts listed.
NOTATION_EXPORT Cut CutWhole(int language, std::string_view letters, std::size_t max_cuts = 0);

/// The syllables of a text of letters in text order, cut in one of the four ways.
///
///   CutLetters(sp::LANGUAGE_MANDARIN, "yipinguo", Cutting::kForward);  // "yi", "ping"
///
/// kWhole gives what CutWhole has in `syllables`. kForward and kBackward give what `pyw2py` gives
/// for the text followed by a space: what is after the last longest match, or before it, up to the
/// next capital, is left out, and a nasal alone is a syllable anywhere ("nu", "n"). kNone gives the
/// words of the text, as CutWhole has them, that are syllables. Text, language and cost are as with
/// CutWhole; in the longest matches a byte that is not a letter is left out like a letter that fits
/// nowhere.
NOTATION_EXPORT std::vector<CutSyllable> CutLetters(int language, std::string_view letters,
                                                    Cutting cutting);

}  // namespace qeo::notation

#endif  // NOTATION_CUTTING_H_
