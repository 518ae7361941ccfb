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

/// Returns the text without spaces, tabs and line ends at its ends.
constexpr std::string_view trimmed(std::string_view text) noexcept {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(blanks);
  if (begin == text.npos) return {};
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

}  // namespace quorvelkit
