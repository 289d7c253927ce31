#ifndef TOOLS_CONVERSION_WRITER_H_
#define TOOLS_CONVERSION_WRITER_H_

// From the library's syllables to a text in one of the target notations.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/conversion/notations.h"
#include "tools/conversion/reader.h"
#include "tools/conversion/target_gaps.h"

namespace qeo::tool {

/// Writes texts one after the other. What a syllable code looks like is found once and kept.
class Writer {
 public:
  explicit Writer(const Conversion& conversion) : to_(conversion.to), gaps_(conversion) {}

  /// Appends the syllables of the text that `reader` has read from `text` to `out`. Not for kJson
  /// and kTsv, which are written as records.
  ///
  /// Returns false when the notation cannot express one of them, with `out` as it was; failure()
  /// then names the first.
  bool Write(Reader& reader, const std::string& text, std::string& out);

  const Gaps& gaps() const { return gaps_; }

  const Failure& failure() const { return failure_; }

 private:
  // A syllable as text, with what follows it.
  struct CodeText {
    std::uint8_t size = 0;  // 0 where there is none
    std::array<char, 31> bytes = {};
  };

  bool WriteAll(Reader& reader, std::string& out);
  bool WriteArpabet(Reader& reader, std::string& out);
  bool WriteCodes(Reader& reader, std::string& out);
  bool WriteSyllables(Reader& reader, std::string& out);
  const CodeText& MakeText(std::size_t code, const sp::SyllableInfo& syllable);
  Failure FindGaps(Reader& reader, const std::string& text) const;

  Target to_;
  Gaps gaps_;
  Failure failure_;
  std::vector<CodeText> by_code_;
};

/// Appends a syllable that has no gap in a notation that writes one after the other (not kArpabet,
/// kJson, kTsv), with the separator that would follow.
void AppendSyllable(Target to, const sp::SyllableInfo& syllable, std::string& out);

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_WRITER_H_
