#include <phoneme/phoneme.h>

#include <iostream>

int main() {
  std::vector<qeo::sp::SyllableInfo> syllables;
  if (qeo::sp::py2ph(qeo::sp::LANGUAGE_MANDARIN, "ni3hao3", syllables) != 0) return 1;
  for (const auto& syllable : syllables) {
    std::cout << syllable.code << ':';
    for (const auto* phone : syllable.phones) std::cout << ' ' << phone->name;
    std::cout << ' ' << int{syllable.tone} << '\n';
  }
}
