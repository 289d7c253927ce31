#ifndef TOOLS_READER_H_
#define TOOLS_READER_H_

/// From a text in one of the source notations to the library's syllables.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "phoneme/phoneme.h"
#include "tools/notations.h"

namespace qeo::tool {

/// Reads texts one after the other and keeps its memory from one to the next.
class Reader {
 public:
  Reader(int language, Source from) : language_(language), from_(from) {}

  /// Reads a text. Returns false when the library does not know it all; problem() then names the
  /// first piece that it does not know, and there are no syllables.
  bool Read(const std::string& text);

  /// One line, for the user.
  const std::string& problem() const { return problem_; }

  /// The syllables of the last text.
  std::size_t syllable_count() const;

  /// Returns syllable `index`, valid until the next call. It has a code when syllables have one in
  /// the source notation, and its tone digit in `tone` or in `raw_tone`; the other is 0.
  const sp::SyllableInfo& Syllable(std::size_t index);

 private:
  bool ReadText(const std::string& text);
  bool ReadCodes(std::string_view text);
  bool ReadIds(std::string_view text);
  bool ReadPronunciation(const std::string& text);

  bool Decode(unsigned short code);
  bool ParseIds(std::string_view text);
  bool ParsePronunciation(const std::string& text);
  bool RegroupIds();
  std::string SyllableProblem(const std::string& token);
  bool Unknown(const char* kind, std::string_view piece);

  int language_;
  Source from_;
  std::string problem_;

  // Text and codes are kept as codes, ids and pronunciations as syllables.
  std::vector<unsigned short> codes_;
  sp::SyllableInfo decoded_;
  std::vector<unsigned char> phone_ids_;
  std::vector<sp::SyllableInfo> syllables_;
};

}  // namespace qeo::tool

#endif  // TOOLS_READER_H_
