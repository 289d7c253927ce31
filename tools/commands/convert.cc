#include "tools/commands/convert.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "tools/commands/line_converter.h"
#include "tools/conversion/languages.h"
#include "tools/conversion/result_records.h"
#include "tools/io/destination.h"
#include "tools/io/encodings.h"
#include "tools/io/files.h"
#include "tools/io/input.h"
#include "tools/io/ordered_workers.h"
#include "tools/io/output.h"
#include "tools/io/progress.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

class Job {
 public:
  explicit Job(const ConvertOptions& options) : options_(options) {}

  ExitStatus Run(FilesInUse& files);

 private:
  void Open(FilesInUse& files);
  void OpenInput(FilesInUse& files);
  void ConvertTexts();
  void ConvertArguments();
  void ConvertInput();
  void ConvertBlocks(OrderedWorkers<Batch>& workers);
  std::unique_ptr<Batch> NewBatch();
  void WriteBatch(std::unique_ptr<Batch> batch);
  void CloseFiles();
  void Report(const Output& output, const char* action, const std::string& name);
  void Fail(std::string_view problem);
  bool ReadsStandardInput() const { return options_.input.empty() || options_.input == "-"; }
  bool HasFailedToWrite() const {
    return results_->error() != 0 || (rejects_ && rejects_->error() != 0);
  }
  bool HasReaderGone() const {
    return results_->error() == EPIPE || (rejects_ && rejects_->error() == EPIPE);
  }

  const ConvertOptions& options_;
  File input_;
  std::optional<Output> results_;
  std::optional<Output> rejects_;
  Output messages_{STDERR_FILENO};
  std::optional<Progress> progress_;
  std::vector<std::unique_ptr<Batch>> spare_batches_;  // with the memory that they have
  Totals totals_;
  ExitStatus status_ = kSuccess;
  bool is_complete_ = true;  // all has been read, and what was written so far is written
};

ExitStatus Job::Run(FilesInUse& files) {
  const Conversion& conversion = options_.conversion;
  if (const auto note = FallbackNote(conversion.language, ServingLanguage(conversion))) {
    AppendMessage(*note, messages_.text());
  }
  Open(files);
  messages_.Flush();
  if (!is_complete_) return status_;
  ConvertTexts();
  messages_.Flush();
  CloseFiles();
  if (HasReaderGone()) return kReaderGone;
  if (is_complete_ && options_.texts.empty() && !options_.is_quiet) {
    AppendMessage(Summary(totals_), messages_.text());
  }
  messages_.Flush();
  return status_;
}

// Where an output leads is looked up before any file is opened: /dev/fd/N is a descriptor that was
// there when the tool was started.
void Job::Open(FilesInUse& files) {
  const Destination output = FindDestination(options_.output);
  const Destination rejects = FindDestination(options_.rejects);
  OpenInput(files);
  if (!options_.output.empty()) files.Write("--output", output.Id(), output.IsStream());
  if (!options_.rejects.empty()) files.Write("--rejects", rejects.Id());
  if (!is_complete_) return;
  if (options_.output.empty()) {
    results_.emplace(STDOUT_FILENO);
  } else {
    results_.emplace(output);
  }
  if (!options_.rejects.empty()) rejects_.emplace(rejects);
}

void Job::OpenInput(FilesInUse& files) {
  if (!options_.texts.empty()) return;
  if (ReadsStandardInput()) {
    input_ = File(STDIN_FILENO);
    return files.Read("standard input", IdOf(STDIN_FILENO));
  }
  input_ = OpenFile(options_.input, O_RDONLY);
  if (!input_.IsOpen()) {
    return Fail(SystemProblem("cannot read " + QuotedName(options_.input), errno));
  }
  files.Read("--input", IdOf(input_.descriptor()));
}

void Job::ConvertTexts() {
  if (options_.conversion.to.records == Records::kTsv) AppendRowHeader(results_->text());
  if (options_.texts.empty()) {
    ConvertInput();
  } else {
    ConvertArguments();
  }
}

void Job::ConvertArguments() {
  LineConverter converter(options_.conversion, options_.layout, "argument");
  std::uint64_t number = 0;
  for (const std::string& text : options_.texts) {
    std::unique_ptr<Batch> batch = NewBatch();
    converter.ConvertLine(++number, {text, "\n"}, *batch);
    if (!batch->totals.failed.empty() && IsRegularFile(text)) {
      AppendMessage("note: " + QuotedName(text) + " is a file; use --input to read it",
                    batch->messages);
    }
    WriteBatch(std::move(batch));
  }
}

