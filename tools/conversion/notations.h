#ifndef TOOLS_CONVERSION_NOTATIONS_H_
#define TOOLS_CONVERSION_NOTATIONS_H_

// The notations that the tool reads and writes, and the pairs that make a conversion.

#include <string>
#include <string_view>

#include "notation/notation.h"

namespace qeo::tool {

enum class Source { kPinyin, kJyutping, kArpabet, kText, kCodes, kIds, kPronunciation };
enum class Target {
  kSyllables,
  kPhones,
  kTonedPhones,
  kCodes,
  kIds,
  kPronunciation,
  kMarks,
  kArpabet,
  kJson,
  kTsv,
};

template <typename Meaning>
struct Named {
  const char* name;
  Meaning meaning;
};

inline constexpr Named<Source> kSources[] = {
    {"pinyin", Source::kPinyin},
    {"jyutping", Source::kJyutping},
    {"arpabet", Source::kArpabet},
    {"text", Source::kText},
    {"codes", Source::kCodes},
    {"ids", Source::kIds},
    {"pronunciation", Source::kPronunciation},
};

inline constexpr Named<Target> kTargets[] = {
    {"syllables", Target::kSyllables},
    {"phones", Target::kPhones},
    {"toned-phones", Target::kTonedPhones},
    {"codes", Target::kCodes},
    {"ids", Target::kIds},
    {"pronunciation", Target::kPronunciation},
    {"marks", Target::kMarks},
    {"arpabet", Target::kArpabet},
    {"json", Target::kJson},
    {"tsv", Target::kTsv},
};

inline constexpr Named<notation::Cutting> kCuttings[] = {
    {"whole", notation::Cutting::kWhole},
    {"forward", notation::Cutting::kForward},
    {"backward", notation::Cutting::kBackward},
    {"none", notation::Cutting::kNone},
};

/// Returns whether a notation is what people write, read by way of rules.
constexpr bool IsWritten(Source from) {
  return from == Source::kPinyin || from == Source::kJyutping || from == Source::kArpabet;
}

/// Returns whether the syllables of a notation have codes.
constexpr bool HasCodes(Source from) {
  return from == Source::kPinyin || from == Source::kJyutping || from == Source::kText ||
         from == Source::kCodes;
}

struct Conversion {
  int language = 0;
  Source from = Source::kText;
  Target to = Target::kSyllables;
  notation::AnalysisOptions reading = {};  // how a notation that people write is read
  bool is_strict = false;                  // what the library drops is dropped
  int default_tone = 0;                    // of a syllable without one; 0 leaves it so
};

/// The tone digits of a language, or for English its stress digits.
struct Tones {
  int language;
  const char* name;  ///< "tones" or "stresses"
  int first;
  int last;
  int none;  ///< the digit of a syllable that was read without a tone it needs; -1 for none
};

/// The tones of a registered language.
///
/// Cantonese text without tones has the digit 7. Elsewhere each digit that the library gives is a
/// tone: unmarked Mandarin has the neutral tone, 5, and a vowel without a stress has 0.
const Tones& TonesOf(int language);

/// What the tones of a language are, for messages: "mandarin tones are 1 to 5".
std::string DescribeTones(int language);

/// Reads the value of --default-tone. Throws UsageError when it is not a tone of the language, or
/// the language needs none.
int ParseDefaultTone(int language, std::string_view tone);

/// What a language is read from by default: what people write in it, or with
/// `strict` what the library itself reads.
Source DefaultSource(int language, bool strict);

/// Throws UsageError when texts of a language cannot be read from a notation.
void CheckSource(int language, Source from);

/// Throws UsageError when there is no such conversion.
void CheckConversion(const Conversion& conversion);

/// The language that the library converts with, another one for an id that it does not know.
int ServingLanguage(const Conversion& conversion);

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_NOTATIONS_H_
