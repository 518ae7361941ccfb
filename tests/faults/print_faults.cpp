// SPDX-License-Identifier: Apache-2.0
// Prints the fault table as Markdown.
#include "tests/faults/FaultTable.h"

#include <iostream>

using namespace quorvelkit::test;

namespace {

std::string textOf(const Expected& expected) {
  if (expected.code < 0) return "URLError " + std::to_string(expected.code);
  return "status " + std::to_string(expected.status) + (expected.code > 0 ? ", an error" : "");
}

}  // namespace

int main() {
  const FaultTable table;
  std::cout << "| # | group | fault | what the call delivers |\n|---|---|---|---|\n";
  int number = 0;
  for (const auto& [name, script, expected, conditions, group] : table.rows()) {
    std::cout << "| " << ++number << " | " << group << " | " << name << " | " << textOf(expected);
    const auto& ofPost = conditions.expectedOfPost;
    std::cout << (ofPost ? " (of a POST: " + textOf(*ofPost) + ")" : "") << " |\n";
  }
}
