#ifndef TOOLS_COMMANDS_PHONE_FEATURES_H_
#define TOOLS_COMMANDS_PHONE_FEATURES_H_

// The articulatory features of English phones in words.

#include <string>

#include "phoneme/phoneme.h"

namespace qeo::tool {

/// Returns the features of a phone in words: "fricative, glottal, voiceless"; nothing for a phone
/// that has none.
std::string FeatureWords(const sp::PhoneInfo& phone);

}  // namespace qeo::tool

#endif  // TOOLS_COMMANDS_PHONE_FEATURES_H_
