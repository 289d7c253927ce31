#ifndef PHONEME_LANGUAGES_H_
#define PHONEME_LANGUAGES_H_

/// The registered languages and the names by which people know them, for programs that take a
/// language from a command line, a file or another program. phoneme/phoneme.h includes it.
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

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "phoneme/export.h"

namespace qeo::sp {

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

}  // namespace qeo::sp

#endif  // PHONEME_LANGUAGES_H_
