#ifndef PHONEME_PHONEME_H_
#define PHONEME_PHONEME_H_

/// phoneme: phone sets of Mandarin, Cantonese and American English, and the conversions between the
/// notations that a speech system passes around. This is the one header a caller includes.
///
/// What holds for every function:
///
/// - Text is bytes in ASCII notation. A NUL byte or a byte of 0x80 and above is a byte like any
///   other, neither letter nor separator, and no process locale changes a result. Phone names are
///   matched exactly, with upper and lower case distinct.
/// - A language is named by its id (LANGUAGE_MANDARIN, LANGUAGE_CANTONESE,
///   LANGUAGE_AMERICAN_ENGLISH); LanguageOfName finds the id of "mandarin" or "zh-HK".
///   An id that is not one of them is never an error: each function serves it with a fixed language
///   of its own, stated with the function.
/// - Functions that can fail return 0 on success and -1 on failure. An output container must not be
///   part of an input. Nothing is printed and nothing is thrown but the standard library's
///   allocation exceptions; the contents of a container that was being filled are then unspecified,
///   and it can be emptied, filled again or destroyed.
/// - Any number of threads may call any function at once, each with output containers of its own;
///   only the three Initialize...Set have conditions of their own, see there.
/// - The phone sets are ready before `main`, also for the static initialisers of other sources, and
///   are freed at exit: destructors that run after that may call none but ph2tp, GetPhoneFeature,
///   the lexicon functions, Languages, LanguageOfName and KnownLanguages.
/// - `PhoneInfo` pointers point into constant data of the library. They stay valid, also after the
///   phone sets are freed, until the shared library is unloaded; of a static library, as long as
///   the program or the plug-in that holds it.

#include <map>
#include <string>
#include <vector>

#include "phoneme/export.h"
#include "phoneme/phone_sets.h"
#include "phoneme/records.h"

