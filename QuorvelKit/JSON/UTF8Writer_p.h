// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace quorvelkit::detail {

// Writes a Unicode scalar value as UTF-8 (RFC 3629). Returns the number of bytes, at most 4.
constexpr std::size_t encodeUTF8(char32_t character, char* bytes) noexcept {
  const auto continuation = [&](unsigned shift) {
    return static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
  };
  if (character < 0x80) {
    bytes[0] = static_cast<char>(character);
    return 1;
  }
  if (character < 0x800) {
    bytes[0] = static_cast<char>(0xC0U | (character >> 6U));
    bytes[1] = continuation(0);
    return 2;
  }
  if (character < 0x10000) {
    bytes[0] = static_cast<char>(0xE0U | (character >> 12U));
    bytes[1] = continuation(6);
    bytes[2] = continuation(0);
    return 3;
  }
  bytes[0] = static_cast<char>(0xF0U | (character >> 18U));
  bytes[1] = continuation(12);
  bytes[2] = continuation(6);
  bytes[3] = continuation(0);
  return 4;
}

}  // namespace quorvelkit::detail
