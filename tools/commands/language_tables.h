#ifndef TOOLS_COMMANDS_LANGUAGE_TABLES_H_
#define TOOLS_COMMANDS_LANGUAGE_TABLES_H_

// `phoneme phones` and `phoneme syllables`: the tables of a language, tab-separated. The first
// line names the columns and begins with "# "; "-" is an empty field.

#include <cstdint>
#include <string>

#include "phoneme/phoneme.h"

namespace qeo::tool {

/// The word for a phone type: in a language without syllables an initial is a consonant and a final
/// a vowel.
const char* TypeName(std::int32_t type, bool has_syllables);

/// Appends the phones of `language`, a registered one.
void AppendPhoneList(int language, std::string& out);

/// Appends the syllables of `language`, a registered one.
void AppendSyllableList(int language, std::string& out);

}  // namespace qeo::tool

#endif  // TOOLS_COMMANDS_LANGUAGE_TABLES_H_
