#ifndef TESTS_REFERENCE_NORMALIZING_BYTES_H_
#define TESTS_REFERENCE_NORMALIZING_BYTES_H_

// Bytes, code points and problems, for the reference forms of the normalisers alone.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/reference/normalizing.h"

namespace qeo::sp::reference {

bool IsDigit(char c);
bool IsCapital(char c);
bool IsBlank(char c);
char Small(char c);

// A problem; text that is foreign, and bytes that are not UTF-8, are one problem with what touches
// them.
void Report(notation::ProblemKind kind, std::size_t begin, std::size_t end,
            std::vector<Misfit>& problems);

constexpr std::int32_t kNoCodePoint = -1;

struct CodePoint {
  std::int32_t value = kNoCodePoint;  // or kNoCodePoint, for one byte
  std::size_t begin = 0;
  std::size_t end = 0;
};

// The code point at `begin`: as many bytes as the first one says, in the shortest form, and no half
// of a surrogate pair.
CodePoint Decode(const std::string& text, std::size_t begin);

}  // namespace qeo::sp::reference

#endif  // TESTS_REFERENCE_NORMALIZING_BYTES_H_
