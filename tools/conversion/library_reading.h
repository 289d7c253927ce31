#ifndef TOOLS_CONVERSION_LIBRARY_READING_H_
#define TOOLS_CONVERSION_LIBRARY_READING_H_

// How the library itself reads romanised text, without the rules of the notations: what stops it,
// and what it drops silently.

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "notation/records.h"

namespace qeo::tool {

/// Returns where the pieces are that the library reads in a text, which are its syllables when it
/// reads the text.
std::vector<notation::Range> PlacesOfPieces(int language, std::string_view text);

/// Counts the bytes of a text that are neither separators nor digits. When the library reads it and
/// drops nothing, these are the letters of its syllables.
std::size_t CountLetters(std::string_view text);

/// Returns the first piece of a text that is not a syllable, for which the library fails; nothing
/// when it reads the text.
///
///   UnknownPiece(sp::LANGUAGE_MANDARIN, "ni3 hoa3");  // {4, 4}, "hoa3"
std::optional<notation::Range> UnknownPiece(int language, std::string_view text);

/// Returns what the library drops from a text that it reads: the bytes between its syllables that
/// are not separators, one range a run, in text order.
///
///   LettersLost(sp::LANGUAGE_MANDARIN, "yipinguo");  // {6, 2}, "uo": the syllables are yi, ping
///   LettersLost(sp::LANGUAGE_MANDARIN, "san1 P");    // {5, 1}, "P"
std::vector<notation::Range> LettersLost(int language, std::string_view text);

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_LIBRARY_READING_H_
