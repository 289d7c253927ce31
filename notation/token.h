#ifndef NOTATION_TOKEN_H_
#define NOTATION_TOKEN_H_

// Text between white space. Not installed.

#include <cstddef>
#include <string_view>

#include "notation/records.h"
#include "phoneme/ascii.h"

namespace qeo::notation::internal {

/// The first run of bytes from `begin` on, before `end`, that are not white space; of length 0 at
/// `end` when there is none.
inline Range NextToken(std::string_view text, std::size_t begin, std::size_t end) {
  while (begin < end && ascii::IsBlank(text[begin])) ++begin;
  std::size_t token_end = begin;
  while (token_end < end && !ascii::IsBlank(text[token_end])) ++token_end;
  return {begin, token_end - begin};
}

/// The bytes of a range.
inline std::string_view BytesOf(std::string_view text, Range range) {
  return text.substr(range.offset, range.length);
}

}  // namespace qeo::notation::internal

#endif  // NOTATION_TOKEN_H_
