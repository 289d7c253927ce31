// Counts cells and not bytes or characters: letters may have marks that take no room, and some take
// twice the room of others.

#include "tools/report/terminal_table.h"

#include <algorithm>

#include "tools/report/terminal_text.h"

namespace qeo::tool {
namespace {

// What replaces the part of a list that is not shown.
std::string More(std::size_t count) { return "... and " + std::to_string(count) + " more"; }

void Widen(const Row& row, std::vector<std::size_t>& widths) {
  for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], Cells(row[i]));
}

void AppendRow(const std::vector<Column>& columns, const std::vector<std::size_t>& widths,
               const Row& row, std::string& out) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string padding(widths[i] - Cells(row[i]), ' ');
    out.append(kColumnGap, ' ');
    if (columns[i].is_number) out += padding;
    out += row[i];
    if (!columns[i].is_number && i + 1 < columns.size()) out += padding;
  }
  out += '\n';
}

}  // namespace

void AppendTable(const std::vector<Column>& columns, const std::vector<Row>& rows,
                 std::size_t hidden_count, std::string& out) {
  Row titles;
  for (const Column& column : columns) titles.emplace_back(column.title);
  std::vector<std::size_t> widths(columns.size());
  Widen(titles, widths);
  for (const Row& row : rows) Widen(row, widths);
  AppendRow(columns, widths, titles, out);
  for (const Row& row : rows) AppendRow(columns, widths, row, out);
  if (hidden_count > 0) out.append(kColumnGap, ' ').append(More(hidden_count)) += '\n';
}

std::string FittedList(std::string_view list, std::string_view separator, std::size_t cells) {
  constexpr std::size_t kRoomForMore = 24;
  if (list.size() <= cells || Cells(list) <= cells) return Fitted(list, cells);
  std::size_t end = 0;  // of what is shown
  for (std::size_t next = list.find(separator); next != list.npos;) {
    if (Cells(list.substr(0, next)) + kRoomForMore > cells) break;
    end = next;
    next = list.find(separator, next + separator.size());
  }
  if (end == 0) return Fitted(list, cells);
  std::size_t more = 0;
  for (std::size_t at = end; at != list.npos; at = list.find(separator, at + separator.size())) {
    ++more;
  }
  return std::string(list.substr(0, end)) + ' ' + More(more);
}

void AppendLine(std::string_view label, std::string_view list, std::string_view separator,
                std::string& out) {
  out.append(kColumnGap, ' ').append(label).append(kLabelWidth - label.size(), ' ');
  out += FittedList(list, separator, kValueWidth) + '\n';
}

std::string Counted(std::size_t count, const char* noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

}  // namespace qeo::tool
