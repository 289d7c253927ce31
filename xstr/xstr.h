#ifndef XSTR_XSTR_H_
#define XSTR_XSTR_H_

/// String helpers that know nothing of speech.
///
/// Text is bytes: a NUL byte or a byte of 0x80 and above is a byte like any other, and no process
/// locale changes a result. All three are pure functions of their arguments, safe from any thread,
/// and throw nothing but the standard library's allocation exceptions (std::bad_alloc, and
/// std::length_error for a text beyond a container's maximum size).

#include <string>
#include <vector>

#include "xstr/export.h"

namespace qeo::xstr {

/// Strips the bytes that occur in `chars` from the ends of `text`.
///
///   trim("\t ni3 \n", "\t\r\n ", true);   // "ni3"
///   trim("\t ni3 \n", "\t\r\n ", false);  // "ni3 \n"
///
/// With `both_ends` false the front alone is stripped. A text made only of such bytes yields an
/// empty string; the order of `chars` does not matter, and an empty `chars` strips nothing.
XSTR_EXPORT std::string trim(const std::string& text, const std::string& chars, bool both_ends);

/// Cuts `text` at every occurrence of `separator`.
///
///   split("n i 3", " ", -1);  // "n", "i", "3"
///   split("a,,b", ",", -1);   // "a", "", "b"
///   split("a,b,c", ",", 2);   // "a", "b,c"
///
/// Returns the pieces in text order, without the separators. Occurrences are found from the front
/// and do not overlap. Empty pieces are kept, also at either end, so that n cuts make n + 1 pieces;
/// an empty `text` is one empty piece, and an empty `separator` cuts nothing. A positive
/// `max_parts` is the most pieces returned, the last of which holds the uncut rest; 0 and below
/// mean no limit.
XSTR_EXPORT std::vector<std::string> split(const std::string& text, const std::string& separator,
                                           int max_parts);

/// Writes `value` in `base`, 2 to 36.
///
///   to_u8s(7, 10);     // "7"
///   to_u8s(-255, 16);  // "-ff"
///
/// Digits above 9 are lower-case letters; a negative value has a leading minus in any base.
/// Returns an empty string for any other base.
XSTR_EXPORT std::string to_u8s(int value, int base);

}  // namespace qeo::xstr

#endif  // XSTR_XSTR_H_
