#ifndef TOOLS_COMMAND_LINE_H_
#define TOOLS_COMMAND_LINE_H_

// The options that several commands share: how they are declared, and what they mean.

#include <CLI/CLI.hpp>
#include <array>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "lexicon/lexicon.h"
#include "notation/notation.h"
#include "tools/conversion/notations.h"
#include "tools/io/files_in_use.h"

namespace qeo::tool {

/// The command line as it was given, before it is parsed.
struct Arguments {
  std::string language;
  std::string from;
  std::string to;
  std::string default_tone;
  std::string cut;
  std::string aliases;
  std::string format;
  std::string column;
  std::string headword;
  std::string input;
  std::string output;
  std::string rejects;
  std::string jobs;
  std::array<bool, notation::kRuleCount> switched = {};  ///< rules that are not as by default
  bool is_strict = false;
  bool is_quiet = false;
  bool is_json = false;
  bool is_lexicon = false;
};

void AddLanguage(CLI::App& command, Arguments& arguments, bool is_required);

/// --from, --strict and --default-tone.
void AddSource(CLI::App& command, Arguments& arguments);

/// --cut, --aliases and a switch for each rule.
void AddRules(CLI::App& command, Arguments& arguments);

/// --format, --column and --headword.
void AddLayout(CLI::App& command, Arguments& arguments);

/// A check as the parser wants it: returns why a text is not one of some names, or an empty text.
std::string ChoiceProblem(const std::vector<std::string>& names, const std::string& text);

/// An option that takes one of the names of a table.
template <typename Table>
CLI::Option& AddChoice(CLI::App& command, const std::string& name, std::string& value,
                       const Table& table, const std::string& help) {
  std::vector<std::string> names;
  names.reserve(std::size(table));
  for (const auto& entry : table) names.emplace_back(entry.name);
  return *command.add_option(name, value, help)
              ->check([names](const std::string& text) { return ChoiceProblem(names, text); })
              ->type_name("NAME")
              ->option_text("NAME");
}

/// An option that takes a text of any sort.
CLI::Option& AddText(CLI::App& command, const std::string& name, std::string& value,
                     const char* type, const char* help);

/// The name that a table has for a meaning.
template <typename Table, typename Value>
std::string NameOf(const Table& table, Value meaning) {
  auto entry = std::begin(table);
  while (entry->meaning != meaning) ++entry;
  return entry->name;
}

/// What a name of a table means; the first entry when none is given.
template <typename Table>
auto Meaning(const Table& table, const std::string& name) {
  for (const auto& entry : table) {
    if (name == entry.name) return entry.meaning;
  }
  return std::begin(table)->meaning;
}

/// How texts are to be read, and all that this refers to.
struct SourceOptions {
  int language = 0;
  notation::AliasTable aliases;
  notation::AnalysisOptions reading;  ///< refers to `aliases`; its notation is set

  SourceOptions() = default;
  SourceOptions(const SourceOptions&) = delete;
  SourceOptions& operator=(const SourceOptions&) = delete;
};

/// Parses the options of AddLanguage, AddSource and AddRules into `options`, which is as it was
/// constructed. Throws UsageError.
void ParseSource(const Arguments& arguments, SourceOptions& options);

/// Parses the options of AddLayout. Throws UsageError.
lexicon::Layout ParseLayout(const Arguments& arguments);

/// The table of --aliases cannot be read. The message is ready for a terminal.
class AliasesError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Loads the table of --aliases, if there is one, for `options`. Throws AliasesError, and
/// UsageError when the file is written.
void LoadAliases(const Arguments& arguments, FilesInUse& in_use, SourceOptions& options);

/// The same: why a text is not a positive number.
std::string CountProblem(const std::string& text);

}  // namespace qeo::tool

#endif  // TOOLS_COMMAND_LINE_H_
