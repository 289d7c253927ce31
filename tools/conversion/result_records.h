#ifndef TOOLS_CONVERSION_RESULT_RECORDS_H_
#define TOOLS_CONVERSION_RESULT_RECORDS_H_

// Results as records for other programs: a JSON object a line, or a tab-separated row a syllable.

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/conversion/failures.h"
#include "tools/conversion/notations.h"

namespace qeo::tool {

/// What a record holds besides the syllables.
struct RecordHead {
  std::uint64_t line = 0;  ///< number of the line or argument
  std::string_view word;   ///< empty where the format has none
  std::string_view text;
};

/// Appends the line that names the columns of AppendRows.
void AppendRowHeader(std::string& out);

/// Writes what a reader of a conversion has read, with places, as records.
class RecordWriter {
 public:
  explicit RecordWriter(const Conversion& conversion)
      : is_written_(IsWritten(conversion.from())),
        phones_(WriterOf(conversion, Notation::kPhones)),
        ids_(WriterOf(conversion, Notation::kIds)) {}

  /// Appends a row for each syllable of the text that `reader` has read.
  /// What a syllable lacks is "-": its tone, or phones and ids of a row that names a missing phone.
  void AppendRows(const RecordHead& head, notation::Reader& reader, std::string& out) const;

  /// Appends the object of the text that `reader` has read, without a line end. What a syllable
  /// lacks is null.
  void AppendJson(const RecordHead& head, notation::Reader& reader, std::string& out) const;

 private:
  bool is_written_;
  notation::Writer phones_;
  notation::Writer ids_;
};

/// Appends the object of a text that failed, without a line end.
void AppendJsonFailure(const RecordHead& head, const Failure& failure, std::string& out);

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_RESULT_RECORDS_H_
