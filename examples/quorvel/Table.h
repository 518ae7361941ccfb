// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

using TableRow = std::vector<std::string>;

/// Prints rows that all have the same number of columns. Each column is as wide as its widest text.
/// The first column is aligned right, the others left. The texts are made printable().
void printTable(std::ostream& out, std::vector<TableRow> rows);
