#ifndef TOOLS_REPORT_TERMINAL_TABLE_H_
#define TOOLS_REPORT_TERMINAL_TABLE_H_

// Aligned columns for a terminal, and a count of what does not find room in them.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qeo::tool {

// All in cells.
inline constexpr std::size_t kScreenWidth = 80;
inline constexpr std::size_t kColumnGap = 2;  ///< before each column
inline constexpr std::size_t kLabelWidth = 15;
inline constexpr std::size_t kValueWidth = kScreenWidth - kColumnGap - kLabelWidth;

struct Column {
  const char* title;
  bool is_number;  ///< set to the right
};

/// A field for each column, as it is to be shown.
using Row = std::vector<std::string>;

/// Appends the titles and the rows of a table, and a line for the `hidden_count` rows that it has
/// beyond those.
void AppendTable(const std::vector<Column>& columns, const std::vector<Row>& rows,
                 std::size_t hidden_count, std::string& out);

/// Returns a list on one line if it fits into `cells`, else as many whole items of it as fit, and
/// how many more there are: "ni hao ... and 1 more". A first item that is too long is cut itself.
std::string FittedList(std::string_view list, std::string_view separator, std::size_t cells);

/// Appends a line of a label and a list, which is fitted into kValueWidth.
void AppendLine(std::string_view label, std::string_view list, std::string_view separator,
                std::string& out);

/// Returns a count with its noun: "1 byte", "2 bytes".
std::string Counted(std::size_t count, const char* noun);

}  // namespace qeo::tool

#endif  // TOOLS_REPORT_TERMINAL_TABLE_H_
