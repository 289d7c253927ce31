#include "tools/convert.h"

#include <unistd.h>

#include <cstdint>
#include <optional>
#include <string_view>

#include "tools/languages.h"
#include "tools/lines.h"
#include "tools/reader.h"
#include "tools/writer.h"

namespace qeo::tool {
namespace {

// Field `column`, counted from 1, of a tab-separated line; nothing when the line has fewer.
std::optional<std::string_view> Field(std::string_view line, std::size_t column) {
  for (; column > 1; --column) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos) {
      return std::nullopt;
    }
    line.remove_prefix(tab + 1);
  }
  return line.substr(0, line.find('\t'));
}

class Job {
 public:
  explicit Job(const ConvertOptions& options)
      : options_(options), reader_(options.conversion.language, options.conversion.from) {}

  ExitStatus Run();

 private:
  void ConvertArguments();
  void ConvertInput();
  void ConvertLine(const Line& line);
  bool ConvertText(std::string_view text);
  void Report(std::string_view text, std::string_view problem);
  void Fail(std::string_view problem);
  void Flush();

  const ConvertOptions& options_;
  Output results_{STDOUT_FILENO};
  Output messages_{STDERR_FILENO};
  ExitStatus status_ = kSuccess;
  const char* place_ = "line";
  std::uint64_t number_ = 0;  // of the line or argument

  // Kept from line to line, to save allocations.
  Reader reader_;
  std::string text_;
  std::string problem_;
};

ExitStatus Job::Run() {
  const Conversion& conversion = options_.conversion;
  const std::string note = FallbackNote(conversion.language, ServingLanguage(conversion));
  if (!note.empty()) {
    AppendMessage(note, messages_.text());
  }
  if (options_.texts.empty()) {
    ConvertInput();
  } else {
    ConvertArguments();
  }
  messages_.Flush();
  results_.Close();
  if (results_.error() != 0) {
    Fail(SystemProblem("cannot write the results", results_.error()));
  }
  messages_.Flush();
  return status_;
}

void Job::ConvertArguments() {
  place_ = "argument";
  for (const std::string& text : options_.texts) {
    ConvertLine({text, "\n"});
  }
}

void Job::ConvertInput() {
  LineReader lines(STDIN_FILENO);
  Line line;
  while (results_.error() == 0) {
    if (!lines.HasLine()) {
      Flush();  // who waits for an answer before writing on gets it
    }
    if (!lines.Next(line)) {
      break;
    }
    ConvertLine(line);
  }
  if (lines.error() != 0) {
    Fail(SystemProblem("cannot read standard input", lines.error()));
  }
}

// Writes one line whatever happens, so that the output keeps step with the input.
void Job::ConvertLine(const Line& line) {
  ++number_;
  std::string& out = results_.text();
  std::optional<std::string_view> text = line.text;
  if (options_.column != 0) {
    text = Field(line.text, options_.column);
    out += line.text;
    out += '\t';
  }
  if (!text) {
    Report(line.text, "no column " + std::to_string(options_.column));
  } else if (!ConvertText(*text)) {
    Report(*text, problem_);
  }
  out += line.end;
  if (results_.IsLarge() || messages_.IsLarge()) {
    Flush();
  }
}

bool Job::ConvertText(std::string_view text) {
  const Conversion& conversion = options_.conversion;
  text_ = text;
  if (!reader_.Read(text_)) {
    problem_ = reader_.problem();
    return false;
  }
  return Write(conversion.language, conversion.to, reader_, results_.text(), problem_);
}

void Job::Report(std::string_view text, std::string_view problem) {
  Fail(std::string(place_) + ' ' + std::to_string(number_) + ": " + Quoted(text) + ": " +
       std::string(problem));
}

void Job::Fail(std::string_view problem) {
  AppendMessage(problem, messages_.text());
  status_ = kFailure;
}

// The messages go first: writing results to a reader that has gone ends the process.
void Job::Flush() {
  messages_.Flush();
  results_.Flush();
}

}  // namespace

ExitStatus Convert(const ConvertOptions& options) { return Job(options).Run(); }

}  // namespace qeo::tool
