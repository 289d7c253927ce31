#ifndef TESTS_REFERENCE_NORMALIZING_H_
#define TESTS_REFERENCE_NORMALIZING_H_

// A second implementation of the normalisers, simple and slow: each rule over a list of characters,
// and every cut of a word tried. The tests and the fuzz targets compare the library with it.

#include <optional>
#include <string>
#include <vector>

#include "notation/jyutping.h"
#include "notation/records.h"

namespace qeo::sp::reference {

/// Bytes that could not be placed, without a suggestion.
struct Misfit {
  notation::ProblemKind kind;
  notation::Range range;
};

/// What a normaliser makes of a text.
struct Reading {
  std::string text;
  std::vector<Misfit> problems;  // in input order
};

// Text and problems are those of the functions of the same name in notation/. There are none for a
// text with a word of more than kMostLettersToCut letters, or too many words, that are to be cut,
// since all cuts are tried.

inline constexpr std::size_t kMostLettersToCut = 16;

std::optional<Reading> NormalizePinyin(const std::string& text, notation::RuleSet rules);
std::optional<Reading> NormalizeJyutping(const std::string& text, notation::RuleSet rules,
                                         const notation::AliasTable* aliases);
Reading ArpabetToPronunciation(const std::string& phones, notation::RuleSet rules);
Reading PronunciationToArpabet(const std::string& pronunciation);

/// Whether the library's result has the text and the problems of the reference.
bool Same(const notation::Normalized& result, const Reading& reading);

/// "ni3 hao3" | unknown syllable 4+3, as a failure message shows it.
std::string Show(const notation::Normalized& result);
std::string Show(const Reading& reading);

}  // namespace qeo::sp::reference

#endif  // TESTS_REFERENCE_NORMALIZING_H_
