#ifndef TESTS_REFERENCE_COMPARE_H_
#define TESTS_REFERENCE_COMPARE_H_

// How two outputs are compared, and how inputs and outputs are written in a failure message: text
// as a C++ literal and bytes as an initialiser, ready to be pasted into a test.

#include <string>
#include <vector>

#include "phoneme/phoneme.h"

namespace qeo::sp::reference {

/// Whether two outputs agree in every field. Phones are compared as rows, since two rows may share
/// a name.
bool Same(const SyllableInfo& a, const SyllableInfo& b);
bool Same(const std::vector<SyllableInfo>& a, const std::vector<SyllableInfo>& b);

template <typename T>
bool Same(const std::vector<T>& a, const std::vector<T>& b) {
  return a == b;
}

std::string Show(int number);
std::string Show(const std::string& text);  // "ni\0003"s
std::string Show(const SyllableInfo& syllable);

template <typename T>
std::string Show(const std::vector<T>& values) {
  std::string shown;
  for (const T& value : values) {
    if (!shown.empty()) shown += ", ";
    shown += Show(value);
  }
  return '{' + shown + '}';
}

}  // namespace qeo::sp::reference

#endif  // TESTS_REFERENCE_COMPARE_H_
