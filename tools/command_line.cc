#include "tools/command_line.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <optional>
#include <utility>

#include "tools/encodings.h"
#include "tools/files.h"
#include "tools/help.h"
#include "tools/languages.h"
#include "tools/messages.h"
#include "tools/numbers.h"

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
     "full-width letters and digits to ASCII (pinyin, jyutping)"},
    {Rule::kPunctuation, "--no-punctuation",
     "punctuation between syllables to a space (pinyin, jyutping)"},
    {Rule::kDiaeresis, "--no-diaeresis", "u: and u with diaeresis, lue and nue to v (pinyin)"},
    {Rule::kToneMark, "--no-tone-mark", "tone marks to digits (pinyin)"},
    {Rule::kNeutralTone, "--no-neutral-tone", "tone 0 or none to 5 (pinyin)"},
    {Rule::kErhua, "--no-erhua", "r5 to er5 (pinyin)"},
    {Rule::kFusedErhua, "--no-fused-erhua", "dianr3 to dian3 er5 (pinyin)"},
    {Rule::kAbbreviation, "--no-abbreviation",
     "capitals kept apart and reported (pinyin, jyutping)"},
    {Rule::kGlued, "--no-glued", "a space between glued syllables (jyutping)"},
    {Rule::kLowerCase, "--no-lower-case", "phone names to lower case (arpabet)"},
    {Rule::kReducedVowel, "--no-reduced-vowel", "AH0 to ax (arpabet)"},
    {Rule::kMissingStress, "--no-missing-stress", "a vowel without a digit to 0 (arpabet)"},
    {Rule::kSecondStress, "--second-stress", "stress 2 to 1 (arpabet)"},
};

std::string LanguageProblem(const std::string& text) {
  return ParseLanguage(text) ? ""
                             : Quoted(text) + " is not a language; expected " + sp::KnownLanguages() +
                                   " or a language id";
}

// The rules of a notation that people write.
RuleSet RulesOf(Source from) {
  switch (from) {
    case Source::kPinyin:
      return notation::kPinyinRules;
    case Source::kJyutping:
      return notation::kJyutpingRules;
    case Source::kArpabet:
      return notation::kArpabetRules.With(Rule::kSecondStress);
    default:
      return {};
  }
}

std::string UnderstandRules(const Arguments& arguments, Reading& reading) {
  RuleSet& rules = reading.options.rules;
  for (const RuleSwitch& rule_switch : kRuleSwitches) {
    const Rule rule = rule_switch.rule;
    if (!arguments.switched[static_cast<std::size_t>(rule)]) {
      continue;
    }
    if (!RulesOf(reading.from).Has(rule)) {
      return std::string(rule_switch.option) + " has no meaning for what is read here";
    }
    rules = rules.Has(rule) ? rules.Without(rule) : rules.With(rule);
  }
  return "";
}

// Reads a small file whole. Returns the errno of a failure, or 0.
int ReadFile(const File& file, std::string& text) {
  char buffer[4096];
  ssize_t count = 0;
  while ((count = ::read(file.descriptor(), buffer, sizeof buffer)) > 0) {
    text.append(buffer, static_cast<std::size_t>(count));
  }
  return count < 0 ? errno : 0;
}

std::string ReadAliases(const std::string& path, FilesInUse& in_use,
                        notation::AliasTable& aliases) {
  const std::string action = "cannot read the aliases in " + QuotedName(path);
  const File file = OpenFile(path, O_RDONLY);
  if (!file.IsOpen()) {
    return SystemProblem(action, errno);
  }
  in_use.Read("--aliases", IdOf(file.descriptor()));
  std::string text;
  if (const int error = ReadFile(file, text); error != 0) {
    return SystemProblem(action, error);
  }
  if (const std::string problem = EncodingProblem(text); !problem.empty()) {
    return action + ": " + problem;
  }
  notation::ParsedAliases parsed = notation::AliasTable::Parse(text);
  if (!parsed.errors.empty()) {
    const notation::AliasError& first = parsed.errors.front();
    const bool is_about_field = !first.field.empty();
    return Escaped(path) + ':' + std::to_string(first.line) + ": " +
           (is_about_field ? Quoted(first.field) + first.message.substr(first.field.size() + 2)
                           : first.message);
  }
  aliases = std::move(parsed.table);
  return "";
}

// The language that a notation belongs to, when it is one's own.
std::optional<int> LanguageOf(const Arguments& arguments) {
  if (!arguments.language.empty()) {
    return ParseLanguage(arguments.language);
  }
  for (const sp::LanguageNames& language : sp::Languages()) {
    const Source source = DefaultSource(language.id, false);
    if (!arguments.from.empty() && Meaning(kSources, arguments.from) == source) {
      return language.id;
    }
  }
  return std::nullopt;
}

}  // namespace

