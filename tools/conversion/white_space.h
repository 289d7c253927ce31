#ifndef TOOLS_CONVERSION_WHITE_SPACE_H_
#define TOOLS_CONVERSION_WHITE_SPACE_H_

// Text between white space.

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "notation/records.h"
#include "phoneme/ascii.h"

namespace qeo::tool {

/// A text without white space at its ends.
inline std::string_view Trim(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(ascii::kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(ascii::kBlanks) + 1);
}

/// Takes the next word of `text`, with the white space around it, off its front; an empty word when
/// there is none.
inline std::string_view TakeWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(ascii::kBlanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(ascii::kBlanks));
  text.remove_prefix(word.size());
  text.remove_prefix(std::min(text.find_first_not_of(ascii::kBlanks), text.size()));
  return word;
}

/// The place in `text` of a word that was taken from it.
inline notation::Range PlaceOf(std::string_view word, std::string_view text) {
  return {static_cast<std::size_t>(word.data() - text.data()), word.size()};
}

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_WHITE_SPACE_H_
