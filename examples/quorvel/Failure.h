// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iostream>
#include <string>

/// The exit code after wrong arguments.
constexpr int usageError = 2;

/// Writes an error message to standard error. Returns the exit code 1.
inline int fail(const std::string& message) {
  std::cerr << "quorvel: " << message << '\n';
  return 1;
}
