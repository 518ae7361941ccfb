// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

using TableRow = std::vector<std::string>;

/// Prints rows of equally many columns, each as wide as its widest text; the first column is
/// aligned to the right, the others to the left.
void printTable(std::ostream& out, const std::vector<TableRow>& rows);
