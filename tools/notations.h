#ifndef TOOLS_NOTATIONS_H_
#define TOOLS_NOTATIONS_H_

/// The notations that the tool reads and writes, and the pairs that make a conversion.

#include <string>
#include <string_view>

namespace qeo::tool {

enum class Source { kText, kCodes, kIds, kPronunciation };
enum class Target { kSyllables, kPhones, kCodes, kIds, kPronunciation };

template <typename Notation>
struct Named {
  const char* name;
  Notation notation;
};

inline constexpr Named<Source> kSources[] = {
    {"text", Source::kText},
    {"codes", Source::kCodes},
    {"ids", Source::kIds},
    {"pronunciation", Source::kPronunciation},
};

inline constexpr Named<Target> kTargets[] = {
    {"syllables", Target::kSyllables},
    {"phones", Target::kPhones},
    {"codes", Target::kCodes},
    {"ids", Target::kIds},
    {"pronunciation", Target::kPronunciation},
};

/// A byte of a phone-id sequence below this closes a syllable, any other is a phone's id plus this.
inline constexpr int kFirstPhoneByte = 10;

/// Tells whether the syllables of a notation have codes.
constexpr bool HasCodes(Source from) { return from == Source::kText || from == Source::kCodes; }

struct Conversion {
  int language;
  Source from;
  Target to;
};

/// What a language is read from when the user does not say: text, or pronunciation where the
/// language has no syllables.
Source DefaultSource(int language);

/// Returns why there is no such conversion, or an empty string when there is.
std::string ConversionProblem(const Conversion& conversion);

/// The language that the library converts with, another one for an id that it does not know.
int ServingLanguage(const Conversion& conversion);

}  // namespace qeo::tool

#endif  // TOOLS_NOTATIONS_H_
