#include "tools/commands/check.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string_view>
#include <vector>

#include "tools/commands/lexicon_check.h"
#include "tools/conversion/failures.h"
#include "tools/conversion/languages.h"
#include "tools/io/encodings.h"
#include "tools/io/files.h"
#include "tools/io/input.h"
#include "tools/io/output.h"
#include "tools/report/findings.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

// Without a target all is reported that a strict conversion drops.
Conversion ConversionOf(const CheckOptions& options) {
  Conversion conversion = options.conversion;
  conversion.reading.drops_silently &= options.has_target;
  return conversion;
}

// Writers of the targets: without --to of what a lexicon needs. Records have no gaps.
std::vector<notation::Writer> WritersOf(const CheckOptions& options, const Conversion& conversion) {
  std::vector<Notation> targets;
  if (!options.has_target) {
    targets = {Notation::kPronunciation};
    if (HasCodes(conversion.from())) targets.insert(targets.begin(), Notation::kCodes);
  } else if (conversion.to.records == Records::kNone) {
    targets = {conversion.to.notation};
  }
  std::vector<notation::Writer> writers;
  writers.reserve(targets.size());
  for (const Notation target : targets) writers.push_back(WriterOf(conversion, target));
  return writers;
}

class Checker {
 public:
  Checker(const CheckOptions& options, FilesInUse& in_use)
      : options_(options),
        in_use_(in_use),
        conversion_(ConversionOf(options)),
        writers_(WritersOf(options, conversion_)),
        findings_(options.is_json) {}

  ExitStatus Run();

 private:
  void CheckFile(const std::string& path);
  void CheckInput(int file_descriptor, const std::string& path);
  void CheckBlock(const Block& block);
  void CheckLine(std::uint64_t number, std::string_view line);
  void CheckText(std::uint64_t number, std::size_t offset, std::string_view text);
  void ReportBroken(std::uint64_t number, std::size_t offset, std::string_view text);
  void CheckSyllable(std::uint64_t number, std::size_t offset, const sp::SyllableInfo& syllable,
                     std::string_view written);
  void Fail(std::string_view problem);

  const CheckOptions& options_;
  FilesInUse& in_use_;
  Conversion conversion_;
  std::vector<notation::Writer> writers_;
  FindingWriter findings_;
  std::optional<LexiconCheck> lexicon_;
  Output messages_{STDERR_FILENO};
  bool has_failed_ = false;
};

ExitStatus Checker::Run() {
  if (const auto note = FallbackNote(conversion_.language, ServingLanguage(conversion_))) {
    AppendMessage(*note, messages_.text());
  }
  // All before the first is checked, so that nothing is written when one is refused. Each is looked
  // at again once it is open: a name can lead to another file then.
  for (const std::string& path : options_.files) {
    in_use_.Read(InputName(path), path == "-" ? IdOf(STDIN_FILENO) : IdOf(path));
  }
  for (const std::string& path : options_.files) CheckFile(path);
  findings_.Close();
  if (findings_.error() == EPIPE) {
    messages_.Flush();
    return kReaderGone;
  }
  if (findings_.error() != 0) Fail(SystemProblem("cannot write the findings", findings_.error()));
  messages_.Flush();
  if (has_failed_) return kUnfinished;
  return findings_.has_problems() ? kFailure : kSuccess;
}

void Checker::CheckFile(const std::string& path) {
  findings_.BeginFile(path);
  if (path == "-") return CheckInput(STDIN_FILENO, path);
  const File file = OpenFile(path, O_RDONLY);
  if (!file.IsOpen()) return Fail(SystemProblem("cannot read " + QuotedName(path), errno));
  in_use_.Read(InputName(path), IdOf(file.descriptor()));
  CheckInput(file.descriptor(), path);
}

