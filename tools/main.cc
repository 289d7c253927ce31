// The command line of `phoneme`: reads the arguments and calls the command that they name.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/base/decimal.h"
#include "tools/base/exit_status.h"
#include "tools/base/usage_error.h"
#include "tools/command_line.h"
#include "tools/commands/check.h"
#include "tools/commands/convert.h"
#include "tools/commands/explain.h"
#include "tools/commands/language_tables.h"
#include "tools/conversion/languages.h"
#include "tools/conversion/notations.h"
#include "tools/help.h"
#include "tools/io/files.h"
#include "tools/io/files_in_use.h"
#include "tools/io/output.h"
#include "tools/parser_errors.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

constexpr std::size_t kMostJobs = 256;

std::string JobsProblem(const std::string& text) {
  std::string problem = CountProblem(text);
  if (!problem.empty() || *ParseNumber<std::size_t>(text) <= kMostJobs) return problem;
  return "must be at most " + std::to_string(kMostJobs) + ", not " + Quoted(text);
}

// The texts of a command that reads files when there are none. Extra arguments stay off, because
// they would pull "[a,b]" apart.
void AddTexts(CLI::App& command, const char* name, const char* help, int argument_count) {
  command.add_option(name, CLI::callback_t(), help)
      ->take_all()
      ->expected(argument_count, CLI::detail::expected_max_vector_size)
      ->allow_extra_args(false)
      ->option_text(" ");
}

CLI::App& AddConvert(CLI::App& app, Arguments& arguments, int argument_count) {
  CLI::App& command = *app.add_subcommand("convert", "Convert texts from one notation to another");
  AddLanguage(command, arguments, false);
  AddChoice(command, "--to", arguments.to, Targets(), kToHelp)
      .required()
      ->option_text("NAME (required)");
  AddSource(command, arguments);
  AddRules(command, arguments);
  AddLayout(command, arguments);
  AddText(command, "-i,--input", arguments.input, "FILE",
          "read lines from FILE; \"-\" is standard input");
  AddText(command, "-o,--output", arguments.output, "FILE", kOutputHelp);
  AddText(command, "--rejects", arguments.rejects, "FILE", kRejectsHelp);
  AddText(command, "-j,--jobs", arguments.jobs, "N", "convert with N threads (default 1)")
      .check(JobsProblem);
  command.add_flag("-q,--quiet", arguments.is_quiet, "print no progress bar and no totals")
      ->disable_flag_override();
  AddTexts(command, "TEXT", "the texts to convert (default: lines of standard input)",
           argument_count);
  command.footer(kConvertFooter);
  return command;
}

CLI::App& AddCheck(CLI::App& app, Arguments& arguments, int argument_count) {
  CLI::App& command = *app.add_subcommand("check", "Report what in a file cannot be converted");
  AddLanguage(command, arguments, false);
  AddChoice(command, "--to", arguments.to, Targets(), kCheckToHelp);
  AddSource(command, arguments);
  AddRules(command, arguments);
  AddLayout(command, arguments);
  command.add_flag("--lexicon", arguments.is_lexicon, kLexiconHelp)->disable_flag_override();
  command.add_flag("--json", arguments.is_json, "print a JSON object per line")
      ->disable_flag_override();
  AddTexts(command, "FILE", "the files to check; \"-\" is standard input", argument_count);
  command.get_option("FILE")->required();
  command.footer(kCheckFooter);
  return command;
}

CLI::App& AddExplain(CLI::App& app, Arguments& arguments) {
  CLI::App& command = *app.add_subcommand("explain", "Show how a text is read");
  AddLanguage(command, arguments, true);
  AddRules(command, arguments);
  command.add_option("TEXT", arguments.input, "the text")->required()->option_text(" ");
  command.footer(kExplainFooter);
  return command;
}

CLI::App& AddList(CLI::App& app, Arguments& arguments, const char* name, const char* description,
                  const char* footer) {
  CLI::App& command = *app.add_subcommand(name, description);
  AddLanguage(command, arguments, true);
  command.footer(footer);
  return command;
}

ExitStatus PrintMessage(const std::string& message, ExitStatus status, int stream = STDERR_FILENO) {
  Output messages(stream);
  AppendMessage(message, messages.text());
  messages.Flush();
  return status;
}

