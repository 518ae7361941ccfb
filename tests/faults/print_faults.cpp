// SPDX-License-Identifier: Apache-2.0
// Prints the fault table as Markdown.
#include "tests/faults/FaultTable.h"

#include <iostream>

int main() {
  const quorvelkit::test::FaultTable table;
  std::cout << "| # | phase | fault | what the call delivers |\n|---|---|---|---|\n";
  int number = 0;
  for (const auto& [name, script, expected, way, phase] : table.rows()) {
    std::cout << "| " << ++number << " | " << phase << " | " << name << " | ";
    if (expected.code < 0) {
      std::cout << "URLError " << expected.code;
    } else {
      std::cout << "status " << expected.status << (expected.code > 0 ? ", an error" : "");
    }
    if (way.ofPost) {
      std::cout << " (of a POST: " << (way.ofPost->code < 0 ? way.ofPost->code : way.ofPost->status)
                << ')';
    }
    std::cout << " |\n";
  }
}
