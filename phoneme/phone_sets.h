#ifndef PHONEME_PHONE_SETS_H_
#define PHONEME_PHONE_SETS_H_

/// What the library knows: the registered languages, the names by which people know them, their
/// tables, which language serves an unregistered id, and where the syllables of a romanised text
/// are. phoneme/phoneme.h includes it.
///
///   mandarin   zh  zho  zh-CN  cmn  cmn-CN
///   cantonese  yue  yue-HK  zh-HK
///   english    en  eng  en-US
///
/// A code is a BCP 47 tag or an ISO 639-3 code. The list has only codes of the speech that the
/// tables describe. "zh" covers all Chinese languages; without a region it is commonly Mandarin.
/// "zh-HK", the written Chinese of Hong Kong, is read aloud in Cantonese. A script does not
/// determine the speech, so "zh-Hans" and "zh-Hant" are absent; "zh-TW" and "en-GB" are absent
/// because these standards differ in pronunciation. To use the tables for them, name the language.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "phoneme/export.h"
#include "phoneme/records.h"

namespace qeo::sp {

/// A syllable code is the row of a syllable table * kTonesPerRow + tone.
inline constexpr int kTonesPerRow = 10;

/// In a phone-id sequence the bytes below this close a syllable, and a phone is its id plus this.
inline constexpr int kFirstPhoneByte = 10;

// Names

/// A registered language by its names, which are constant data of the library.
struct LanguageNames {
  std::int32_t id = 0;    ///< LANGUAGE_MANDARIN and so on
  std::string_view name;  ///< "mandarin": lower-case ASCII, one a language
  std::vector<std::string_view>
      codes;  ///< "zh", "zh-CN": as BCP 47 writes them, the shortest first
};

/// Returns the names of every registered language, in the order of their ids.
PHONEME_EXPORT std::vector<LanguageNames> Languages();

/// Returns the id of the language with this name or code; nothing for any other text.
///
///   LanguageOfName("Mandarin");  // LANGUAGE_MANDARIN
///   LanguageOfName("zh_hk");     // LANGUAGE_CANTONESE
///   LanguageOfName("10000");     // nothing: an id is not a name
///
/// Upper and lower case of ASCII letters are the same, and "_" is read as "-", as in the names of
/// locales. A code matches whole: "zh-CN-x-beijing" and "zh_CN.UTF-8" are not in the list.
PHONEME_EXPORT std::optional<std::int32_t> LanguageOfName(std::string_view name);

/// Returns all names and codes on one line, for messages: "mandarin (zh, zho, zh-CN, cmn, cmn-CN),
/// cantonese (yue, ...".
PHONEME_EXPORT std::string KnownLanguages();

// Tables

/// Returns the tables of a registered language: its phones and its syllables (none in American
/// English), in the order of their ids. Null for any other id.
///
///   const SpMapping* mandarin = FindPhoneSet(LANGUAGE_MANDARIN);
///   mandarin->pinyin_list[224].pinyin;  // "ni"; mandarin->pinyin_count rows
///
/// What it points to is read-only, and valid until the phone sets are freed at exit.
PHONEME_EXPORT const SpMapping* FindPhoneSet(int language);

/// Returns the highest tone that ToneAdaptation leaves as it is: 7 for Cantonese, 5 for every other
/// id. The lowest is 1.
PHONEME_EXPORT int TopTone(int language);

/// Returns the tones of a registered language: 1 to 5 of Mandarin, 1 to 6 of Cantonese, where the
/// library writes 7 for none, and the stresses 0 to 2 of American English. An unmarked syllable of
/// Mandarin has the neutral tone, 5, and an unmarked vowel of English the stress 0, so none is
/// without. For any other id those of American English, which serves its pronunciations.
PHONEME_EXPORT Tones TonesOf(int language);

/// The functions of phoneme/phoneme.h by the language that serves an unregistered id.
enum class Conversion : std::uint8_t {
  kSyllables,       ///< py2ph, py2code, pyw2py, ToneAdaptation, code2ph, code2py: Mandarin
  kPronunciations,  ///< pr2ph, ph2ph: American English
  kPhones,  ///< GetPhoneInfoById, GetPhoneInfoByDescription: American English for 20000 to 29999,
            ///< Mandarin for the rest
};

/// Returns the language whose tables a conversion uses for an id: the id itself when it is
/// registered.
///
///   ServingLanguage(Conversion::kPhones, 20001);  // LANGUAGE_AMERICAN_ENGLISH
PHONEME_EXPORT std::int32_t ServingLanguage(Conversion conversion, int language);

// Romanised text

/// Whether a byte separates the pieces of a romanised text, and is in none: ASCII white space, the
/// apostrophe and the grave accent.
constexpr bool IsSeparator(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r') || c == '\'' || c == '`';
}

/// A piece of a romanised text, as py2ph, py2code and pyw2py cut it.
struct TextPiece {
  std::size_t offset = 0;    ///< of its first byte in the text
  std::size_t length = 0;    ///< in bytes, with the digit that closes it
  std::int32_t row = -1;     ///< in the syllable table; negative when it is not a syllable
  std::int8_t raw_tone = 0;  ///< the closing digit of a syllable, not folded; 0 without one
};

/// Finds the pieces of a romanised text.
///
///   std::vector<TextPiece> pieces;
///   FindPieces(LANGUAGE_MANDARIN, "ni3 hoa3", pieces);  // {0, 3, 224, 3}, {4, 4, -1, 0}
///
/// `pieces` is emptied, then receives them in the order of pyw2py, whose strings they are: in text
/// order, or with `backward` the last one first in a run of letters that is cut. py2ph and py2code
/// fail when one is not a syllable. Bytes that are in no piece are separators, or letters that no
/// syllable was found for. An unregistered language is served by Mandarin. Cost is linear in the
/// text.
PHONEME_EXPORT void FindPieces(int language, std::string_view text, std::vector<TextPiece>& pieces,
                               bool backward = false);

}  // namespace qeo::sp

#endif  // PHONEME_PHONE_SETS_H_