std::string ChoiceProblem(const std::vector<std::string>& names, const std::string& text) {
  std::string list;
  for (const std::string& name : names) {
    if (name == text) {
      return "";
    }
    list += (list.empty() ? "" : ", ") + name;
  }
  return Quoted(text) + " is not one of " + list;
}

std::string CountProblem(const std::string& text) {
  if (ParseNumber<std::size_t>(text).value_or(0) > 0) {
    return "";
  }
  const bool is_large = text.find_first_not_of("0123456789") == std::string::npos &&
                        text.find_first_not_of('0') != std::string::npos;
  return Quoted(text) + (is_large ? " is too large" : " is no number from 1 on");
}

CLI::Option& AddText(CLI::App& command, const std::string& name, std::string& value,
                     const char* type, const char* help) {
  const auto problem = [](const std::string& text) {
    return std::string(text.empty() ? "nothing is given" : "");
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
  AddChoice(command, "--from", arguments.from, kSources, kFromHelp);
  command.add_flag("--strict", arguments.is_strict, kStrictHelp)->disable_flag_override();
  AddText(command, "--default-tone", arguments.default_tone, "N", kDefaultToneHelp);
}

void AddRules(CLI::App& command, Arguments& arguments) {
  AddChoice(command, "--cut", arguments.cut, kCuttings, kCutHelp);
  AddText(command, "--aliases", arguments.aliases, "FILE", kAliasesHelp);
  for (const RuleSwitch& rule_switch : kRuleSwitches) {
    const std::string name = rule_switch.option;
    const bool turns_off = name.rfind("--no-", 0) == 0;
    command
        .add_flag(name, arguments.switched[static_cast<std::size_t>(rule_switch.rule)],
                  (turns_off ? "without: " : "") + std::string(rule_switch.help))
        ->disable_flag_override()
        ->group("Rules");
  }
}

void AddLayout(CLI::App& command, Arguments& arguments) {
  AddChoice(command, "--format", arguments.format, kFormats, kFormatHelp);
  AddText(command, "--column", arguments.column, "N", kColumnHelp).check(CountProblem);
  AddChoice(command, "--headword", arguments.headword, kHeadwords, kHeadwordHelp);
}

std::string Understand(const Arguments& arguments, Reading& reading) {
  const std::optional<int> language = LanguageOf(arguments);
  if (!language) {
    return "--language is required";
  }
  reading.language = *language;
  reading.is_strict = arguments.is_strict;
  reading.from = arguments.from.empty() ? DefaultSource(*language, arguments.is_strict)
                                        : Meaning(kSources, arguments.from);
  if (arguments.is_strict && IsWritten(reading.from)) {
    reading.from = DefaultSource(*language, true);
  }
  reading.options.cutting = Meaning(kCuttings, arguments.cut);
  if (!IsWritten(reading.from)) {  // as the library reads text
    reading.options = {RuleSet(), nullptr, notation::Cutting::kForward};
  }
  std::string problem = SourceProblem(reading.language, reading.from);
  if (problem.empty()) {
    problem = UnderstandRules(arguments, reading);
  }
  const bool can_be_cut = reading.from == Source::kPinyin || reading.from == Source::kJyutping;
  if (problem.empty() && !arguments.cut.empty() && !can_be_cut) {
    problem = "--cut has no meaning for what is read here";
  }
  if (problem.empty() && !arguments.aliases.empty() && reading.from != Source::kJyutping) {
    problem = "--aliases has no meaning for what is read here";
  }
  if (problem.empty() && !arguments.default_tone.empty()) {
    problem = DefaultToneProblem(reading.language, arguments.default_tone);
    reading.default_tone = ParseNumber<int>(arguments.default_tone).value_or(0);
  }
  return problem;
}

std::string LoadAliases(const Arguments& arguments, FilesInUse& in_use, Reading& reading) {
  if (arguments.aliases.empty()) {
    return "";
  }
  reading.options.aliases = &reading.aliases;
  return ReadAliases(arguments.aliases, in_use, reading.aliases);
}

std::string Understand(const Arguments& arguments, Layout& layout) {
  constexpr std::size_t kUsualColumn = 2;
  const bool has_column = !arguments.column.empty();
  layout.format = Meaning(kFormats, arguments.format);
  if (arguments.format.empty() && has_column) {
    layout.format = Format::kTsv;
  }
  if (has_column && layout.format != Format::kTsv) {
    return "--column has a meaning with --format tsv alone";
  }
  if (!arguments.headword.empty() && layout.format != Format::kCedict) {
    return "--headword has a meaning with --format cedict alone";
  }
  layout.column = ParseNumber<std::size_t>(arguments.column).value_or(kUsualColumn);
  layout.headword = Meaning(kHeadwords, arguments.headword);
  return "";
}

}  // namespace qeo::tool
