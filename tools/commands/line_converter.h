#ifndef TOOLS_COMMANDS_LINE_CONVERTER_H_
#define TOOLS_COMMANDS_LINE_CONVERTER_H_

// The work of `phoneme convert` on lines that are already in memory.

#include <cstdint>
#include <string>
#include <string_view>

#include "lexicon/lexicon.h"
#include "tools/conversion/result_records.h"
#include "tools/io/input.h"
#include "tools/report/totals.h"

namespace qeo::tool {

/// Some lines, and what became of them. Everything is whole lines.
struct Batch {
  Block input;
  std::string results;
  std::string messages;
  std::string rejects;  ///< the lines that failed, unchanged
  Totals totals;

  /// Empties all but the memory that it has.
  void Clear() {
    input.text.clear();
    results.clear();
    messages.clear();
    rejects.clear();
    totals = {};
  }
};

/// Converts lines one after the other and keeps its memory from one to the next. Threads have one
/// each.
class LineConverter {
 public:
  /// `place` is what messages call a line. `conversion` and `layout` are kept and not copied.
  LineConverter(const Conversion& conversion, const lexicon::Layout& layout, const char* place);

  /// Converts the lines of `batch.input` and adds to the rest.
  void ConvertBlock(Batch& batch);

  void ConvertLine(std::uint64_t number, const lexicon::Line& line, Batch& batch);

 private:
  bool ConvertEntry(std::uint64_t number, const lexicon::Entry& entry, std::string& out);
  bool Write(std::string& out);
  void RejectPart(Batch& batch);
  void Fail(std::uint64_t number, const lexicon::Line& line, const lexicon::Entry& entry,
            Batch& batch);
  void WriteFailure(std::uint64_t number, const lexicon::Line& line, const lexicon::Entry& entry,
                    std::string& out);
  void EndFailure(const lexicon::Line& line, std::string& out) const;
  void AddMessage(std::uint64_t number, std::string_view message, Batch& batch) const;
  bool WritesRecords() const { return conversion_.to.records != Records::kNone; }

  const Conversion& conversion_;
  const lexicon::Layout& layout_;
  const char* place_;
  notation::Reader reader_;
  notation::Writer writer_;
  RecordWriter records_;
  std::string text_;
  Failure failure_;
};

}  // namespace qeo::tool

#endif  // TOOLS_COMMANDS_LINE_CONVERTER_H_
