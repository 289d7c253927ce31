#include "notation/alias_table.h"

#include <algorithm>
#include <utility>

#include "notation/syllable_set.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

static_assert(AliasTable::kMaxLength == internal::kMaxPackedLength,
              "the normaliser looks up packed spellings");

struct Alias {
  std::string spelling;
  std::string syllable;
};

bool IsSpelling(std::string_view field) {
  return !field.empty() && field.size() <= AliasTable::kMaxLength &&
         std::all_of(field.begin(), field.end(), ascii::IsSmall);
}

// Takes the first line off a text, without its line end.
std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

AliasError FieldError(std::string_view field, const char* problem) {
  std::string copy(field);
  return {0, '"' + copy + "\" " + problem, std::move(copy)};
}

// Reads the alias of a line; what is wrong with it, or an error without a message.
AliasError ReadAlias(std::string_view line, Alias& alias) {
  const std::size_t tab = line.find('\t');
  if (tab == line.npos) return {0, "there is no tab between a spelling and its syllable", {}};
  const std::string_view spelling = line.substr(0, tab);
  const std::string_view syllable = line.substr(tab + 1);
  if (syllable.find('\t') != syllable.npos) return {0, "there is more than one tab", {}};
  if (!IsSpelling(spelling)) {
    return FieldError(spelling, "is not a spelling of 1 to 8 small letters");
  }
  const internal::SyllableSet& syllables = internal::SyllableSet::Of(sp::LANGUAGE_CANTONESE);
  if (!IsSpelling(syllable) || !syllables.Has(internal::Pack(syllable))) {
    return FieldError(syllable, "is not a syllable of Jyutping");
  }
  alias = {std::string(spelling), std::string(syllable)};
  return {};
}

}  // namespace

ParsedAliases AliasTable::Parse(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
  if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    text.remove_prefix(kByteOrderMark.size());
  }
  ParsedAliases parsed;
  for (std::size_t line_number = 1; !text.empty(); ++line_number) {
    const std::string_view line = TakeLine(text);
    if (line.empty() || line.front() == '#') continue;
    Alias alias;
    AliasError error = ReadAlias(line, alias);
    if (error.message.empty() &&
        !parsed.table.aliases_.emplace(alias.spelling, alias.syllable).second) {
      error = FieldError(alias.spelling, "is replaced in an earlier line");
    }
    error.line = line_number;
    if (!error.message.empty()) parsed.errors.push_back(std::move(error));
  }
  return parsed;
}

std::string_view AliasTable::Find(std::string_view spelling) const {
  const auto place = aliases_.find(spelling);
  return place == aliases_.end() ? std::string_view() : std::string_view(place->second);
}

}  // namespace qeo::notation
