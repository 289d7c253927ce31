#ifndef NOTATION_SPELLING_H_
#define NOTATION_SPELLING_H_

/// From syllables back to what people write: tone-marked Pinyin, Jyutping and pronunciation
/// strings. What is written here reads back as the same syllables.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "notation/export.h"
#include "phoneme/records.h"

namespace qeo::notation {

/// What is written between the syllables of a text.
enum class Spacing : std::uint8_t {
  kWord,   ///< nothing, as in a word: "nǐhǎo", "nei5hou2"
  kSpace,  ///< a space: "nǐ hǎo", "nei5 hou2"
};

/// Syllables as text.
struct Spelling {
  std::string text;  ///< UTF-8 in form NFC; empty when a syllable cannot be written
  std::optional<std::size_t> unwritable;  ///< the index of the first syllable that cannot
};

/// Writes Mandarin syllables as Pinyin with tone marks.
///
///   std::vector<unsigned short> codes;
///   sp::py2code(sp::LANGUAGE_MANDARIN, "nv3 er2", codes);
///   MarkedPinyin(codes, Spacing::kWord).text;   // "nǚ'ér"
///   MarkedPinyin(codes, Spacing::kSpace).text;  // "nǚ ér"
///
/// The mark is on a or e, in "ou" on the o, and otherwise on the last vowel; in syllables
/// without a vowel on m or n ("ńg", "hm̀"). Tone 5 has no mark. Where no letter with the mark exists
/// ("n̄", "ê̌"), a combining mark follows the letter. The library's v is "ü" and its E is "ê".
///
/// Inside a word an apostrophe is written before a syllable that begins with a, e or o, and also
/// before "m", "n" and "ng", so that a word can be cut in one way only: "xī'n" is not "xīn".
/// NormalizePinyin reads the text back, but for "ê", which the library's notation cannot name, and
/// a word without any mark, which it leaves to be cut.
///
/// A code that `py2code` does not make cannot be written: its row is not in the table, or its tone
/// is not 1 to 5.
NOTATION_EXPORT Spelling MarkedPinyin(const std::vector<unsigned short>& codes, Spacing spacing);

/// As above, from the codes of records as `py2ph` and `code2ph` make them. A record of another
/// language cannot be written, nor one without a code, as `pr2ph` and `ph2ph` make it: phones do
/// not determine their syllable ("yo" and "you" sound alike).
NOTATION_EXPORT Spelling MarkedPinyin(const std::vector<sp::SyllableInfo>& syllables,
                                      Spacing spacing);

/// Writes Cantonese syllables as Jyutping with tone digits.
///
///   std::vector<unsigned short> codes;
///   sp::py2code(sp::LANGUAGE_CANTONESE, "nei5hou2", codes);
///   Jyutping(codes, Spacing::kSpace).text;  // "nei5 hou2"
///
/// Every digit is written, also 7, the tone of a syllable that was read without one; so words need
/// nothing between their syllables. A code that `py2code` does not make cannot be written: its row
/// is not in the table, or its tone is not 1 to 7.
NOTATION_EXPORT Spelling Jyutping(const std::vector<unsigned short>& codes, Spacing spacing);

/// As above, from the codes of records, with the limits of MarkedPinyin.
NOTATION_EXPORT Spelling Jyutping(const std::vector<sp::SyllableInfo>& syllables, Spacing spacing);

/// Writes syllables of any language as a pronunciation string, for `pr2ph` to read back.
///
///   std::vector<sp::SyllableInfo> syllables;
///   sp::py2ph(sp::LANGUAGE_MANDARIN, "ni3hao3", syllables);
///   PronunciationString(syllables).text;  // "n i 3, h ao 3"
///
/// The digit is `tone`, which `py2ph` and `code2ph` fill, or when that is 0 `raw_tone`, which
/// `pr2ph` and `ph2ph` fill. `pr2ph` reads back the same phones in the language of the phones, and
/// the digit as `raw_tone`. (Mandarin phone 36 reads back as 35: both are named "iou".)
///
/// Cannot be written: a syllable without phones (Mandarin "E" and "ng", as `py2ph` reads them) or
/// with a null phone (the names "E" and "ng", as `pr2ph` reads them); a phone of another language
/// than the first phone's; and a digit that is not 0 to 9.
NOTATION_EXPORT Spelling PronunciationString(const std::vector<sp::SyllableInfo>& syllables);

}  // namespace qeo::notation

#endif  // NOTATION_SPELLING_H_
