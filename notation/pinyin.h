#ifndef NOTATION_PINYIN_H_
#define NOTATION_PINYIN_H_

/// Pinyin as dictionaries, corpora and people write it ("Běijīng", "lu:4", "dianr3"), to the
/// notation that the library reads ("bei3 jing1", "lv4", "dian3 er5").

#include <string_view>

#include "notation/export.h"
#include "notation/records.h"

namespace qeo::notation {

/// The rules of NormalizePinyin, all in use by default.
inline constexpr RuleSet kPinyinRules = RuleSet()
                                            .With(Rule::kFullWidth)
                                            .With(Rule::kPunctuation)
                                            .With(Rule::kDiaeresis)
                                            .With(Rule::kToneMark)
                                            .With(Rule::kNeutralTone)
                                            .With(Rule::kErhua)
                                            .With(Rule::kFusedErhua)
                                            .With(Rule::kAbbreviation);

/// Converts Pinyin to the library's notation.
///
///   NormalizePinyin("Xī'ān, lu:4").text;   // "xi1 an1 lv4"
///   NormalizePinyin("yīdīngdiǎnr").text;   // "yi1 ding1 dian3 er5"
///   NormalizePinyin("san1 P").text;        // "san1"; .problems: foreign text {5, 1}
///
/// `text` is UTF-8 in any normalisation form, one line or entry: whether it has tones is decided
/// for all of it. The result's `text` is small letters, tone digits and single spaces. What is
/// written with a digit stays unchanged ("ni3hao3"); what is cut here is set apart by a space,
/// and so is what a capital opened ("NiHao") or what was around a problem.
///
/// The three kinds of text:
///
/// - With tone marks: a run of letters is cut so that each syllable has at most one mark, on a
///   vowel, or on m or n where it has none. Of all cuts that leave no letter out, the one of the
///   fewest syllables; then the one with the least that a rule rewrites; then the one of the least
///   cost, as CutWhole has it: above all the one that lacks the fewest apostrophes ("Hénán" is he
///   nan, "Hén'án" is hen an); then the one whose first syllable is the longest, and so on. An
///   apostrophe belongs before a, e, o and the syllables m, n and ng within a word. It may be
///   lacking where both syllables have a mark ("xīān") and before an er without a mark; elsewhere
///   there is no cut, so that an unknown syllable ("biáng") is not read as two. A syllable without
///   a mark has tone 5.
/// - With tone digits: a run of letters is one syllable.
/// - Without tones: a run of letters stays one word, for the caller to cut (CutWhole), syllables or
///   not. Only a syllable that a rule rewrites is set apart: "yidianr" is "yi dian er". Rewritten
///   is what the cut has that leaves out the fewest letters, and of those the one that the order
///   above finds ("xxdianr" is "xx dian er"). Letters that it leaves out, and that would be a
///   syllable by standing alone, are an unknown syllable (the m of "mdianr").
///
/// The rules; one that is not in `rules` leaves what it would change to the others or a problem:
///
/// - kFullWidth: full-width letters and digits, the full-width colon U+FF1A of "u:", raised and
///   lowered digits, and the Kelvin sign, which Unicode holds equal to K, to ASCII.
/// - kPunctuation: punctuation and spaces of all kinds, middle dots, apostrophes and invisible
///   format characters to a space. What the library takes for a separator (ASCII white space, "'",
///   "`") needs no rule. Signs that have a meaning (# % & * @ \ and symbols) are foreign text.
/// - kDiaeresis: u with diaeresis, and "u:" after j, l, n, q, x and y, to v; v after j, q, x and y
///   to u; the syllables lue and nue to lve and nve.
/// - kToneMark: macron, acute, caron (or breve) and grave on a, e, i, o, u, ü, v, m, n and ê to
///   digits; U+0251 to a and U+0261 to g; a syllable without a mark, in a text with marks, to 5.
///   The library has no notation for ê: it is an unknown syllable.
/// - kNeutralTone: the digit 0, and a syllable without a digit in a text with digits, to 5. Without
///   it they stay as they are, which the library reads in the same way.
/// - kErhua: an r alone, with tone 5, 0 or none, to er; and the r with tone 5 or 0 at the end of a
///   word with tone marks, "pǔr5" to "pu3 er5", unless a syllable er ends in it ("ér5").
/// - kFusedErhua: a syllable with r at its end that is not known, and is known without it and has
///   a vowel, to two: "nar4" to "na4 er5".
/// - kAbbreviation: two capitals or more in a row, and one alone, are reported as foreign text,
///   with the digits that follow ("PK", "MP3"). Not reported are capitals of which one has a mark,
///   and a syllable of one letter with its digit ("A1"). A small letter of full width that is alone
///   and has no digit is foreign text too, if the text has letters or digits of ASCII and besides
///   ASCII only such letters. Without this rule letters are read as such.
///
/// The problems; their bytes are left out of the text and a space takes their place:
///
/// - kUnknownSyllable: letters that are not a syllable ("xx5"), or that no cut covers.
/// - kBadTone: a syllable with a digit beyond 5, with a mark and a digit (but for the r of kErhua),
///   or r with 1 to 4; digits after the first ("ni33": the second 3).
/// - kForeignText: abbreviations, words with other Latin letters or marks, other scripts, symbols,
///   digits that follow no letter. Neighbours are one problem.
/// - kInvalidUtf8: bytes that are not UTF-8. Neighbours are one problem.
///
/// A tone digit that no digit of `text` is written for has the origin of the letter before it.
///
/// Every byte of `text` is in the result: at one of its `origins`, in the range of an application,
/// in the range of a problem, or it is a separator of the library. The library reads the result's
/// `text` without failure for any `rules`, and drops no letter of a text that has tones.
NOTATION_EXPORT Normalized NormalizePinyin(std::string_view text, RuleSet rules = kPinyinRules);

}  // namespace qeo::notation

#endif  // NOTATION_PINYIN_H_
