#ifndef NOTATION_NOTATION_TABLE_H_
#define NOTATION_NOTATION_TABLE_H_

// The one table of notations: a row has what is known of one, and the functions that read and write
// it. A new notation is a source with these functions, and a row. Not installed.

#include <string>
#include <string_view>
#include <vector>

#include "notation/notations.h"
#include "notation/records.h"
#include "phoneme/records.h"

namespace qeo::notation {

struct Analysis;
struct AnalysisOptions;
struct AnalyzedSyllable;

namespace internal {

/// Reads a text into syllables, applied rules and problems, without separators. `language` is the
/// one that serves.
using ReadFunction = Analysis (*)(int language, std::string_view text,
                                  const AnalysisOptions& options);

/// For a notation that is not read: the whole text is a problem.
Analysis ReadNothing(int language, std::string_view text, const AnalysisOptions& options);
Analysis ReadPinyin(int language, std::string_view text, const AnalysisOptions& options);
Analysis ReadJyutping(int language, std::string_view text, const AnalysisOptions& options);
Analysis ReadArpabet(int language, std::string_view text, const AnalysisOptions& options);
Analysis ReadText(int language, std::string_view text, const AnalysisOptions& options);
Analysis ReadCodes(int language, std::string_view text, const AnalysisOptions& options);
Analysis ReadIds(int language, std::string_view text, const AnalysisOptions& options);
Analysis ReadPronunciation(int language, std::string_view text, const AnalysisOptions& options);

/// Fills the record of a syllable that has a row. `digit` is '\0' for none.
void SetSyllable(int language, const sp::SpMapping& set, int row, char digit, Range range,
                 AnalyzedSyllable& syllable);

/// Reads codes or ids, numbers between white space, without their places. Returns false when one is
/// not a code of the language, or not a byte.
bool ParseCodes(int language, std::string_view text, std::vector<unsigned short>& codes);
bool ParseIds(std::string_view text, std::vector<unsigned char>& phone_ids);

/// Gives a syllable without a tone that its language needs another one.
void TakeDefaultTone(int default_tone, sp::SyllableInfo& syllable);

/// What decides whether a notation can express a syllable.
struct SyllableTraits {
  Gap phone_gap = Gap::kNone;    // kNoPhones or kMissingPhone
  Gap tone_gap = Gap::kNone;     // kNoTone or kBadTone
  bool takes_any_digit = false;  // the tone is bad, and may be
  bool has_spelling = true;
  bool needs_no_tone = false;  // it has none, and nothing that carries one
  bool can_carry_tone = false;
  bool has_many_finals = false;
};

using GapFunction = Gap (*)(const SyllableTraits& syllable);

/// Appends a syllable without a gap, and what comes between it and the next.
using AppendFunction = void (*)(const sp::SyllableInfo& syllable, std::string& out);

struct NotationRow {
  NotationFacts facts;
  ReadFunction read = nullptr;
  GapFunction find_gap = nullptr;   // null when it is not written
  AppendFunction append = nullptr;  // the same
};

Gap GapInText(const SyllableTraits& syllable);
Gap GapInMarks(const SyllableTraits& syllable);
Gap GapInPhones(const SyllableTraits& syllable);
Gap GapInTonedPhones(const SyllableTraits& syllable);
Gap GapInCodes(const SyllableTraits& syllable);
Gap GapInIds(const SyllableTraits& syllable);
Gap GapInPronunciation(const SyllableTraits& syllable);

void AppendText(const sp::SyllableInfo& syllable, std::string& out);
void AppendMarks(const sp::SyllableInfo& syllable, std::string& out);
void AppendPhones(const sp::SyllableInfo& syllable, std::string& out);
void AppendTonedPhones(const sp::SyllableInfo& syllable, std::string& out);
void AppendArpabet(const sp::SyllableInfo& syllable, std::string& out);
void AppendCode(const sp::SyllableInfo& syllable, std::string& out);
void AppendIds(const sp::SyllableInfo& syllable, std::string& out);
void AppendPronunciation(const sp::SyllableInfo& syllable, std::string& out);

const NotationRow& RowOf(Notation notation);

/// The first name of a row of the syllable table that is not a phone, or null.
inline const char* MissingName(const sp::PinyinInfo& row) {
  if (row.initial[0] != '\0' && row.initial_phone == nullptr) return row.initial;
  return row.final[0] != '\0' && row.final_phone == nullptr ? row.final : nullptr;
}

}  // namespace internal
}  // namespace qeo::notation

#endif  // NOTATION_NOTATION_TABLE_H_