void Job::ConvertInput() {
  std::vector<LineConverter> converters;
  std::vector<OrderedWorkers<Batch>::Work> works;
  converters.reserve(options_.jobs);
  for (std::size_t i = 0; i < options_.jobs; ++i) {
    LineConverter& converter =
        converters.emplace_back(options_.conversion, options_.layout, "line");
    works.emplace_back([&converter](Batch& batch) { converter.ConvertBlock(batch); });
  }
  std::optional<OrderedWorkers<Batch>> workers;
  try {
    workers.emplace(std::move(works));
  } catch (const std::system_error& error) {
    return Fail(SystemProblem("cannot start " + std::to_string(options_.jobs) + " threads",
                              error.code().value()));
  }
  ConvertBlocks(*workers);
}

void Job::ConvertBlocks(OrderedWorkers<Batch>& workers) {
  const bool is_screen_free = !results_->IsTerminal() && !(rejects_ && rejects_->IsTerminal());
  progress_.emplace(!options_.is_quiet && is_screen_free, BytesAhead(input_.descriptor()));
  BlockReader reader(input_.descriptor());
  std::uint64_t line_count = 0;
  std::optional<std::string> problem;
  while (!HasFailedToWrite()) {
    // A program that waits for an answer before it writes more gets it.
    while (!workers.IsEmpty() && (workers.IsFull() || !reader.IsReady())) {
      WriteBatch(workers.TakeOldest());
    }
    std::unique_ptr<Batch> batch = NewBatch();
    if (!reader.Next(batch->input)) break;
    problem = line_count == 0 ? EncodingProblem(batch->input.text) : std::nullopt;
    if (problem) break;
    line_count += batch->input.line_count;
    workers.Give(std::move(batch));
    progress_->Show(reader.byte_count(), line_count);
  }
  while (!workers.IsEmpty()) WriteBatch(workers.TakeOldest());
  progress_->Clear();
  if (reader.error() != 0) problem = std::generic_category().message(reader.error());
  if (problem) {
    Fail("cannot read " + InputName(ReadsStandardInput() ? "-" : options_.input) + ": " + *problem);
  }
}

std::unique_ptr<Batch> Job::NewBatch() {
  if (spare_batches_.empty()) return std::make_unique<Batch>();
  std::unique_ptr<Batch> batch = std::move(spare_batches_.back());
  spare_batches_.pop_back();
  return batch;
}

// Writes what became of a batch. The messages go first: they are printed even when the results
// cannot be written.
void Job::WriteBatch(std::unique_ptr<Batch> batch) {
  totals_.Add(batch->totals);
  if (!batch->totals.failed.empty()) status_ = kFailure;
  if (!batch->messages.empty()) {
    if (progress_) progress_->Clear();
    messages_.Write(batch->messages);
  }
  results_->Write(batch->results);
  if (rejects_) rejects_->Write(batch->rejects);
  batch->Clear();
  spare_batches_.push_back(std::move(batch));
}

// Closes all files and gives them their names. When a part of one is missing none gets its name.
void Job::CloseFiles() {
  results_->Close();
  if (rejects_) rejects_->Close();
  if (is_complete_ && !HasFailedToWrite()) {
    PutInPlace(rejects_ ? std::vector{&*results_, &*rejects_} : std::vector{&*results_});
  }
  Report(*results_, "cannot write the results", options_.output);
  if (rejects_) Report(*rejects_, "cannot write the rejects", options_.rejects);
}

void Job::Report(const Output& output, const char* action, const std::string& name) {
  if (output.error() != 0 && output.error() != EPIPE) {
    Fail(SystemProblem(name.empty() ? action : std::string(action) + " to " + QuotedName(name),
                       output.error()));
  }
}

// Something is missing in the results.
void Job::Fail(std::string_view problem) {
  is_complete_ = false;
  AppendMessage(problem, messages_.text());
  status_ = kUnfinished;
}

}  // namespace

ExitStatus Convert(const ConvertOptions& options, FilesInUse& files) {
  return Job(options).Run(files);
}

}  // namespace qeo::tool
