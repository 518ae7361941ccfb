// SPDX-License-Identifier: Apache-2.0
#include "Table.h"

#include <algorithm>
#include <cstddef>
#include <ostream>

namespace {

/// Characters, not bytes.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

}  // namespace

void printTable(std::ostream& out, const std::vector<TableRow>& rows) {
  if (rows.empty()) return;
  std::vector<std::size_t> widths(rows.front().size());
  for (const TableRow& row : rows) {
    for (std::size_t at = 0; at < row.size(); ++at) {
      widths[at] = std::max(widths[at], widthOf(row[at]));
    }
  }
  for (const TableRow& row : rows) {
    std::string line = std::string(widths[0] - widthOf(row[0]), ' ') + row[0];
    for (std::size_t at = 1; at < row.size(); ++at) {
      line += "  " + row[at] + std::string(widths[at] - widthOf(row[at]), ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  }
}
