// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <string_view>

namespace quorvelkit {

/// A letter in lower case, by the rules of ASCII and whatever the locale.
constexpr char asciiLowered(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether two texts are the same but for the case of their ASCII letters.
constexpr bool equalsIgnoringASCIICase(std::string_view a, std::string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return asciiLowered(x) == asciiLowered(y); });
}

}  // namespace quorvelkit
