// SPDX-License-Identifier: Apache-2.0
#include "Table.h"

#include "ServerText.h"

#include <algorithm>
#include <cstddef>
#include <ostream>

namespace {

/// Counts characters, not bytes.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

}  // namespace

void printTable(std::ostream& out, std::vector<TableRow> rows) {
  for (TableRow& row : rows)
    for (std::string& text : row)
      text = printable(text);
  if (rows.empty()) return;
  std::vector<std::size_t> widths(rows.front().size());
  for (const TableRow& row : rows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], widthOf(row[column]));
    }
  }
  for (const TableRow& row : rows) {
    std::string line = std::string(widths[0] - widthOf(row[0]), ' ') + row[0];
    for (std::size_t column = 1; column < row.size(); ++column) {
      line += "  " + row[column] + std::string(widths[column] - widthOf(row[column]), ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  }
}
