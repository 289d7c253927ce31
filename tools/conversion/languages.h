#ifndef TOOLS_CONVERSION_LANGUAGES_H_
#define TOOLS_CONVERSION_LANGUAGES_H_

// The languages as the command line names them, and which one serves an id that the library does
// not know.

#include <optional>
#include <string>
#include <string_view>

#include "phoneme/phoneme.h"

namespace qeo::tool {

/// Reads a name or code of a language, see sp::LanguageOfName, or a decimal language id, known to
/// the library or not.
std::optional<int> ParseLanguage(std::string_view text);

/// Returns the name of a language id, or the id itself in decimal.
std::string LanguageName(int id);

// The library serves an id that it does not know with another language, and not with the same one
// everywhere.

/// The language that answers for syllables and their codes; none when `id` has no syllables.
std::optional<int> SyllableLanguage(int id);

/// The language whose phones are listed.
int PhoneLanguage(int id);

/// Returns a note for the user when `serving` stands in for `requested`.
std::optional<std::string> FallbackNote(int requested, int serving);

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_LANGUAGES_H_
