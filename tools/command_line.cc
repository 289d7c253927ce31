#include "tools/command_line.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <optional>
#include <utility>

#include "tools/base/decimal.h"
#include "tools/base/usage_error.h"
#include "tools/conversion/languages.h"
#include "tools/help.h"
#include "tools/io/encodings.h"
#include "tools/io/files.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

using notation::Rule;
using notation::RuleSet;

struct RuleSwitch {
  Rule rule;
  const char* option;
  const char* help;
};

// A rule that is in use by default has a switch that begins with "no". Aliases need their table.
constexpr RuleSwitch kRuleSwitches[] = {
    {Rule::kFullWidth, "--no-full-width",
     "do not read full-width letters and digits as ASCII\n(pinyin, jyutping)"},
    {Rule::kPunctuation, "--no-punctuation",
     "do not read punctuation between syllables as a space\n(pinyin, jyutping)"},
    {Rule::kDiaeresis, "--no-diaeresis",
     "do not read u: and u with diaeresis as v, nor lue and nue as\nlve and nve (pinyin)"},
    {Rule::kToneMark, "--no-tone-mark", "do not read tone marks as digits (pinyin)"},
    {Rule::kNeutralTone, "--no-neutral-tone", "do not read tone 0 or a missing tone as 5 (pinyin)"},
    {Rule::kErhua, "--no-erhua", "do not read r5 as er5 (pinyin)"},
    {Rule::kFusedErhua, "--no-fused-erhua", "do not read dianr3 as dian3 er5 (pinyin)"},
    {Rule::kAbbreviation, "--no-abbreviation",
     "do not report capitals as foreign text (pinyin, jyutping)"},
    {Rule::kGlued, "--no-glued", "do not put a space between glued syllables (jyutping)"},
    {Rule::kLowerCase, "--no-lower-case", "do not read HH as hh (arpabet)"},
    {Rule::kReducedVowel, "--no-reduced-vowel", "do not read AH0 as ax (arpabet)"},
    {Rule::kMissingStress, "--no-missing-stress",
     "do not read a vowel without a digit as stress 0 (arpabet)"},
    {Rule::kSecondStress, "--second-stress", "read stress 2 as 1 (arpabet)"},
};

std::string LanguageProblem(const std::string& text) {
  return ParseLanguage(text) ? ""
                             : Quoted(text) + " is not a language; expected " +
                                   sp::KnownLanguages() + " or a language id";
}

[[noreturn]] void RefuseFor(Notation from, const std::string& option) {
  throw UsageError(option + " does not apply to " + std::string(notation::FactsOf(from).name) +
                   " input");
}

void SwitchRules(const Arguments& arguments, Notation from, SourceOptions& options) {
  RuleSet& rules = options.reading.rules;
  for (const RuleSwitch& rule_switch : kRuleSwitches) {
    const Rule rule = rule_switch.rule;
    if (!arguments.switched[static_cast<std::size_t>(rule)]) continue;
    if (!notation::FactsOf(from).rules.Has(rule)) RefuseFor(from, rule_switch.option);
    rules = rules.Has(rule) ? rules.Without(rule) : rules.With(rule);
  }
}

constexpr std::size_t kLongestAliases = std::size_t{16} << 20;

// Reads a small file whole, or more than kLongestAliases of a large one. Returns the errno of a
// failure, or 0.
int ReadFile(const File& file, std::string& text) {
  char buffer[4096];
  ssize_t count = 0;
  while (text.size() <= kLongestAliases &&
         (count = ::read(file.descriptor(), buffer, sizeof buffer)) > 0) {
    text.append(buffer, static_cast<std::size_t>(count));
  }
  return count < 0 ? errno : 0;
}

notation::AliasTable ReadAliases(const std::string& path, FilesInUse& in_use) {
  const std::string action = "cannot read the aliases in " + QuotedName(path);
  const File file = OpenFile(path, O_RDONLY);
  if (!file.IsOpen()) throw AliasesError(SystemProblem(action, errno));
  in_use.Read("--aliases", IdOf(file.descriptor()));
  std::string text;
  if (const int error = ReadFile(file, text); error != 0) {
    throw AliasesError(SystemProblem(action, error));
  }
  if (text.size() > kLongestAliases) {
    throw AliasesError(action + ": the alias table is longer than " +
                       std::to_string(kLongestAliases) + " bytes");
  }
  if (const auto problem = EncodingProblem(text, ">NEW")) {
    throw AliasesError(action + ": " + *problem);
  }
  notation::ParsedAliases parsed = notation::AliasTable::Parse(text);
  if (!parsed.errors.empty()) {
    const notation::AliasError& first = parsed.errors.front();
    const bool is_about_field = !first.field.empty();
    throw AliasesError(Escaped(path) + ':' + std::to_string(first.line) + ": " +
                       (is_about_field
                            ? Quoted(first.field) + first.message.substr(first.field.size() + 2)
                            : first.message));
  }
  return std::move(parsed.table);
}

