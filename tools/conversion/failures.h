#ifndef TOOLS_CONVERSION_FAILURES_H_
#define TOOLS_CONVERSION_FAILURES_H_

// Why a text is not converted, in words.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/conversion/notations.h"

namespace qeo::tool {

/// Why a text was not converted.
struct Failure {
  std::string_view kind;  ///< one of a few constant names, to count failures by
  std::string message;    ///< one line, for the user
  /// The bytes of the text that it is about; none when they are not known.
  notation::Range place = {};
};

/// The bytes that a problem is about: of a syllable that is not read, what is wrong in it.
notation::Range PlaceOf(const notation::Problem& problem);

/// What a problem of a text in a notation is about, to follow its kind: "hoa3", perhaps "hao3".
std::string DetailOf(Notation from, const notation::Problem& problem, std::string_view text);

/// The failure of a text with these problems, at least one: about the first, and how many more.
Failure FailureOf(Notation from, const std::vector<notation::Problem>& problems,
                  std::string_view text);

/// More about a gap that `writer` has, to follow the syllable: ": mandarin tones are 1 to 5".
std::string DetailOf(const notation::Writer& writer, notation::Gap gap,
                     const sp::SyllableInfo& syllable);

/// The failure of a text that was read, of which `writer` cannot write all: about the first gap,
/// and how many more. Analyses the text again, for the places.
Failure GapFailure(const Conversion& conversion, const notation::Writer& writer,
                   std::string_view text);

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_FAILURES_H_
