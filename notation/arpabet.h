#ifndef NOTATION_ARPABET_H_
#define NOTATION_ARPABET_H_

/// ARPAbet as pronunciation dictionaries of English write it ("HH AH0 L OW1"), to the library's
/// pronunciation string ("hh ax 0, l ow 1") and back, and the lines of such a dictionary.

#include <cstdint>
#include <string_view>

#include "notation/export.h"
#include "notation/records.h"

namespace qeo::notation {

/// What ArpabetToPronunciation does by default. Rule::kSecondStress is not in it: the library
/// keeps the digit 2, and folded it could not be brought back.
inline constexpr RuleSet kArpabetRules =
    RuleSet().With(Rule::kLowerCase).With(Rule::kReducedVowel).With(Rule::kMissingStress);

/// Converts the pronunciation of one word from ARPAbet to a pronunciation string.
///
///   ArpabetToPronunciation("HH AH0 L OW1").text;  // "hh ax 0, l ow 1"
///   ArpabetToPronunciation("T S UW0").text;       // "t 0, s uw 0"
///   ArpabetToPronunciation("HH M").text;          // "hh m 0"
///
/// `phones` is phone names separated by ASCII white space, a vowel with its stress digit 0 to 2 or
/// without. Each vowel makes a syllable and gives it the digit. Consonants between two vowels are
/// cut by maximal onset: the second syllable takes as many as may begin an English syllable, also
/// at the beginning of a word, where those that are left make a syllable without a vowel. That and
/// a word without a vowel have the digit 0.
///
/// The rules that count are kLowerCase, kReducedVowel ("AH0" alone, not an "AH" without digit),
/// kSecondStress and kMissingStress; they are listed in `applied` as they are used.
///
/// A problem and what is done about it:
///
/// - kUnknownPhone, kInvalidUtf8: a name that the library does not have, in upper case too when
///   kLowerCase is off. It is left out of the text.
/// - kBadTone: digits other than 0 to 2, or any after a consonant. The phone is read without them.
///   Without kMissingStress, also a vowel without a digit. It is left out of the text.
///
/// `text` always parses as American English. A digit in it that follows the consonants of its
/// syllable, a blank and a comma have the origin of the byte before them.
NOTATION_EXPORT Normalized ArpabetToPronunciation(std::string_view phones,
                                                  RuleSet rules = kArpabetRules);

/// Converts a pronunciation string of American English to ARPAbet.
///
///   PronunciationToArpabet("hh ax 0, l ow 1").text;  // "HH AH0 L OW1"
///
/// The first vowel of a syllable carries its digit, a further one none; where a syllable without a
/// vowel has the digit 0 there is nothing to write. "ax 0" is AH0, and so is "ah 0"; "ax" with
/// another digit stays AX. `applied` is empty: nothing of this can be switched.
///
/// A problem, and what is done about it:
///
/// - kUnknownPhone, kInvalidUtf8: a name that the library does not have. It is left out of the
/// text.
/// - kBadTone: a digit that is not a stress, 3 to 9, or any but 0 in a syllable without a vowel.
///   The phones are written without it. Also a syllable that does not close with a digit. It is
///   left out of the text.
///
/// What ArpabetToPronunciation made of phones without a problem comes back as it was, in upper case
/// with single blanks, but for "AX0" (AH0), stress that kSecondStress folded and digits that
/// kMissingStress added.
NOTATION_EXPORT Normalized PronunciationToArpabet(std::string_view pronunciation);

enum class CmudictLineKind : std::uint8_t { kEntry, kComment, kBlank };

/// A line of a dictionary in the CMU format, as views into it. A view that is empty still points
/// into the line or to its end.
struct CmudictLine {
  CmudictLineKind kind = CmudictLineKind::kBlank;
  std::string_view word;     ///< without its variant number; empty when the line is not an entry
  int variant = 0;           ///< 2 for "word(2)", 0 when none is written
  std::string_view phones;   ///< what is between the word and the comment
  std::string_view comment;  ///< from its "#" or ";;;" on, or empty
};

/// Reads a line of a dictionary in the CMU format.
///
///   ParseCmudictLine("dail(2) D OY1 L # org, irish");
///   // kEntry; "dail", 2, "D OY1 L", "# org, irish"
///
/// A line that begins with ";;;", or with "#" and white space, is a comment. In an entry the word
/// ends at the first white space, and a comment begins at the first "#" after white space; a "#"
/// that begins the word belongs to it. A variant number has no leading zero and at most nine
/// digits; else the parenthesis belongs to the word. White space around each part is left out, and
/// with it the end of the line.
NOTATION_EXPORT CmudictLine ParseCmudictLine(std::string_view line);

}  // namespace qeo::notation

#endif  // NOTATION_ARPABET_H_
