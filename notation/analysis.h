#ifndef NOTATION_ANALYSIS_H_
#define NOTATION_ANALYSIS_H_

/// How a text is read, syllable by syllable, and everything in it that cannot be read: the
/// diagnosis of a line of a dictionary or a corpus.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "notation/arpabet.h"
#include "notation/cutting.h"
#include "notation/export.h"
#include "notation/jyutping.h"
#include "notation/notations.h"
#include "notation/pinyin.h"
#include "notation/records.h"
#include "phoneme/records.h"

namespace qeo::notation {

struct AnalysisOptions {
  /// The rules in use; those of other notations do nothing. Without any, and with
  /// Cutting::kForward, the library itself reads a text without problems in the same way, unless
  /// it has two capitals in a row ("MA3", which is "ma3" here).
  RuleSet rules = kPinyinRules.With(kJyutpingRules).With(kArpabetRules);
  const AliasTable* aliases = nullptr;  ///< for Jyutping, may be null
  Cutting cutting = Cutting::kWhole;    ///< of words without tones
  /// What the text is written in; nothing for OwnNotation. A text in a notation that is not read is
  /// one problem, kForeignText.
  std::optional<Notation> notation = std::nullopt;
  /// What the library drops without a failure is not a problem: letters of kText that no syllable
  /// is found for, phones of kIds that no byte closes.
  bool drops_silently = false;
  /// The tone of a syllable that was read without one, in a language that has a digit for that (1
  /// to 6 for Cantonese); 0 leaves it so. It is in `syllable`, not in `digit`.
  int default_tone = 0;
};

/// A syllable of a text.
struct AnalyzedSyllable {
  /// Its letters without tone as the library spells them, "lv"; for English the names of its phones
  /// with spaces between them, "hh ax".
  std::string spelling;
  char digit = '\0';  ///< its tone or stress digit in the library's notation; '\0' for none
  /// The bytes of the text that it was read from, tone included. For English also the blanks
  /// between its phones, and what could not be read among them.
  Range range;
  int row = -1;  ///< in the syllable table; -1 in a notation without codes, as ARPAbet
  /// As `py2ph` makes it: phones, code and tone; without a row as `pr2ph` does: phones and raw
  /// tone.
  sp::SyllableInfo syllable;
};

/// A text, read. Ranges are in text order and not empty; every byte of the text is in at least one
/// of a syllable, a separator or a problem.
struct Analysis {
  std::vector<AnalyzedSyllable> syllables;
  std::vector<Range> separators;  ///< white space, apostrophes and punctuation between syllables
  std::vector<Application> applied;
  std::vector<Problem> problems;  ///< all of them; empty when nothing is lost
};

/// Reads a text in one of the notations that are read: Pinyin as NormalizePinyin does, Jyutping as
/// NormalizeJyutping, ARPAbet as ArpabetToPronunciation, text as py2ph, codes as code2ph, ids as
/// ph2ph and pronunciations as pr2ph. What is not read is left out.
///
///   Analysis analysis = Analyze(sp::LANGUAGE_MANDARIN, "Nǐ hoa3");
///   // syllables: "ni", {0, 3}, code 2243; separators: {3, 1}
///   // problems: unknown syllable {4, 4}, suggestion "hao3"
///
/// A word of a text without tones is cut as the options say. Letters that its cut leaves out are a
/// problem of their own: kLettersLost, or kUnknownSyllable when the cut has no syllable. When
/// kWhole leaves out a Mandarin nasal (m, n, ng, hm, hng) after a syllable, the nasal is neither a
/// part of that syllable nor one by itself. Both are then one kUnknownSyllable, with all letters
/// left out after the nasal: "nun", "nunr". With kNone a word that is not one syllable is unknown.
/// The other kinds are described where the text is normalised. Unlike there, a problem of these two
/// kinds may have a hint about the piece of the text that is likely wrong. The first of these is
/// given:
///
/// - kAlias, in Cantonese: the alias table that is shipped (data/jyutping_aliases.tsv) has the
///   letters of the piece. With that table in `aliases` they are not a problem. The hint is given
///   for any `rules` and `aliases`. One letter within a word is an alias only where nothing
///   else is likelier.
/// - kGap: the letters are an initial and a final that syllables of the table have, but not
///   together ("lan" in Cantonese). Nothing is suggested.
/// - kSpelling: the syllable for which its frequency times the likeliness of the slip is the
///   greatest. A letter dropped, doubled or transposed with the next one and a key beside the right
///   one (QWERTY) are likely, any other key is rare. Not of one or two letters, which are near to
///   too many syllables. Two or more letters that are a syllable, of which only a mark is wrong
///   ("hań"), are meant for that syllable.
///
/// The piece is what has a digit; else the neighbouring letters, at most as many as one syllable
/// with a slip has, with which the word is read best ("yai" is cut ya, i; the hint is about "yai").
/// The suggestion has the tone of the piece when that is one of the language.
///
/// Without a notation an unregistered language is read as Mandarin, in Pinyin; in one of every
/// language the functions named above say who serves it. Time and memory are linear in the text.
NOTATION_EXPORT Analysis Analyze(int language, std::string_view text,
                                 const AnalysisOptions& options = {});

}  // namespace qeo::notation

#endif  // NOTATION_ANALYSIS_H_
