// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace quorvelkit::detail {

// Returns the first byte that must be escaped in a JSON string: a quotation mark, a backslash or a
// control character; `end` if there is none. Reads eight bytes at a time. Sets bits of `nonASCII`
// if a byte before the returned one is not ASCII.
inline const char* endOfUnescaped(const char* p, const char* end,
                                  std::uint64_t& nonASCII) noexcept {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  constexpr std::uint64_t highs = 0x8080808080808080U;
  while (end - p >= 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, p, sizeof word);
    // Sets the highest bit of each byte to find. The bytes after the first of them may have a
    // wrong bit, because of the borrow of the subtractions.
    const std::uint64_t quote = word ^ (ones * '"');
    const std::uint64_t backslash = word ^ (ones * '\\');
    const std::uint64_t found = (((quote - ones) & ~quote) | ((backslash - ones) & ~backslash) |
                                 ((word - ones * ' ') & ~word)) &
                                highs;
    if (found != 0) {
      const auto bitsBefore = static_cast<unsigned>(std::countr_zero(found)) & ~7U;
      nonASCII |= word & highs & ((std::uint64_t{1} << bitsBefore) - 1);
      return p + bitsBefore / 8;
    }
    nonASCII |= word & highs;
    p += 8;
  }
  for (; p != end; ++p) {
    const auto byte = static_cast<unsigned char>(*p);
    if (byte == '"' || byte == '\\' || byte < ' ') break;
    nonASCII |= byte & 0x80U;
  }
  return p;
}

}  // namespace quorvelkit::detail
