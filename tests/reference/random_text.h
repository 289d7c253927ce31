#ifndef TESTS_REFERENCE_RANDOM_TEXT_H_
#define TESTS_REFERENCE_RANDOM_TEXT_H_

// Random input for the conversions: well-formed text, text with a slip in it, and plain garbage.
// The same seed gives the same input with every compiler and standard library.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"

namespace qeo::sp::reference {

/// Language ids to ask with: the three registered ones, then ids that no language has, on both
/// sides of every border between the fallbacks.
inline constexpr int kLanguageIds[] = {
    LANGUAGE_MANDARIN,
    LANGUAGE_CANTONESE,
    LANGUAGE_AMERICAN_ENGLISH,
    10002,
    12345,
    19999,
    20005,
    29999,
    30000,
    0,
    -1,
    std::numeric_limits<int>::min(),
    std::numeric_limits<int>::max(),
};

/// A seeded source of input. Functions that take a language id, registered or not, write mostly,
/// not always, in the notation of the language that serves it.
class RandomText {
 public:
  explicit RandomText(std::uint64_t seed) : engine_(seed) {}

  /// One of 0 to `bound` - 1; `bound` is not 0.
  std::size_t Below(std::size_t bound);

  /// True `percent` times in a hundred.
  bool Chance(unsigned percent);

  /// One of kLanguageIds, two times in three a registered one.
  int LanguageId();

  /// A spelling of the language, Mandarin or Cantonese, without tone.
  std::string Syllable(int language);

  /// Syllables of the language, Mandarin or Cantonese, written together: "nihao", or with a tone
  /// from the language's range each, "ni3hao3".
  std::string PlainText(int language, std::size_t syllable_count, bool toned);

  /// A text for py2ph, py2code and pyw2py.
  std::string Romanised(int language);

  /// A pronunciation string for pr2ph.
  std::string Pronunciation(int language);

  /// A phone-id sequence for ph2ph.
  std::vector<unsigned char> PhoneIds(int language);

  /// A phone name, or something that looks like one.
  std::string PhoneName(int language);

 private:
  struct Style;

  template <typename T, std::size_t N>
  const T& Pick(const T (&values)[N]) {
    return values[Below(N)];
  }

  const Style& PickStyle();
  std::string Word(const Style& style, int language);
  std::string Digits();
  std::string Gap();
  std::string Noisy(const std::string& word, int language);
  std::string Noise(int language);
  std::string Edited(std::string text);
  std::string Capitalised(std::string word);
  std::string PronunciationToken(int language);
  std::string Spoilt(std::string token, int language);
  char Byte();

  std::mt19937_64 engine_;
};

}  // namespace qeo::sp::reference

#endif  // TESTS_REFERENCE_RANDOM_TEXT_H_
