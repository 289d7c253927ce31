#ifndef TOOLS_INVENTORY_H_
#define TOOLS_INVENTORY_H_

/// `phoneme phones` and `phoneme syllables`: the tables of a language, tab-separated. The first
/// line names the columns and begins with "# "; "-" stands for an empty field.

#include <string>

namespace qeo::tool {

/// Appends the phones of `language`, one of kLanguages.
void AppendPhoneList(int language, std::string& out);

/// Appends the syllables of `language`, one of kLanguages.
void AppendSyllableList(int language, std::string& out);

}  // namespace qeo::tool

#endif  // TOOLS_INVENTORY_H_
