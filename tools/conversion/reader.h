#ifndef TOOLS_CONVERSION_READER_H_
#define TOOLS_CONVERSION_READER_H_

// From a text in one of the source notations to the library's syllables.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "phoneme/phoneme.h"
#include "tools/conversion/notations.h"

namespace qeo::tool {

/// Why a text was not read.
struct Failure {
  std::string_view kind;  ///< one of a few constant names, to count failures by
  std::string message;    ///< one line, for the user
  /// The bytes of the text that it is about; none when they are not known.
  notation::Range place = {};
};

/// Gives a syllable that was read without a tone the one of --default-tone, if there is one.
void TakeDefaultTone(const Conversion& conversion, sp::SyllableInfo& syllable);

/// Reads texts one after the other and keeps its memory from one to the next.
class Reader {
 public:
  /// `with_places`: keep the place in the text of each syllable, where the notation has places.
  Reader(const Conversion& conversion, bool with_places)
      : conversion_(conversion),
        serving_language_(ServingLanguage(conversion)),
        with_places_(with_places) {}

  /// Reads a text. Returns false when it cannot all be read; failure() then gives the reason, and
  /// there are no syllables.
  bool Read(const std::string& text);

  const Failure& failure() const { return failure_; }

  /// Returns whether the notation is one that rules read.
  bool is_written() const { return IsWritten(conversion_.from); }

  /// Returns whether the syllables have codes.
  bool has_codes() const { return HasCodes(conversion_.from); }

  /// The syllables of the last text.
  std::size_t syllable_count() const;

  /// Returns syllable `index`, valid until the next call. It has a code when syllables have one in
  /// the source notation, and its tone digit in `tone` or in `raw_tone`; the other is 0.
  const sp::SyllableInfo& Syllable(std::size_t index);

  /// The code of syllable `index` in a notation that has codes.
  unsigned short Code(std::size_t index) const { return codes_[index]; }

  /// The bytes of the text that each syllable was read from; empty without places.
  const std::vector<notation::Range>& places() const { return places_; }

  /// Finds these bytes in any notation, one range a syllable. `text` is the last text. For
  /// messages: it reads the text again.
  std::vector<notation::Range> FindPlaces(const std::string& text) const;

  /// The rules that were applied to the text.
  const std::vector<notation::Application>& applied() const { return applied_; }

 private:
  bool ReadAs(Source from, const std::string& text);
  void SetTones();
  bool ReadWritten(const std::string& text);
  bool ReadPlainly(const std::string& text);
  bool ReadWithPlaces(const std::string& text);
  bool ReadText(const std::string& text);
  bool LosesNothing(const std::string& text);
  bool ReadCodes(std::string_view text);
  bool ReadIds(std::string_view text);
  bool ReadPronunciation(const std::string& text);

  bool Decode(unsigned short code);
  bool ParseIds(std::string_view text);
  bool ParsePronunciation(const std::string& text);
  bool RegroupIds();
  bool LosePhones(std::string_view text);
  void FailSyllable(const std::string& text, notation::Range syllable, std::size_t number);
  bool Fail(std::string_view kind, std::string message);
  bool Unknown(std::string_view kind, std::string_view text, notation::Range place);

  const Conversion& conversion_;
  int serving_language_;
  bool with_places_;
  Failure failure_;

  // What has codes is kept as codes, the rest as syllables.
  std::vector<unsigned short> codes_;
  sp::SyllableInfo decoded_;
  std::vector<unsigned char> phone_ids_;
  std::vector<sp::SyllableInfo> syllables_;
  std::vector<notation::Range> places_;
  std::vector<notation::Application> applied_;
};

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_READER_H_
