#ifndef TOOLS_WRITER_H_
#define TOOLS_WRITER_H_

/// From the library's syllables to a text in one of the target notations.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/notations.h"
#include "tools/reader.h"

namespace qeo::tool {

/// Writes texts one after the other. What a syllable code looks like is found once and kept.
class Writer {
 public:
  explicit Writer(Target to) : to_(to) {}

  /// Appends the syllables of the text that `reader` has read to `out`. Not for kJson and kTsv,
  /// which are written as records.
  ///
  /// Returns false when the notation has no form for them, with `out` as it was; failure() then
  /// tells why.
  bool Write(Reader& reader, std::string& out);

  const Failure& failure() const { return failure_; }

 private:
  // A syllable as text, with what stands behind it.
  struct CodeText {
    std::uint8_t size = 0;  // 0 where there is none
    std::array<char, 31> bytes = {};
  };

  bool WriteArpabet(Reader& reader, std::string& out);
  bool WriteCodes(Reader& reader, std::string& out);
  bool WriteSyllables(Reader& reader, std::string& out);
  const CodeText& MakeText(Reader& reader, std::size_t index);
  bool FailAt(std::size_t index);

  Target to_;
  Failure failure_;
  std::vector<CodeText> by_code_;
};

/// Appends a syllable in a notation that writes one after the other (not kArpabet, kJson, kTsv),
/// with the separator that would follow. Returns false when it has no form; `out` is then
/// unspecified.
bool AppendSyllable(Target to, const sp::SyllableInfo& syllable, std::string& out);

/// The tone digit of a syllable, wherever it was read from.
int ToneDigit(const sp::SyllableInfo& syllable);

}  // namespace qeo::tool

#endif  // TOOLS_WRITER_H_
