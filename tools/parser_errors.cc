#include "tools/parser_errors.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "tools/base/usage_error.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

// The options of the tool and of the command that was named.
std::vector<const CLI::Option*> OptionsOf(const CLI::App& app) {
  std::vector<const CLI::Option*> options = app.get_options();
  for (const CLI::App* command : app.get_subcommands()) {
    const std::vector<const CLI::Option*> own = command->get_options();
    options.insert(options.end(), own.begin(), own.end());
  }
  return options;
}

[[noreturn]] void RefuseValue(const std::string& option) {
  throw UsageError(option + " takes no value");
}

bool IsFlag(const CLI::Option& option) { return option.get_expected_max() == 0; }

// "--name=" without a value: the parser would take the next word, which was meant for another.
void CheckEmptyValues(const CLI::App& app, const Words& words) {
  for (const std::string& word : words) {
    if (word == "--") break;
    if (word.rfind("--", 0) != 0 || word.find('=') != word.size() - 1) continue;
    const std::string name = word.substr(0, word.size() - 1);
    for (const CLI::Option* option : OptionsOf(app)) {
      if (!option->check_name(name)) continue;
      if (IsFlag(*option)) RefuseValue(name);
      throw UsageError(name + ": must not be empty");
    }
  }
}

constexpr std::string_view kEndOfCommand = "++";  // to the parser, which drops it as a word

std::ptrdiff_t CountEndsOfCommand(const Words& words) {
  return std::count_if(words.begin(), words.end(), [](const std::string& word) {
    const std::size_t size = kEndOfCommand.size();
    return word.size() >= size && word.compare(word.size() - size, size, kEndOfCommand) == 0;
  });
}

// Words are the values of options, alone or at their end ("-i++"), are not known, or are lost.
void CheckLostWords(const CLI::App& app, const Words& words) {
  std::ptrdiff_t kept = CountEndsOfCommand(app.remaining(true));
  for (const CLI::Option* option : OptionsOf(app)) kept += CountEndsOfCommand(option->results());
  if (kept < CountEndsOfCommand(words)) throw UsageError("\"++\" must follow \"--\"");
}

// The commands are named, because this is the first message that a new user reads.
[[noreturn]] void RequireCommand(const CLI::App& app) {
  std::string list;
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    list += (list.empty() ? "" : ", ") + command->get_name();
  }
  throw UsageError("a command is required: " + list);
}

// The words that no option and no command has taken.
Words Strangers(const CLI::App& app) {
  Words strangers = app.remaining(true);
  strangers.erase(std::remove(strangers.begin(), strangers.end(), "--"), strangers.end());
  return strangers;
}

bool IsOption(const std::string& word) { return word.size() > 1 && word.front() == '-'; }

// "-=x" is what the parser leaves of "-q=x", and "-x" of "-qx".
[[noreturn]] void RefuseOption(const CLI::App& app, const Words& words,
                               const std::string& stranger) {
  const auto word = std::find_if(words.begin(), words.end(), [&](const std::string& candidate) {
    const std::size_t size = stranger.size() - 1;
    return IsOption(candidate) && candidate[1] != '-' && candidate.size() >= stranger.size() &&
           candidate.compare(candidate.size() - size, size, stranger, 1, size) == 0;
  });
  if (word == words.end() || *word == stranger) {
    throw UsageError("unknown option " + Quoted(stranger));
  }
  if (stranger[1] == '=') {
    const std::string flag = {'-', (*word)[word->size() - stranger.size()]};
    for (const CLI::Option* option : OptionsOf(app)) {
      if (option->check_name(flag)) RefuseValue(option->get_name());
    }
  }
  throw UsageError("unknown option " + Quoted(stranger) + " in " + Quoted(*word));
}

// An option that is not known is a likelier slip than an argument that is missing besides.
void CheckStrangers(const CLI::App& app, const Words& words) {
  const Words strangers = Strangers(app);
  const auto option = std::find_if(strangers.begin(), strangers.end(), IsOption);
  if (option != strangers.end()) RefuseOption(app, words, *option);
  if (!app.get_subcommands().empty()) return;
  if (strangers.empty()) RequireCommand(app);
  throw UsageError("unknown command " + Quoted(strangers.front()));
}

// An error of the parser names its option in its message alone.
bool IsAbout(const std::string& message, const CLI::ParseError& error) {
  return error.what() == message;
}

// An option is given twice, has no value, or is a flag and has one.
void CheckValues(const CLI::App& app, const CLI::ParseError& error) {
  for (const CLI::Option* option : OptionsOf(app)) {
    const std::string name = option->get_name();
    if (option->get_expected_max() == 1 && option->count() > 1) {
      throw UsageError(name + " is given twice");
    }
    const std::string type = option->get_type_name();
    if (IsAbout(CLI::ArgumentMismatch::TypedAtLeast(name, 1, type).what(), error)) {
      throw UsageError(std::string(name).append(" requires a value, ").append(type));
    }
    for (const std::string& long_name : option->get_lnames()) {
      if (IsAbout(CLI::ArgumentMismatch::FlagOverride(long_name).what(), error)) {
        RefuseValue("--" + long_name);
      }
    }
  }
}

}  // namespace

void CheckWords(const CLI::App& app, const Words& words) {
  CheckEmptyValues(app, words);
  CheckLostWords(app, words);
}

void RefuseWords(const CLI::App& app, const Words& words, const CLI::ParseError& error) {
  CheckWords(app, words);
  CheckValues(app, error);
  CheckStrangers(app, words);
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    throw UsageError("unexpected argument " + Quoted(Strangers(app).front()));
  }
  // What is left are the checks of this tool, which quote the value that they refuse, and options
  // that are required.
  throw UsageError(error.what());
}

}  // namespace qeo::tool
