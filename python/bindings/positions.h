#ifndef PYTHON_BINDINGS_POSITIONS_H_
#define PYTHON_BINDINGS_POSITIONS_H_

// Positions in a str, whose characters the library sees as UTF-8.

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace qeo::python {

constexpr bool BeginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }

/// How many characters begin in some bytes of a text.
inline std::size_t CharacterCount(std::string_view bytes) {
  return static_cast<std::size_t>(std::count_if(bytes.begin(), bytes.end(), BeginsCharacter));
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_POSITIONS_H_
