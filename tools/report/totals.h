#ifndef TOOLS_REPORT_TOTALS_H_
#define TOOLS_REPORT_TOTALS_H_

// What became of the lines of a run.

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "notation/records.h"

namespace qeo::tool {

struct Totals {
  std::uint64_t converted = 0;
  std::uint64_t comments = 0;
  std::array<std::uint64_t, notation::kRuleCount> applied = {};  ///< by rule, in converted lines
  /// Failed lines by kind, each counted for the first thing that is wrong with it. The kinds are
  /// constants.
  std::map<std::string_view, std::uint64_t> failed;

  void CountRules(const std::vector<notation::Application>& applications);
  void Add(const Totals& others);
};

/// One line for the user: "3 lines: 2 converted (tone-mark 2), 1 failed (unknown syllable 1)".
std::string Summary(const Totals& totals);

}  // namespace qeo::tool

#endif  // TOOLS_REPORT_TOTALS_H_