namespace qeo::sp {

// Romanised Chinese text
//
// How text is cut into syllables: a digit closes the syllable before it, a capital opens one,
// and white space, "'" and "`" separate syllables. A run of letters that is not itself a
// syllable is cut by longest match, from the front or, with pyw2py's `backward`, from the end; what
// no match reaches is dropped without a failure ("hello" is "he"). A run that a digit closes is
// never cut ("nihao3" fails). A text without any digit, capital or separator is cut by longest
// match as a whole. The letter u with diaeresis is written "v".
//
// A tone is one digit at the end of a syllable, folded into the language's range by ToneAdaptation;
// a syllable without one has the top tone (5, in Cantonese 7).

/// Converts romanised text to syllables with phones.
///
///   std::vector<SyllableInfo> syllables;
///   py2ph(LANGUAGE_MANDARIN, "ni3hao3", syllables);  // 0; phones (n, i) and (h, ao)
///
/// `syllables` is emptied, then receives one record a syllable, in text order: `language` is the
/// language in use, `phones` holds the initial and then the final (none, one or both), `code` is
/// the syllable code, `tone` the folded tone, and `raw_tone` is 0. An unregistered language is
/// served by Mandarin.
///
/// Returns 0, also for a text without syllables, or -1 when a piece is not a syllable of the
/// language; `syllables` is then empty.
PHONEME_EXPORT int py2ph(int language, const std::string& text,
                         std::vector<SyllableInfo>& syllables);

/// Converts romanised text to syllable codes.
///
///   std::vector<unsigned short> codes;
///   py2code(LANGUAGE_MANDARIN, "ni3hao3", codes);  // 0; codes == {2243, 1173}
///
/// `codes` is emptied, then receives one code a syllable, in text order: row of the syllable table
/// * 10 + folded tone. An unregistered language is served by Mandarin.
///
/// Returns 0, also for a text without syllables, or -1 when a piece is not a syllable of the
/// language; `codes` is then empty.
PHONEME_EXPORT int py2code(int language, const std::string& text,
                           std::vector<unsigned short>& codes);

/// Cuts a romanised word into its syllables.
///
///   std::vector<std::string> syllables;
///   pyw2py(LANGUAGE_MANDARIN, "fangan", syllables, false);  // "fang", "an"
///   pyw2py(LANGUAGE_MANDARIN, "fangan", syllables, true);   // "gan", "fan"
///
/// `syllables` is emptied, then receives the pieces in lower case, tone digits still attached. With
/// `backward` true a run of letters is cut by longest suffix and its syllables come last one first;
/// runs between separators keep their order. Pieces are not checked: "xyz3" is passed on
/// unchanged. An unregistered language is served by Mandarin.
///
/// Returns 0 always; a word that cannot be cut leaves `syllables` empty or short.
PHONEME_EXPORT int pyw2py(int language, const std::string& word,
                          std::vector<std::string>& syllables, bool backward);

/// Folds a tone into the range of a language: 1 to 7 for Cantonese, 1 to 5 for every other id.
///
///   ToneAdaptation(LANGUAGE_MANDARIN, 6);  // 1
///   ToneAdaptation(LANGUAGE_MANDARIN, 0);  // 5
///
/// A tone in range is returned unchanged, any other as its remainder by the top of the range, where
/// remainder 0 becomes the top. The remainder keeps the sign: -8 gives -3 (Cantonese -1).
PHONEME_EXPORT signed char ToneAdaptation(int language, signed char tone);

// Syllable codes

/// Expands a syllable code into a syllable with phones.
///
///   SyllableInfo syllable;
///   code2ph(LANGUAGE_MANDARIN, 2243, syllable);  // 0; tone 3, phones (n, i)
///
/// `syllable` receives `code` and `tone` (the last decimal digit, not folded) in any case; on
/// success also `language`, after fallback, and the initial and final are appended to `phones`,
/// which is not emptied first. `raw_tone` is not touched. An unregistered language is served by
/// Mandarin.
///
/// Returns 0, or -1 when the language has no row code / 10; `language` and `phones` are then as
/// they were.
PHONEME_EXPORT int code2ph(int language, unsigned short code, SyllableInfo& syllable);

/// Spells a syllable code.
///
///   code2py(LANGUAGE_MANDARIN, 2243, true);   // "ni3"
///   code2py(LANGUAGE_MANDARIN, 2243, false);  // "ni"
///
/// With `with_tone` the last decimal digit is appended unchanged, 0 included. A code beyond the
/// table yields row 0 ("a", in Cantonese "aa"). An unregistered language is served by Mandarin,
/// then always with the tone digit. A language without syllables (American English) yields an empty
/// string.
PHONEME_EXPORT std::string code2py(int language, unsigned short code, bool with_tone);

// Pronunciation strings and phone-id sequences
//
// A pronunciation string is syllables separated by ","; a syllable is phone names and one closing
// digit, separated by single spaces ("hh ax 0, l ow 1"). Tabs, line ends and spaces around a
// syllable are ignored, and so are empty syllables. Any phone may be at any place, and the digit is
// taken as it is.
//
// A phone-id sequence is the same as bytes: 10 to 255 is the phone of id byte - 10, and 0 to 9
// closes a syllable and is its digit.

/// Parses a pronunciation string into syllables.
///
///   std::vector<SyllableInfo> syllables;
///   pr2ph(LANGUAGE_MANDARIN, "n i 3, h ao 3", syllables);  // 0; phones (n, i) and (h, ao)
///
/// `syllables` is emptied, then receives one record a syllable: `language` is the language in use,
/// `phones` the phones in order, `raw_tone` the digit; `code` and `tone` are 0. The Mandarin names
/// "E" and "ng", which no phone carries, give a null pointer. An unregistered language is served by
/// American English.
///
/// Returns 0, or -1. After an unknown phone or a last piece that is not one digit, `syllables` is
/// empty; after a syllable that is a single piece ("aa", "3") it keeps the syllables before it.
PHONEME_EXPORT int pr2ph(int language, const std::string& pronunciation,
                         std::vector<SyllableInfo>& syllables);

/// Parses a pronunciation string into a phone-id sequence.
///
///   std::vector<unsigned char> phone_ids;
///   pr2ph(LANGUAGE_MANDARIN, "n i 3, h ao 3", phone_ids);  // 0; {24, 35, 3, 28, 43, 3}
///
/// Bytes are appended to `phone_ids`, which is not emptied first. An unregistered language is
/// served by American English.
///
/// Returns 0, or -1. After an unknown phone (here also Mandarin "E" and "ng", which have no id) or
/// a last piece that is not one digit, `phone_ids` is empty, what the caller had put there
/// included; after a syllable that is a single piece ("aa", "3") it keeps all that was before
/// it.
PHONEME_EXPORT int pr2ph(int language, const std::string& pronunciation,
                         std::vector<unsigned char>& phone_ids);

/// Regroups a phone-id sequence into syllables.
///
///   std::vector<SyllableInfo> syllables;
///   ph2ph(LANGUAGE_MANDARIN, {24, 35, 3}, syllables);  // 0; phones (n, i), raw_tone 3
///
/// `syllables` is emptied, then receives one record for each closing byte: `language` is the
/// language in use, `phones` the phones since the last closing byte (none is allowed), `raw_tone`
/// the closing byte; `code` and `tone` are 0. Phones after the last closing byte are dropped. An
/// unregistered language is served by American English.
///
/// Returns 0, or -1 when a byte names no phone of the language; `syllables` is then empty.
PHONEME_EXPORT int ph2ph(int language, const std::vector<unsigned char>& phone_ids,
                         std::vector<SyllableInfo>& syllables);

/// Returns the kind of a byte of a phone-id sequence: 1 for a closing byte (0 to 9), 2 for a phone
/// (10 to 255). `language` is ignored and no table is read.
PHONEME_EXPORT int ph2tp(int language, unsigned char phone_id);

// Phones

/// Returns the phone of an id; row 0 ("sil") for an id outside the table, never null. The row is
/// valid until the shared library is unloaded.
///
/// An unregistered language is served by American English when its id is 20000 to 29999, else by
/// Mandarin.
PHONEME_EXPORT const PhoneInfo* GetPhoneInfoById(int language, int id);

/// Returns the phone of a name, the first row where two carry it (Mandarin "iou").
///
/// An unknown name yields row 0 ("sil"); the Mandarin names "E" and "ng", which syllables use and
/// no phone carries, yield null. The row is valid until the shared library is unloaded. An
/// unregistered language is served as by GetPhoneInfoById.
PHONEME_EXPORT const PhoneInfo* GetPhoneInfoByDescription(int language, const std::string& name);

/// Returns character `index` of a phone's feature string; NUL for a phone without one (all Chinese
/// phones) and for an index outside 0 to 7. `phone` must not be null.
///
///   position  0 '+' vowel, '-' other
///             1 vowel kind: l long, s short, d diphthong, a reduced
///             2 height: 1 high, 2 mid, 3 low      3 frontness: 1 front, 2 central, 3 back
///             4 rounding: + or -                  5 manner: s stop, a affricate, f fricative,
///                                                   l lateral, n nasal, r approximant (or "er")
///             6 place: l labial, b labiodental, d dental, a alveolar, p palatal, v velar,
///                                                   g glottal
///             7 voicing of a consonant: + or -
///
/// A position that does not apply holds '0', except that position 7 of silence is '-'.
PHONEME_EXPORT char GetPhoneFeature(const PhoneInfo* phone, int index);

// Lexicon phone classes: the numbers that a pronunciation lexicon stores. `phone` is a
// NUL-terminated name, not null. These functions serve no language in another's place.

/// Returns the phone type of an American English phone name; 0 for any other name.
PHONEME_EXPORT int LexiconEnPhoneTypeStr(const char* phone);

/// Returns the lexicon's number of an American English phone name, 50 ("sil") to 90 ("zh"); 255 for
/// any other name.
PHONEME_EXPORT int LexiconEnPhoneId(const char* phone);

/// Returns the lexicon's class of a phone name in a Chinese language: 0 for "sil" and "ssil", 2 for
/// any other phone of the language, initial or final, and 1 for a name the language does not have.
/// For every id but Mandarin and Cantonese: 0.
PHONEME_EXPORT int LexiconModulePhoneTypeStr(const char* phone, int language);

// Phone sets. The library runs these three once, at start-up, for its own registry; they are public
// so that tools can walk a language's tables.

/// Fills the Mandarin entry, 10000, of `table`: 61 phones, 417 syllables.
///
/// An entry that is there already is completed, not cleared. The rows and their phone pointers are
/// shared with the library: call it before other threads use the library, and for an entry that is
/// new or that it filled itself. The entry stays valid as long as `table`, and no longer than until
/// the shared library is unloaded.
PHONEME_EXPORT void InitializeMandarinSet(std::map<int, SpMapping>& table);

/// Fills the Cantonese entry, 10001, of `table`, as InitializeMandarinSet does: 95 phones, 619
/// syllables.
PHONEME_EXPORT void InitializeCantoneseSet(std::map<int, SpMapping>& table);

/// Fills the American English entry, 20000, of `table`: 41 phones, no syllables.
PHONEME_EXPORT void InitializeAmericanSet(std::map<int, SpMapping>& table);

}  // namespace qeo::sp

#endif  // PHONEME_PHONEME_H_
