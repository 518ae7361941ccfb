// SPDX-License-Identifier: Apache-2.0
// Prints the fault table as Markdown.
#include "tests/faults/FaultTable.h"

#include <iostream>

int main() {
  const quorvelkit::test::FaultTable table;
  std::cout << "| # | group | fault | what the call delivers |\n|---|---|---|---|\n";
  int number = 0;
  for (const auto& [name, script, expected, conditions, group] : table.rows()) {
    std::cout << "| " << ++number << " | " << group << " | " << name << " | ";
    if (expected.code < 0) {
      std::cout << "URLError " << expected.code;
    } else {
      std::cout << "status " << expected.status << (expected.code > 0 ? ", an error" : "");
    }
    if (conditions.expectedOfPost) {
      std::cout << " (of a POST: "
                << (conditions.expectedOfPost->code < 0 ? conditions.expectedOfPost->code
                                                        : conditions.expectedOfPost->status)
                << ')';
    }
    std::cout << " |\n";
  }
}
