#include "tools/report/totals.h"

#include <cstddef>

#include "tools/base/decimal.h"

namespace qeo::tool {
namespace {

// Appends "NAME COUNT" to a list in parentheses, which the caller closes.
void AppendCount(std::string_view name, std::uint64_t count, std::string& list) {
  list += list.empty() ? " (" : ", ";
  list += name;
  list += ' ';
  AppendNumber(count, list);
}

std::string Closed(std::string list) {
  if (!list.empty()) list += ')';
  return list;
}

}  // namespace

void Totals::CountRules(const std::vector<notation::Application>& applications) {
  for (const notation::Application& application : applications) {
    ++applied[static_cast<std::size_t>(application.rule)];
  }
}

void Totals::Add(const Totals& others) {
  converted += others.converted;
  comments += others.comments;
  for (std::size_t i = 0; i < applied.size(); ++i) applied[i] += others.applied[i];
  for (const auto& [kind, count] : others.failed) failed[kind] += count;
}

std::string Summary(const Totals& totals) {
  std::string rules;
  for (std::size_t i = 0; i < totals.applied.size(); ++i) {
    if (totals.applied[i] != 0) {
      AppendCount(notation::RuleName(static_cast<notation::Rule>(i)), totals.applied[i], rules);
    }
  }
  std::string kinds;
  std::uint64_t failed = 0;
  for (const auto& [kind, count] : totals.failed) {
    AppendCount(kind, count, kinds);
    failed += count;
  }
  const std::uint64_t lines = totals.converted + totals.comments + failed;
  std::string summary = std::to_string(lines) + (lines == 1 ? " line: " : " lines: ") +
                        std::to_string(totals.converted) + " converted" + Closed(rules);
  if (totals.comments != 0) {
    summary += ", " + std::to_string(totals.comments) + " empty or comments";
  }
  return summary + ", " + std::to_string(failed) + " failed" + Closed(kinds);
}

}  // namespace qeo::tool
