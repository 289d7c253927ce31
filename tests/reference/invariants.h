#ifndef TESTS_REFERENCE_INVARIANTS_H_
#define TESTS_REFERENCE_INVARIANTS_H_

// What must hold for every result of notation, for any text and rules. The tests and the
// fuzz targets check the same, each by its own way to report a property that does not hold.

#include <string>

#include "notation/notation.h"

namespace qeo::sp::reference {

/// Is called for each property, by its name.
using Expect = void (*)(bool holds, const char* property);

/// Of NormalizePinyin and NormalizeJyutping: the text is in the library's notation and the library
/// reads it, in one with digits each run of letters as a syllable. Every byte of the input is at an
/// origin, in a range or a separator, and no letter or digit comes from a problem.
void ExpectSound(int language, const std::string& input, const notation::Normalized& result,
                 Expect expect);

/// Of ArpabetToPronunciation: every byte that is not white space is at an origin, a stress digit or
/// in one problem, and not in both.
void ExpectPlacedArpabet(const std::string& input, const notation::Normalized& result,
                         Expect expect);

/// Of PronunciationToArpabet: the same, where commas are separators too.
void ExpectPlacedPronunciation(const std::string& input, const notation::Normalized& result,
                               Expect expect);

/// Of Analyze: every byte of the text is in one syllable, separator or problem; in English it may
/// be in a syllable and a problem. A separator is one of the language, or what the punctuation rule
/// took. The syllables are the library's, and hints say what is there.
void ExpectSound(int language, const std::string& text, const notation::AnalysisOptions& options,
                 const notation::Analysis& analysis, Expect expect);

}  // namespace qeo::sp::reference

#endif  // TESTS_REFERENCE_INVARIANTS_H_
