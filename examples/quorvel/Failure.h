// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iostream>
#include <string>

/// Tells why the program fails; returns its exit code.
inline int fail(const std::string& problem) {
  std::cerr << "quorvel: " << problem << '\n';
  return 1;
}
