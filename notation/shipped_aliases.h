#ifndef NOTATION_SHIPPED_ALIASES_H_
#define NOTATION_SHIPPED_ALIASES_H_

// The table of data/jyutping_aliases.tsv as the library knows it, which opens no files: for the
// hint that a spelling is in it. Not installed.

#include <string_view>

namespace qeo::notation::internal {

struct ShippedAlias {
  std::string_view spelling;
  std::string_view syllable;
};

inline constexpr ShippedAlias kShippedAliases[] = {
    {"aak", "ngaak"}, {"aam", "ngaam"}, {"aang", "ngaang"}, {"aap", "ngaap"}, {"ai", "ngai"},
    {"an", "ngan"},   {"ap", "ngap"},   {"at", "ngat"},     {"ok", "ngok"},   {"ni", "nei"},
    {"gwu", "gu"},    {"gwui", "gui"},  {"gwun", "gun"},    {"kwu", "ku"},    {"kwui", "kui"},
    {"kwut", "kut"},  {"a", "aa"},      {"ga", "gaa"},      {"la", "laa"},    {"ma", "maa"},
};

}  // namespace qeo::notation::internal

#endif  // NOTATION_SHIPPED_ALIASES_H_