ExitStatus PrintResult(const std::string& text) {
  Output results(STDOUT_FILENO);
  results.text() = text;
  results.Close();
  if (results.error() == EPIPE) return kReaderGone;
  if (results.error() != 0) {
    return PrintMessage(SystemProblem("cannot write the results", results.error()), kUnfinished);
  }
  return kSuccess;
}

// The problem, and where to read more.
ExitStatus PrintUsageError(const CLI::App& app, const UsageError& error) {
  std::string command = "phoneme";
  for (const CLI::App* subcommand : app.get_subcommands()) command += ' ' + subcommand->get_name();
  const bool can_use_error = !error.is_about_standard_error();
  if (!can_use_error && IdOf(STDOUT_FILENO) == IdOf(STDERR_FILENO)) {
    return kBadUsage;  // a message would change the file that it is about
  }
  return PrintMessage(error.what() + (" (see " + command) + " --help)", kBadUsage,
                      can_use_error ? STDERR_FILENO : STDOUT_FILENO);
}

// The texts of a conversion and its other options taken together.
void CheckTexts(const Arguments& arguments, const std::vector<std::string>& texts,
                const lexicon::Layout& layout) {
  if (!texts.empty() && !arguments.input.empty()) {
    throw UsageError("texts and --input cannot be combined");
  }
  const bool has_line_end = std::any_of(texts.begin(), texts.end(), [](const std::string& text) {
    return text.find('\n') != std::string::npos;
  });
  if (has_line_end && layout.format != lexicon::Format::kLines) {
    throw UsageError("a text must not contain a line end with --format " +
                     NameOf(lexicon::kFormats, layout.format));
  }
}

// The conversion without its aliases, which are loaded once all options are checked.
Conversion ConversionOf(const Arguments& arguments, const SourceOptions& source) {
  return {source.language, Meaning(Targets(), arguments.to), source.reading};
}

ExitStatus RunConvert(const Arguments& arguments, const std::vector<std::string>& texts) {
  SourceOptions source;
  ParseSource(arguments, source);
  ConvertOptions options;
  options.layout = ParseLayout(arguments);
  options.conversion = ConversionOf(arguments, source);
  CheckConversion(options.conversion);
  CheckTexts(arguments, texts, options.layout);
  FilesInUse in_use;
  LoadAliases(arguments, in_use, source);
  options.conversion.reading = source.reading;
  options.texts = texts;
  options.input = arguments.input;
  options.output = arguments.output;
  options.rejects = arguments.rejects;
  options.jobs = ParseNumber<std::size_t>(arguments.jobs).value_or(1);
  options.is_quiet = arguments.is_quiet;
  return Convert(options, in_use);
}

lexicon::Layout ParseLexiconLayout(const Arguments& arguments) {
  lexicon::Layout layout = ParseLayout(arguments);
  if (arguments.format.empty() && arguments.column.empty()) layout.format = lexicon::Format::kKaldi;
  if (!layout.HasWords()) {
    throw UsageError("--lexicon applies to --format kaldi, cmudict and cedict only");
  }
  if (!arguments.to.empty()) throw UsageError("--lexicon and --to cannot be combined");
  return layout;
}

ExitStatus RunCheck(const Arguments& arguments, const std::vector<std::string>& files) {
  SourceOptions source;
  ParseSource(arguments, source);
  CheckOptions options;
  options.layout = arguments.is_lexicon ? ParseLexiconLayout(arguments) : ParseLayout(arguments);
  options.conversion = ConversionOf(arguments, source);
  options.has_target = !arguments.to.empty();
  if (options.has_target) CheckConversion(options.conversion);
  FilesInUse in_use;
  LoadAliases(arguments, in_use, source);
  options.conversion.reading = source.reading;
  options.is_lexicon = arguments.is_lexicon;
  options.is_json = arguments.is_json;
  options.files = files;
  return Check(options, in_use);
}

ExitStatus RunExplain(const Arguments& arguments) {
  SourceOptions source;
  ParseSource(arguments, source);
  if (!IsWritten(*source.reading.notation)) {
    throw UsageError("language " + LanguageName(source.language) + " is not known");
  }
  FilesInUse in_use;
  LoadAliases(arguments, in_use, source);
  std::string explanation;
  const bool is_read =
      AppendExplanation(source.language, arguments.input, source.reading, explanation);
  if (!is_read && IsRegularFile(arguments.input)) {
    PrintMessage("note: " + QuotedName(arguments.input) + " is a file; use check to read it",
                 kSuccess);
  }
  return PrintResult(explanation);
}

