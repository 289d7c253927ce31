// The command line of `phoneme`: reads the arguments and calls the command that they name.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <exception>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "tools/convert.h"
#include "tools/help.h"
#include "tools/inventory.h"
#include "tools/languages.h"
#include "tools/lines.h"
#include "tools/messages.h"
#include "tools/notations.h"
#include "tools/numbers.h"

namespace qeo::tool {
namespace {

// What the command line says, before it is understood.
struct Arguments {
  std::string language;
  std::string from;
  std::string to;
  std::string column;
};

template <typename Table>
std::vector<std::string> Names(const Table& table) {
  std::vector<std::string> names;
  std::transform(std::begin(table), std::end(table), std::back_inserter(names),
                 [](const auto& entry) { return entry.name; });
  return names;
}

// The notation of a name that is in the table.
template <typename Table>
auto Find(const Table& table, const std::string& name) {
  return std::find_if(std::begin(table), std::end(table),
                      [&](const auto& entry) { return entry.name == name; })
      ->notation;
}

std::string LanguageProblem(const std::string& text) {
  return ParseLanguage(text) ? "" : Quoted(text) + " is no language: " + kLanguageChoice;
}

std::string ColumnProblem(const std::string& text) {
  const bool is_column = ParseNumber<std::size_t>(text).value_or(0) > 0;
  return is_column ? "" : Quoted(text) + " is no column: 1 is the first";
}

void AddLanguage(CLI::App& command, Arguments& arguments) {
  command.add_option("-l,--language", arguments.language, kLanguageChoice)
      ->required()
      ->check(LanguageProblem)
      ->type_name("LANG")
      ->option_text("LANG (required)");
}

CLI::App& AddConvert(CLI::App& app, Arguments& arguments, int argument_count) {
  CLI::App& command = *app.add_subcommand("convert", "Convert texts from one notation to another");
  AddLanguage(command, arguments);
  command.add_option("--to", arguments.to, "syllables, phones, codes, ids or pronunciation")
      ->required()
      ->check(CLI::IsMember(Names(kTargets)))
      ->type_name("NOTATION")
      ->option_text("NOTATION (required)");
  command
      .add_option("--from", arguments.from,
                  "text (default), codes, ids or pronunciation (default for english)")
      ->check(CLI::IsMember(Names(kSources)))
      ->type_name("NOTATION")
      ->option_text("NOTATION");
  command.add_option("--column", arguments.column, kColumnHelp)
      ->check(ColumnProblem)
      ->type_name("N")
      ->option_text("N");
  // As many texts as come. Extra arguments stay off, because they would pull "[a,b]" apart.
  command
      .add_option("TEXT", CLI::callback_t(), "what to convert; the lines of standard input if none")
      ->take_all()
      ->expected(argument_count, CLI::detail::expected_max_vector_size)
      ->allow_extra_args(false)
      ->option_text(" ");
  command.footer(kConvertFooter);
  return command;
}

CLI::App& AddList(CLI::App& app, Arguments& arguments, const char* name, const char* description,
                  const char* footer) {
  CLI::App& command = *app.add_subcommand(name, description);
  AddLanguage(command, arguments);
  command.footer(footer);
  return command;
}

ExitStatus PrintMessage(const std::string& message, ExitStatus status) {
  Output messages(STDERR_FILENO);
  AppendMessage(message, messages.text());
  messages.Flush();
  return status;
}

ExitStatus PrintResult(const std::string& text) {
  Output results(STDOUT_FILENO);
  results.text() = text;
  results.Close();
  if (results.error() != 0) {
    return PrintMessage(SystemProblem("cannot write the results", results.error()), kFailure);
  }
  return kSuccess;
}

ExitStatus BadUsage(const CLI::App& app, const std::string& problem) {
  std::string command = "phoneme";
  for (const CLI::App* subcommand : app.get_subcommands()) {
    command += ' ' + subcommand->get_name();
  }
  return PrintMessage(Escaped(problem) + " (see " + command + " --help)", kBadUsage);
}

// Help goes before any other complaint, and a first word that is no command is named.
ExitStatus BadCommandLine(const CLI::App& app, const CLI::ParseError& error) {
  for (const CLI::App* command : app.get_subcommands()) {
    if (command->count("--help") > 0) {
      return PrintResult(app.help());
    }
  }
  const std::vector<std::string> strangers = app.remaining();
  if (app.get_subcommands().empty() && !strangers.empty()) {
    return BadUsage(app, "no command " + Quoted(strangers.front()));
  }
  return BadUsage(app, error.what());
}

ExitStatus RunConvert(const CLI::App& app, const Arguments& arguments,
                      const std::vector<std::string>& texts) {
  const int language = ParseLanguage(arguments.language).value();
  const Source from =
      arguments.from.empty() ? DefaultSource(language) : Find(kSources, arguments.from);
  const std::size_t column = ParseNumber<std::size_t>(arguments.column).value_or(0);
  const ConvertOptions options{{language, from, Find(kTargets, arguments.to)}, column, texts};
  const std::string problem = ConversionProblem(options.conversion);
  return problem.empty() ? Convert(options) : BadUsage(app, problem);
}

void PrintNote(int language, int serving) {
  const std::string note = FallbackNote(language, serving);
  if (!note.empty()) {
    PrintMessage(note, kSuccess);
  }
}

ExitStatus RunPhones(const Arguments& arguments) {
  const int language = ParseLanguage(arguments.language).value();
  const int serving = PhoneLanguage(language);
  PrintNote(language, serving);
  std::string list;
  AppendPhoneList(serving, list);
  return PrintResult(list);
}

ExitStatus RunSyllables(const CLI::App& app, const Arguments& arguments) {
  const int language = ParseLanguage(arguments.language).value();
  const std::optional<int> serving = SyllableLanguage(language);
  if (!serving) {
    return BadUsage(app, LanguageName(language) + " has no syllable table");
  }
  PrintNote(language, *serving);
  std::string list;
  AppendSyllableList(*serving, list);
  return PrintResult(list);
}

ExitStatus Run(int argc, char** argv) {
  Arguments arguments;
  CLI::App app(kDescription, "phoneme");
  app.require_subcommand(1);
  app.set_help_flag("-h,--help", "Print this help");
  app.set_version_flag("--version", "phoneme " PHONEME_VERSION, "Print the version");
  app.footer(kFooter);
  const CLI::App& convert = AddConvert(app, arguments, argc);
  const CLI::App& phones =
      AddList(app, arguments, "phones", "List the phones of a language", kPhonesFooter);
  AddList(app, arguments, "syllables", "List the syllables of a language", kSyllablesFooter);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return PrintResult(app.help());
  } catch (const CLI::CallForVersion& version) {
    return PrintResult(std::string(version.what()) + '\n');
  } catch (const CLI::ParseError& error) {
    return BadCommandLine(app, error);
  }
  if (convert.parsed()) {
    return RunConvert(app, arguments, convert.get_option("TEXT")->results());
  }
  return phones.parsed() ? RunPhones(arguments) : RunSyllables(app, arguments);
}

}  // namespace
}  // namespace qeo::tool

int main(int argc, char** argv) {
  try {
    return qeo::tool::Run(argc, argv);
  } catch (const std::exception& error) {  // memory has run out
    return qeo::tool::PrintMessage(error.what(), qeo::tool::kFailure);
  }
}
