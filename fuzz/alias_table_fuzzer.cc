// AliasTable: read line by line with plain string functions, each line is an alias, an error or a
// comment just where Parse says so, and Find gives the aliases and no others.

#include <algorithm>
#include <map>

#include "fuzz/fuzzing.h"
#include "notation/alias_table.h"
#include "phoneme/phoneme.h"
#include "xstr/xstr.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using Aliases = std::map<std::string, std::string>;

bool IsSpelling(const std::string& field) {
  return !field.empty() && field.size() <= notation::AliasTable::kMaxLength &&
         field.find_first_not_of("abcdefghijklmnopqrstuvwxyz") == std::string::npos;
}

// Not cut into several, nor left out.
bool IsSyllable(const std::string& field) {
  std::vector<unsigned short> codes;
  const bool is_read = sp::py2code(sp::LANGUAGE_CANTONESE, field, codes) == 0;
  return is_read && codes.size() == 1 &&
         sp::code2py(sp::LANGUAGE_CANTONESE, codes[0], false) == field;
}

bool IsAlias(const std::vector<std::string>& fields) {
  return fields.size() == 2 && IsSpelling(fields[0]) && IsSpelling(fields[1]) &&
         IsSyllable(fields[1]);
}

// The numbers of the lines that are errors; the others go to `aliases`.
std::vector<std::size_t> ReadSlowly(const std::string& text, Aliases& aliases) {
  std::vector<std::size_t> errors;
  std::size_t number = 0;
  const bool has_mark = text.compare(0, 3, "\xEF\xBB\xBF") == 0;
  for (std::string line : xstr::split(has_mark ? text.substr(3) : text, "\n", 0)) {
    ++number;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') continue;
    const std::vector<std::string> fields = xstr::split(line, "\t", 0);
    const bool is_new = IsAlias(fields) && aliases.emplace(fields[0], fields[1]).second;
    if (!is_new) errors.push_back(number);
  }
  return errors;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const std::string other = input.TakePart();
  const std::string text = input.Rest();
  Aliases aliases;
  const std::vector<std::size_t> errors = ReadSlowly(text, aliases);
  const notation::ParsedAliases parsed = notation::AliasTable::Parse(text);

  Expect(std::equal(errors.begin(), errors.end(), parsed.errors.begin(), parsed.errors.end(),
                    [](std::size_t line, const notation::AliasError& error) {
                      return error.line == line && !error.message.empty();
                    }),
         "the errors are those lines");
  Expect(parsed.table.size() == aliases.size(), "the table has those aliases");
  Expect(parsed.table.empty() == aliases.empty(), "empty is a size of 0");
  for (const auto& [spelling, syllable] : aliases) {
    Expect(parsed.table.Find(spelling) == syllable, "an alias is found");
  }
  const auto found = aliases.find(other);
  Expect(parsed.table.Find(other) == (found == aliases.end() ? "" : found->second),
         "nothing else is found");
  return 0;
}
