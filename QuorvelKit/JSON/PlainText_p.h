// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace quorvelkit::detail {

// The first byte that may not stand in a string as it is: a quotation mark, a backslash, a control
// character. Goes by words of eight bytes; `beyondASCII` collects the highest bits of all.
inline const char* plainEnd(const char* p, const char* end, std::uint64_t& beyondASCII) noexcept {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  constexpr std::uint64_t highs = 0x8080808080808080U;
  while (end - p >= 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, p, sizeof word);
    // The highest bit of a byte is set, at the latest behind the first true one, when the byte
    // is 0 after the exclusive or, and when it is below a space.
    const std::uint64_t quote = word ^ (ones * '"');
    const std::uint64_t backslash = word ^ (ones * '\\');
    const std::uint64_t found = (((quote - ones) & ~quote) | ((backslash - ones) & ~backslash) |
                                 ((word - ones * ' ') & ~word)) &
                                highs;
    if (found != 0) {
      const auto bitsBefore = static_cast<unsigned>(std::countr_zero(found)) & ~7U;
      beyondASCII |= word & highs & ((std::uint64_t{1} << bitsBefore) - 1);
      return p + bitsBefore / 8;
    }
    beyondASCII |= word & highs;
    p += 8;
  }
  for (; p != end; ++p) {
    const auto byte = static_cast<unsigned char>(*p);
    if (byte == '"' || byte == '\\' || byte < ' ') break;
    beyondASCII |= byte & 0x80U;
  }
  return p;
}

}  // namespace quorvelkit::detail
