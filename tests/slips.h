#ifndef PHONEME_TESTS_SLIPS_H_
#define PHONEME_TESTS_SLIPS_H_

// Slips of the keyboard, at random: what the suggestions are measured on.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include "notation/keyboard.h"

namespace qeo {

class Slips {
 public:
  explicit Slips(std::uint32_t seed) : engine_(seed) {}

  // The same on every platform; that small remainders are a little likelier does not show.
  std::size_t Below(std::size_t limit) { return engine_() % limit; }

  // `spelling` with one slip: a letter dropped, doubled, transposed with the next one or another
  // key hit beside its own, each kind and each place equally likely. That two equal letters or the
  // only one are transposed changes nothing.
  std::string Slip(std::string_view spelling) {
    std::string text(spelling);
    const std::size_t kind = Below(4);
    if (kind == 2) {
      if (text.size() > 1) Transpose(Below(text.size() - 1), text);
      return text;
    }
    const std::size_t at = Below(text.size());
    if (kind == 0) text.erase(at, 1);
    if (kind == 1) text.insert(at, 1, text[at]);
    if (kind == 3) {
      const std::string_view beside = notation::internal::KeysBeside(text[at]);
      text[at] = beside[Below(beside.size())];
    }
    return text;
  }

 private:
  static void Transpose(std::size_t at, std::string& text) { std::swap(text[at], text[at + 1]); }

  std::mt19937 engine_;
};

}  // namespace qeo

#endif  // PHONEME_TESTS_SLIPS_H_
