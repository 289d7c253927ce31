#include "tools/commands/line_converter.h"

#include "tools/report/messages.h"

namespace qeo::tool {

LineConverter::LineConverter(const Conversion& conversion, const lexicon::Layout& layout,
                             const char* place)
    : conversion_(conversion),
      layout_(layout),
      place_(place),
      reader_(conversion.language, conversion.reading,
              WritesRecords() && IsWritten(conversion.from())),
      writer_(WriterOf(conversion, conversion.to.notation)),
      records_(conversion) {}

void LineConverter::ConvertBlock(Batch& batch) {
  if (batch.input.is_overlong) return RejectPart(batch);
  std::string_view rest = batch.input.text;
  for (std::uint64_t number = batch.input.first_line; !rest.empty(); ++number) {
    ConvertLine(number, lexicon::TakeLine(rest), batch);
  }
}

// In a format of plain lines each line gives one, also when it fails, so that the output keeps step
// with the input. A lexicon has no entries that are empty.
void LineConverter::ConvertLine(std::uint64_t number, const lexicon::Line& line, Batch& batch) {
  std::string& out = batch.results;
  const std::size_t begin = out.size();
  const lexicon::Entry entry = lexicon::ReadEntry(layout_, line.text);
  if (entry.kind == lexicon::EntryKind::kComment) {
    ++batch.totals.comments;
    if (layout_.format == lexicon::Format::kTsv && !WritesRecords())
      out.append(line.text).append(line.end);
    return;
  }
  if (!WritesRecords()) {
    if (layout_.format == lexicon::Format::kTsv) {
      out.append(line.text) += '\t';
    } else if (layout_.HasWords()) {
      out.append(entry.word) += ' ';
    }
  }
  if (!ConvertEntry(number, entry, out)) {
    out.resize(begin);
    return Fail(number, line, entry, batch);
  }
  ++batch.totals.converted;
  batch.totals.CountRules(reader_.applied());
  if (conversion_.to.records != Records::kTsv) out += line.end;
}

bool LineConverter::ConvertEntry(std::uint64_t number, const lexicon::Entry& entry,
                                 std::string& out) {
  if (entry.kind == lexicon::EntryKind::kBroken) {
    failure_ = {"not an entry", lexicon::BrokenLineProblem(layout_), {}};
    return false;
  }
  text_ = entry.text;
  if (!reader_.Read(text_)) {
    failure_ = FailureOf(conversion_.from(), reader_.problems(), text_);
    return false;
  }
  if (layout_.HasWords() && reader_.size() == 0) {
    failure_ = {"not an entry", lexicon::BrokenLineProblem(layout_), {}};
    return false;
  }
  const RecordHead head = {number, entry.word, text_};
  if (conversion_.to.records == Records::kJson) {
    records_.AppendJson(head, reader_, out);
  } else if (conversion_.to.records == Records::kTsv) {
    records_.AppendRows(head, reader_, out);
  } else if (!Write(out)) {
    failure_ = GapFailure(conversion_, writer_, text_);
    return false;
  }
  return true;
}

// Returns false when the notation cannot express a syllable.
bool LineConverter::Write(std::string& out) {
  return !(reader_.has_codes() ? writer_.Write(reader_.codes(), out)
                               : writer_.Write(reader_.syllables(), out));
}

void LineConverter::Fail(std::uint64_t number, const lexicon::Line& line,
                         const lexicon::Entry& entry, Batch& batch) {
  const std::string_view text = entry.kind == lexicon::EntryKind::kBroken ? line.text : entry.text;
  AddMessage(number, Quoted(text) + ": " + failure_.message, batch);
  ++batch.totals.failed[failure_.kind];
  batch.rejects.append(line.text).append(line.end);
  WriteFailure(number, line, entry, batch.results);
}

void LineConverter::WriteFailure(std::uint64_t number, const lexicon::Line& line,
                                 const lexicon::Entry& entry, std::string& out) {
  if (conversion_.to.records == Records::kJson) {
    const bool is_broken = entry.kind == lexicon::EntryKind::kBroken;
    AppendJsonFailure({number, entry.word, is_broken ? line.text : entry.text}, failure_, out);
  } else if (layout_.format == lexicon::Format::kTsv && !WritesRecords()) {
    out.append(line.text) += '\t';
  }
  EndFailure(line, out);
}

// Ends what a line that fails gives, if it gives anything.
void LineConverter::EndFailure(const lexicon::Line& line, std::string& out) const {
  const bool has_record = conversion_.to.records == Records::kJson;
  const bool is_line = conversion_.to.records != Records::kTsv && !layout_.HasWords();
  if (has_record || is_line) out += line.end;
}

// A line that is too long comes in parts, and fails once. Its text is in no result, so it leaves an
// empty line also where others are repeated.
void LineConverter::RejectPart(Batch& batch) {
  const Block& part = batch.input;
  failure_ = {"line too long", "longer than " + std::to_string(kLongestLine) + " bytes", {}};
  if (part.is_first_part) {
    AddMessage(part.first_line, failure_.message, batch);
    ++batch.totals.failed[failure_.kind];
  }
  if (!part.is_last_part) {
    batch.rejects += part.text;
    return;
  }
  std::string_view rest = part.text;
  const lexicon::Line last = lexicon::TakeLine(rest);
  batch.rejects.append(last.text).append(last.end);
  if (conversion_.to.records == Records::kJson)
    AppendJsonFailure({part.first_line, "", ""}, failure_, batch.results);
  EndFailure(last, batch.results);
}

void LineConverter::AddMessage(std::uint64_t number, std::string_view message, Batch& batch) const {
  AppendMessage(std::string(place_) + ' ' + std::to_string(number) + ": " + std::string(message),
                batch.messages);
}

}  // namespace qeo::tool
