#ifndef PHONEME_TESTS_REFERENCE_SUGGESTING_H_
#define PHONEME_TESTS_REFERENCE_SUGGESTING_H_

// What misspelt letters were meant to be, by trying every slip of every letter.

#include <string>

namespace qeo::sp::reference {

/// The hint about small letters that are not a syllable of Mandarin or Cantonese, aliases left out:
/// "hao", "gap l+an" or nothing.
std::string Suggest(int language, const std::string& letters);

}  // namespace qeo::sp::reference

#endif  // PHONEME_TESTS_REFERENCE_SUGGESTING_H_
