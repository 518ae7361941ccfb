// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <string_view>

namespace quorvelkit {

/// Converts an ASCII letter to lower case. Does not depend on the locale.
constexpr char asciiLowered(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Compares two texts and ignores the case of ASCII letters.
constexpr bool equalsIgnoringASCIICase(std::string_view a, std::string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return asciiLowered(x) == asciiLowered(y); });
}

}  // namespace quorvelkit
