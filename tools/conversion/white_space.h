#ifndef TOOLS_CONVERSION_WHITE_SPACE_H_
#define TOOLS_CONVERSION_WHITE_SPACE_H_

// Text between white space, and its place.

#include <cstddef>
#include <string_view>

#include "notation/records.h"
#include "phoneme/ascii.h"

namespace qeo::tool {

using ascii::TakeWord;
using ascii::Trim;

/// The place in `text` of a word that was taken from it.
inline notation::Range PlaceOf(std::string_view word, std::string_view text) {
  return {static_cast<std::size_t>(word.data() - text.data()), word.size()};
}

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_WHITE_SPACE_H_