void PrintNote(int language, int serving) {
  if (const auto note = FallbackNote(language, serving)) PrintMessage(*note, kSuccess);
}

ExitStatus RunPhones(const Arguments& arguments) {
  const int language = ParseLanguage(arguments.language).value();
  const int serving = PhoneLanguage(language);
  PrintNote(language, serving);
  std::string list;
  AppendPhoneList(serving, list);
  return PrintResult(list);
}

ExitStatus RunSyllables(const Arguments& arguments) {
  const int language = ParseLanguage(arguments.language).value();
  const std::optional<int> serving = SyllableLanguage(language);
  if (!serving) throw UsageError(LanguageName(language) + " has no syllable table");
  PrintNote(language, *serving);
  std::string list;
  AppendSyllableList(*serving, list);
  return PrintResult(list);
}

// Parses the words of the command line; returns what the parser prints instead of running a
// command.
std::optional<std::string> Parse(CLI::App& app, int argc, char** argv) {
  const Words words(argv + std::min(argc, 1), argv + argc);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return app.help();
  } catch (const CLI::CallForVersion& version) {
    return std::string(version.what()) + '\n';
  } catch (const CLI::ParseError& error) {
    for (const CLI::App* command : app.get_subcommands()) {
      if (command->count("--help") > 0) {
        return app.help();  // before any complaint
      }
    }
    RefuseWords(app, words, error);
  }
  CheckWords(app, words);
  return std::nullopt;
}

ExitStatus Run(int argc, char** argv) {
  Arguments arguments;
  CLI::App app(kDescription, "phoneme");
  app.require_subcommand(1);
  app.set_help_flag("-h,--help", "Print this help");
  app.set_version_flag("--version", "phoneme " PHONEME_VERSION, "Print the version")
      ->disable_flag_override();
  app.footer(kFooter);
  const CLI::App& convert = AddConvert(app, arguments, argc);
  const CLI::App& check = AddCheck(app, arguments, argc);
  const CLI::App& explain = AddExplain(app, arguments);
  const CLI::App& phones =
      AddList(app, arguments, "phones", "List the phones of a language", kPhonesFooter);
  AddList(app, arguments, "syllables", "List the syllables of a language", kSyllablesFooter);
  try {
    if (const auto text = Parse(app, argc, argv)) return PrintResult(*text);
    if (convert.parsed()) return RunConvert(arguments, convert.get_option("TEXT")->results());
    if (check.parsed()) return RunCheck(arguments, check.get_option("FILE")->results());
    if (explain.parsed()) return RunExplain(arguments);
    return phones.parsed() ? RunPhones(arguments) : RunSyllables(arguments);
  } catch (const UsageError& error) {
    return PrintUsageError(app, error);
  } catch (const AliasesError& error) {
    return PrintMessage(error.what(), kUnfinished);
  }
}

// Takes no memory: there may be none.
ExitStatus PrintFailure(std::string_view what) {
  Output messages(STDERR_FILENO);
  for (const std::string_view part :
       {std::string_view("phoneme: "), what, std::string_view("\n")}) {
    messages.Write(part);
  }
  return kUnfinished;
}

// Runs the tool, of which nothing is left open or unfinished afterwards.
ExitStatus RunToTheEnd(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::bad_alloc&) {
    return PrintFailure("out of memory");
  } catch (const std::exception& error) {
    return PrintFailure(error.what());
  }
}

}  // namespace
}  // namespace qeo::tool

int main(int argc, char** argv) {
  // A reader that has gone and a full disk are errors of write(2), after which files are removed.
  const bool ignores_pipe = std::signal(SIGPIPE, SIG_IGN) == SIG_IGN;
  std::signal(SIGXFSZ, SIG_IGN);
  const qeo::tool::ExitStatus status = qeo::tool::RunToTheEnd(argc, argv);
  if (status != qeo::tool::kReaderGone) return status;
  if (!ignores_pipe) {
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
  }
  return qeo::tool::kUnfinished;
}