// The language that a notation belongs to, when it is one's own.
std::optional<int> LanguageOf(const Arguments& arguments) {
  if (!arguments.language.empty()) return ParseLanguage(arguments.language);
  for (const sp::LanguageNames& language : sp::Languages()) {
    const Notation source = DefaultSource(language.id, false);
    if (!arguments.from.empty() && Meaning(Sources(), arguments.from) == source) return language.id;
  }
  return std::nullopt;
}

}  // namespace

std::string ChoiceProblem(const std::vector<std::string>& names, const std::string& text) {
  std::string list;
  for (const std::string& name : names) {
    if (name == text) return "";
    list += (list.empty() ? "" : ", ") + name;
  }
  return Quoted(text) + " is not one of " + list;
}

std::string CountProblem(const std::string& text) {
  if (ParseNumber<std::size_t>(text).value_or(0) > 0) return "";
  const bool is_large = text.find_first_not_of("0123456789") == std::string::npos &&
                        text.find_first_not_of('0') != std::string::npos;
  return is_large ? Quoted(text) + " is too large"
                  : "must be a positive integer, not " + Quoted(text);
}

CLI::Option& AddText(CLI::App& command, const std::string& name, std::string& value,
                     const char* type, const char* help) {
  const auto problem = [](const std::string& text) {
    return std::string(text.empty() ? "must not be empty" : "");
  };
  return *command.add_option(name, value, help)->check(problem)->type_name(type)->option_text(type);
}

void AddLanguage(CLI::App& command, Arguments& arguments, bool is_required) {
  AddText(command, "-l,--language", arguments.language, "LANG", kLanguageChoice)
      .check(LanguageProblem)
      ->required(is_required)
      ->option_text(is_required ? "LANG (required)" : "LANG");
}

void AddSource(CLI::App& command, Arguments& arguments) {
  AddChoice(command, "--from", arguments.from, Sources(), kFromHelp);
  command.add_flag("--strict", arguments.is_strict, kStrictHelp)->disable_flag_override();
  AddText(command, "--default-tone", arguments.default_tone, "N", kDefaultToneHelp);
}

void AddRules(CLI::App& command, Arguments& arguments) {
  AddChoice(command, "--cut", arguments.cut, kCuttings, kCutHelp);
  AddText(command, "--aliases", arguments.aliases, "FILE", kAliasesHelp);
  for (const RuleSwitch& rule_switch : kRuleSwitches) {
    const std::string name = rule_switch.option;
    command
        .add_flag(name, arguments.switched[static_cast<std::size_t>(rule_switch.rule)],
                  rule_switch.help)
        ->disable_flag_override()
        ->group("Rules");
  }
}

void AddLayout(CLI::App& command, Arguments& arguments) {
  AddChoice(command, "--format", arguments.format, lexicon::kFormats, kFormatHelp);
  AddText(command, "--column", arguments.column, "N", kColumnHelp).check(CountProblem);
  AddChoice(command, "--headword", arguments.headword, lexicon::kHeadwords, kHeadwordHelp);
}

void ParseSource(const Arguments& arguments, SourceOptions& options) {
  const std::optional<int> language = LanguageOf(arguments);
  if (!language) throw UsageError("--language is required");
  options.language = *language;
  const bool strict = arguments.is_strict;
  Notation from = arguments.from.empty() ? DefaultSource(*language, strict)
                                         : Meaning(Sources(), arguments.from);
  if (strict && IsWritten(from)) from = DefaultSource(*language, true);
  CheckSource(*language, from);
  options.reading.notation = from;
  options.reading.drops_silently = strict;
  options.reading.cutting = Meaning(kCuttings, arguments.cut);
  SwitchRules(arguments, from, options);
  const bool can_be_cut = from == Notation::kPinyin || from == Notation::kJyutping;
  if (!arguments.cut.empty() && !can_be_cut) RefuseFor(from, "--cut");
  if (!arguments.aliases.empty() && from != Notation::kJyutping) RefuseFor(from, "--aliases");
  if (!arguments.default_tone.empty()) {
    options.reading.default_tone = ParseDefaultTone(*language, arguments.default_tone);
  }
}

lexicon::Layout ParseLayout(const Arguments& arguments) {
  const bool has_column = !arguments.column.empty();
  lexicon::Layout layout;
  layout.format = lexicon::FormatOfName(arguments.format).value_or(layout.format);
  if (arguments.format.empty() && has_column) layout.format = lexicon::Format::kTsv;
  if (has_column && layout.format != lexicon::Format::kTsv) {
    throw UsageError("--column applies to --format tsv only");
  }
  if (!arguments.headword.empty() && layout.format != lexicon::Format::kCedict) {
    throw UsageError("--headword applies to --format cedict only");
  }
  layout.column = ParseNumber<std::size_t>(arguments.column).value_or(layout.column);
  layout.headword = lexicon::HeadwordOfName(arguments.headword).value_or(layout.headword);
  return layout;
}

void LoadAliases(const Arguments& arguments, FilesInUse& in_use, SourceOptions& options) {
  if (arguments.aliases.empty()) return;
  options.aliases = ReadAliases(arguments.aliases, in_use);
  options.reading.aliases = &options.aliases;
}

}  // namespace qeo::tool
