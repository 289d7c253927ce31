#include "tools/convert.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "tools/files.h"
#include "tools/input.h"
#include "tools/languages.h"
#include "tools/line_converter.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/records.h"
#include "tools/workers.h"

namespace qeo::tool {
namespace {

class Job {
 public:
  explicit Job(const ConvertOptions& options) : options_(options) {
    if (options.output.empty()) {
      results_.emplace(STDOUT_FILENO);
    } else {
      results_.emplace(options.output);
    }
    if (!options.rejects.empty()) {
      rejects_.emplace(options.rejects);
    }
  }

  ExitStatus Run();

 private:
  void ConvertArguments();
  void ConvertFile();
  void ConvertInput(int file_descriptor, const std::string& name);
  std::unique_ptr<Batch> NewBatch();
  void WriteBatch(std::unique_ptr<Batch> batch);
  void CloseFiles();
  void Report(const Output& output, const char* action, const std::string& name);
  void Fail(std::string_view problem);
  bool HasFailedToWrite() const {
    return results_->error() != 0 || (rejects_ && rejects_->error() != 0);
  }

  const ConvertOptions& options_;
  std::optional<Output> results_;
  std::optional<Output> rejects_;
  Output messages_{STDERR_FILENO};
  std::optional<Progress> progress_;
  std::vector<std::unique_ptr<Batch>> spare_batches_;  // with the memory that they have
  Totals totals_;
  ExitStatus status_ = kSuccess;
  bool is_complete_ = true;  // all has been read, and what was written so far is written
};

ExitStatus Job::Run() {
  const Conversion& conversion = options_.conversion;
  const std::string note = FallbackNote(conversion.language, ServingLanguage(conversion));
  if (!note.empty()) {
    AppendMessage(note, messages_.text());
  }
  if (conversion.to == Target::kTsv) {
    AppendRowHeader(results_->text());
  }
  if (options_.texts.empty()) {
    ConvertFile();
  } else {
    ConvertArguments();
  }
  messages_.Flush();
  CloseFiles();
  if (is_complete_ && options_.texts.empty() && !options_.is_quiet) {
    AppendMessage(Summary(totals_), messages_.text());
  }
  messages_.Flush();
  return status_;
}

void Job::ConvertArguments() {
  LineConverter converter(options_, "argument");
  std::uint64_t number = 0;
  for (const std::string& text : options_.texts) {
    std::unique_ptr<Batch> batch = NewBatch();
    converter.ConvertLine(++number, {text, "\n"}, *batch);
    WriteBatch(std::move(batch));
  }
}

void Job::ConvertFile() {
  if (options_.input.empty()) {
    return ConvertInput(STDIN_FILENO, "standard input");
  }
  const File file = OpenFile(options_.input, O_RDONLY);
  if (!file.IsOpen()) {
    return Fail(SystemProblem("cannot read " + Quoted(options_.input), errno));
  }
  ConvertInput(file.descriptor(), Quoted(options_.input));
}

void Job::ConvertInput(int file_descriptor, const std::string& name) {
  std::vector<LineConverter> converters;
  std::vector<OrderedWorkers<Batch>::Work> works;
  converters.reserve(options_.jobs);
  for (std::size_t i = 0; i < options_.jobs; ++i) {
    LineConverter& converter = converters.emplace_back(options_, "line");
    works.emplace_back([&converter](Batch& batch) { converter.ConvertBlock(batch); });
  }
  std::optional<OrderedWorkers<Batch>> started;
  try {
    started.emplace(std::move(works));
  } catch (const std::system_error& error) {
    return Fail(SystemProblem("cannot start " + std::to_string(options_.jobs) + " threads",
                              error.code().value()));
  }
  OrderedWorkers<Batch>& workers = *started;
  progress_.emplace(!options_.is_quiet, BytesAhead(file_descriptor));
  BlockReader reader(file_descriptor);
  std::uint64_t line_count = 0;
  while (!HasFailedToWrite()) {
    // A program that waits for an answer before it writes more gets it.
    while (!workers.IsEmpty() && (workers.IsFull() || !reader.IsReady())) {
      WriteBatch(workers.TakeOldest());
    }
    std::unique_ptr<Batch> batch = NewBatch();
    if (!reader.Next(batch->input)) {
      break;
    }
    line_count += batch->input.line_count;
    workers.Give(std::move(batch));
    progress_->Show(reader.byte_count(), line_count);
  }
  while (!workers.IsEmpty()) {
    WriteBatch(workers.TakeOldest());
  }
  progress_->Clear();
  if (reader.error() != 0) {
    Fail(SystemProblem("cannot read " + name, reader.error()));
  }
}

std::unique_ptr<Batch> Job::NewBatch() {
  if (spare_batches_.empty()) {
    return std::make_unique<Batch>();
  }
  std::unique_ptr<Batch> batch = std::move(spare_batches_.back());
  spare_batches_.pop_back();
  return batch;
}

// Writes what became of a batch. The messages go first: they stand when the results cannot be
// written.
void Job::WriteBatch(std::unique_ptr<Batch> batch) {
  totals_.Add(batch->totals);
  if (!batch->totals.failed.empty()) {
    status_ = kFailure;
  }
  if (!batch->messages.empty()) {
    if (progress_) {
      progress_->Clear();
    }
    messages_.Write(batch->messages);
  }
  results_->Write(batch->results);
  if (rejects_) {
    rejects_->Write(batch->rejects);
  }
  batch->Clear();
  spare_batches_.push_back(std::move(batch));
}

// Closes all files and gives them their names: a file of which a part is missing gets none.
void Job::CloseFiles() {
  results_->Close();
  if (rejects_) {
    rejects_->Close();
  }
  if (is_complete_ && !HasFailedToWrite()) {
    results_->GiveName();
    if (rejects_) {
      rejects_->GiveName();
    }
  }
  Report(*results_, "cannot write the results", options_.output);
  if (rejects_) {
    Report(*rejects_, "cannot write the rejects", options_.rejects);
  }
}

void Job::Report(const Output& output, const char* action, const std::string& name) {
  if (output.error() != 0) {
    Fail(SystemProblem(name.empty() ? action : std::string(action) + " to " + Quoted(name),
                       output.error()));
  }
}

// Something is missing in the results.
void Job::Fail(std::string_view problem) {
  is_complete_ = false;
  AppendMessage(problem, messages_.text());
  status_ = kFailure;
}

}  // namespace

ExitStatus Convert(const ConvertOptions& options) { return Job(options).Run(); }

}  // namespace qeo::tool
