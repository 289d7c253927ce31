#include "tools/report/findings.h"

#include "tools/base/decimal.h"
#include "tools/report/json.h"
#include "tools/report/messages.h"

namespace qeo::tool {

void FindingWriter::Write(const Finding& finding) {
  has_problems_ = has_problems_ || finding.is_problem;
  if (is_json_) {
    WriteJson(finding);
  } else {
    WriteText(finding);
  }
  output_.text() += '\n';
  if (output_.IsLarge()) output_.Flush();
}

// FILE:LINE:COLUMN: KIND: MESSAGE, with a column that counts bytes from 1.
void FindingWriter::WriteText(const Finding& finding) {
  std::string& out = output_.text();
  out += Escaped(file_);
  out += ':';
  AppendNumber(finding.line, out);
  out += ':';
  AppendNumber(finding.offset + 1, out);
  out += ": ";
  out += finding.kind;
  out += ": ";
  out += Presentable(finding.message);
}

namespace {

void WriteHint(const Finding& finding, Json& json) {
  const notation::Problem& problem = *finding.source;
  const std::size_t text_offset = finding.offset - problem.range.offset;
  json["hint"] = notation::HintName(problem.hint);
  json["hint_column"] = text_offset + problem.piece.offset + 1;
  json["hint_length"] = problem.piece.length;
  if (problem.hint == notation::Hint::kGap) {
    json["initial"] = problem.initial;
    json["final"] = problem.final;
  }
}

}  // namespace

void FindingWriter::WriteJson(const Finding& finding) {
  Json json;
  json["file"] = file_;
  json["line"] = finding.line;
  json["column"] = finding.offset + 1;
  json["length"] = finding.length;
  json["severity"] = finding.is_problem ? "error" : "note";
  json["kind"] = finding.kind;
  json["message"] = Presentable(finding.message);
  if (!finding.suggestion.empty()) json["suggestion"] = finding.suggestion;
  if (finding.source != nullptr && finding.source->hint != notation::Hint::kNone) {
    WriteHint(finding, json);
  }
  AppendJsonText(json, output_.text());
}

}  // namespace qeo::tool
