#ifndef NOTATION_READER_H_
#define NOTATION_READER_H_

/// Texts in any notation that is read to syllables, one text after the other: what a program that
/// goes through a lexicon calls for each line.

#include <cstddef>
#include <string>
#include <vector>

#include "notation/analysis.h"
#include "notation/export.h"
#include "notation/notations.h"
#include "notation/records.h"
#include "phoneme/records.h"

namespace qeo::notation {

/// Reads texts of one language, and keeps its memory from one to the next. It takes the shortest
/// way to the syllables, and analyses a text only where that does not read it. A reader is for one
/// thread at a time.
///
///   Reader reader(sp::LANGUAGE_CANTONESE);
///   reader.Read("nei5hou2");  // true; codes() are 4035 and 2382
///   reader.Read("nei5 hou");  // true
///   reader.Read("nei5 xou");  // false; problems() has an unknown syllable at {5, 3}
class Reader {
 public:
  /// Keeps what `options` points to, the aliases. `with_places`: also keep the place of each
  /// syllable in the text, as an analysis does.
  NOTATION_EXPORT explicit Reader(int language, const AnalysisOptions& options = {},
                                  bool with_places = false);

  /// Reads a text as Analyze does. Returns false when it has a problem; then problems() are those
  /// of the analysis, and there are no syllables, places and applications.
  NOTATION_EXPORT bool Read(const std::string& text);

  Notation notation() const { return notation_; }

  /// Returns whether the notation has codes, so that codes() are the syllables, else syllables().
  bool has_codes() const { return has_codes_; }
  const std::vector<unsigned short>& codes() const { return codes_; }
  const std::vector<sp::SyllableInfo>& syllables() const { return syllables_; }

  /// The number of syllables.
  std::size_t size() const { return has_codes_ ? codes_.size() : syllables_.size(); }

  /// Returns syllable `index` as AnalyzedSyllable::syllable is, valid until the next call.
  NOTATION_EXPORT const sp::SyllableInfo& Syllable(std::size_t index);

  /// The bytes of the text that each syllable was read from; empty without places.
  const std::vector<Range>& places() const { return places_; }

  /// The rules that were applied to the text, where it was read by rules.
  const std::vector<Application>& applied() const { return applied_; }

  /// Empty when all was read.
  const std::vector<Problem>& problems() const { return problems_; }

 private:
  bool ReadPlainly(const std::string& text);
  bool ReadNormalized(Normalized normalized);
  bool ReadCodes(const std::string& text);
  bool ReadIds(const std::string& text);
  bool ReadPronunciation(const std::string& text);
  bool LosesNothing(const std::string& text) const;
  bool Analyse(const std::string& text);
  void SetTones();

  int language_;
  AnalysisOptions options_;
  bool with_places_;
  Notation notation_;
  bool has_codes_;
  std::vector<unsigned short> codes_;
  std::vector<sp::SyllableInfo> syllables_;
  std::vector<unsigned char> phone_ids_;
  sp::SyllableInfo decoded_;
  std::vector<Range> places_;
  std::vector<Application> applied_;
  std::vector<Problem> problems_;
};

}  // namespace qeo::notation

#endif  // NOTATION_READER_H_
