#ifndef TOOLS_CONVERSION_NOTATIONS_H_
#define TOOLS_CONVERSION_NOTATIONS_H_

// The notations that the tool reads and writes, and the pairs that make a conversion.

#include <string>
#include <string_view>
#include <vector>

#include "notation/notation.h"

namespace qeo::tool {

using notation::Notation;

/// Results as records for other programs, with all that is known.
enum class Records { kNone, kJson, kTsv };

/// What syllables become: text in a notation, or records, for which the notation is of no account.
struct Target {
  Notation notation = Notation::kText;
  Records records = Records::kNone;
};

template <typename Meaning>
struct Named {
  const char* name;
  Meaning meaning;
};

/// The notations that are read, by their names.
const std::vector<Named<Notation>>& Sources();

/// What can be written, those of every language first.
const std::vector<Named<Target>>& Targets();

inline constexpr Named<notation::Cutting> kCuttings[] = {
    {"whole", notation::Cutting::kWhole},
    {"forward", notation::Cutting::kForward},
    {"backward", notation::Cutting::kBackward},
    {"none", notation::Cutting::kNone},
};

/// Returns whether a notation that is read is what people write, read by way of rules.
inline bool IsWritten(Notation from) { return notation::FactsOf(from).language != 0; }

/// Returns whether the syllables of a notation have codes.
inline bool HasCodes(Notation from) { return notation::FactsOf(from).has_codes; }

struct Conversion {
  int language = 0;
  Target to;
  notation::AnalysisOptions reading;  // its notation is set

  Notation from() const { return *reading.notation; }
};

/// A writer of what a conversion reads.
notation::Writer WriterOf(const Conversion& conversion, Notation to);

/// What the tones of a language are, for messages: "mandarin tones are 1 to 5".
std::string DescribeTones(int language);

/// Reads the value of --default-tone. Throws UsageError when it is not a tone of the language, or
/// the language needs none.
int ParseDefaultTone(int language, std::string_view tone);

/// What a language is read from by default: what people write in it, or with
/// `strict` what the library itself reads.
Notation DefaultSource(int language, bool strict);

/// Throws UsageError when texts of a language cannot be read from a notation.
void CheckSource(int language, Notation from);

/// Throws UsageError when the target cannot be written from the source in the language.
void CheckConversion(const Conversion& conversion);

/// The language that the library converts with, another one for an id that it does not know.
int ServingLanguage(const Conversion& conversion);

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_NOTATIONS_H_
