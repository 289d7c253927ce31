#ifndef PYTHON_BINDINGS_POSITIONS_H_
#define PYTHON_BINDINGS_POSITIONS_H_

// Positions in a str, whose characters the library sees as UTF-8.

#include <pybind11/pybind11.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "bindings/arguments.h"
#include "notation/records.h"

namespace qeo::python {

namespace py = pybind11;

constexpr bool BeginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }

/// How many characters begin in some bytes of a text.
inline std::size_t CharacterCount(std::string_view bytes) {
  return static_cast<std::size_t>(std::count_if(bytes.begin(), bytes.end(), BeginsCharacter));
}

/// A text as the library reads it, and the way from its bytes to positions in the caller's object:
/// characters of a str, bytes of bytes.
class Source {
 public:
  explicit Source(py::handle object) : text_(TextArgument(object.ptr())) {
    const bool is_bytes = PyBytes_Check(object.ptr()) != 0;
    if (is_bytes || PyUnicode_IS_ASCII(object.ptr())) return;
    positions_.reserve(text_.size() + 1);
    std::size_t characters = 0;
    for (const char c : text_) {
      if (BeginsCharacter(c)) ++characters;
      positions_.push_back(characters - 1);
    }
    positions_.push_back(characters);
  }

  const std::string& text() const { return text_; }

  /// The position of the character that a byte belongs to.
  std::size_t Position(std::size_t byte) const {
    return positions_.empty() ? byte : positions_[byte];
  }

  /// The positions where a range begins and ends.
  py::tuple Positions(const notation::Range& range) const {
    const std::size_t end = range.end();
    if (positions_.empty()) return py::make_tuple(range.offset, end);
    const std::size_t last = range.length == 0 ? end : end - 1;
    const std::size_t stop = positions_[last] + (range.length == 0 ? 0 : 1);
    return py::make_tuple(positions_[range.offset], stop);
  }

 private:
  std::string text_;
  std::vector<std::size_t> positions_;  // of each byte and the end; empty where they are the bytes
};

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_POSITIONS_H_