void Checker::CheckInput(int file_descriptor, const std::string& path) {
  if (options_.is_lexicon) {
    lexicon_.emplace(PhoneLanguage(conversion_.language), conversion_.from() == Notation::kArpabet,
                     findings_);
  }
  BlockReader reader(file_descriptor);
  Block block;
  std::uint64_t line_count = 0;
  while (findings_.error() == 0 && reader.Next(block)) {
    const auto problem = line_count == 0 ? EncodingProblem(block.text) : std::nullopt;
    if (problem) return Fail("cannot read " + InputName(path) + ": " + *problem);
    line_count += block.line_count;
    CheckBlock(block);
    if (!reader.IsReady()) findings_.Flush();
  }
  if (reader.error() != 0) {
    return Fail(SystemProblem("cannot read " + InputName(path), reader.error()));
  }
  if (lexicon_) lexicon_->Finish(line_count);
}

void Checker::CheckBlock(const Block& block) {
  if (block.is_overlong) {
    if (block.is_first_part) {
      findings_.Write({block.first_line, 0, 0, "line too long",
                       "longer than " + std::to_string(kLongestLine) + " bytes", "", true});
    }
    return;
  }
  std::string_view rest = block.text;
  for (std::uint64_t number = block.first_line; !rest.empty(); ++number) {
    CheckLine(number, lexicon::TakeLine(rest).text);
  }
}

void Checker::CheckLine(std::uint64_t number, std::string_view line) {
  const lexicon::Entry entry = lexicon::ReadEntry(options_.layout, line);
  if (entry.kind == lexicon::EntryKind::kComment) return;
  if (entry.kind == lexicon::EntryKind::kBroken) return ReportBroken(number, 0, line);
  const auto offset = static_cast<std::size_t>(entry.text.data() - line.data());
  if (lexicon_) {
    lexicon_->Add(number, offset, entry);
  } else {
    CheckText(number, offset, entry.text);
  }
}

void Checker::CheckText(std::uint64_t number, std::size_t offset, std::string_view text) {
  const notation::Analysis analysis =
      notation::Analyze(conversion_.language, text, conversion_.reading);
  auto problem = analysis.problems.begin();
  const auto report_before = [&](std::size_t end) {
    for (; problem != analysis.problems.end() && problem->range.offset < end; ++problem) {
      const notation::Range place = PlaceOf(*problem);
      findings_.Write(
          {number, offset + place.offset, place.length, notation::ProblemName(problem->kind),
           DetailOf(conversion_.from(), *problem, text), problem->suggestion, true, &*problem});
    }
  };
  for (const notation::AnalyzedSyllable& syllable : analysis.syllables) {
    report_before(syllable.range.offset);
    CheckSyllable(number, offset + syllable.range.offset, syllable.syllable,
                  text.substr(syllable.range.offset, syllable.range.length));
  }
  report_before(text.size());
  if (options_.layout.HasWords() && analysis.syllables.empty() && analysis.problems.empty()) {
    ReportBroken(number, offset, text);
  }
}

// `written` is the syllable in the text, and `offset` where it is in the line.
void Checker::CheckSyllable(std::uint64_t number, std::size_t offset,
                            const sp::SyllableInfo& syllable, std::string_view written) {
  for (const notation::Writer& writer : writers_) {
    const notation::Gap gap = writer.FindGap(syllable);
    if (gap != notation::Gap::kNone) {
      return findings_.Write({number, offset, written.size(), notation::GapName(gap),
                              Quoted(written) + DetailOf(writer, gap, syllable), "", true});
    }
  }
}

// An entry without a word, or without a syllable.
void Checker::ReportBroken(std::uint64_t number, std::size_t offset, std::string_view text) {
  findings_.Write({number, offset, text.size(), "not an entry",
                   lexicon::BrokenLineProblem(options_.layout), "", true});
}

void Checker::Fail(std::string_view problem) {
  AppendMessage(problem, messages_.text());
  has_failed_ = true;
}

}  // namespace

ExitStatus Check(const CheckOptions& options, FilesInUse& in_use) {
  return Checker(options, in_use).Run();
}

}  // namespace qeo::tool
