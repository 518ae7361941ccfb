// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/UTF8.h>

#include <algorithm>

namespace quorvelkit {

namespace {

constexpr bool isContinuation(unsigned char byte) noexcept { return (byte & 0xC0U) == 0x80U; }

// Returns the length of the valid sequence at the start of the bytes, or 0. Only the range of the
// second byte depends on the first byte (RFC 3629, section 4).
std::size_t sequenceLength(std::string_view bytes) noexcept {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = at(0);
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (bytes.size() < length) return 0;
  const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (at(1) < low || at(1) > high) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (!isContinuation(at(i))) return 0;
  }
  return length;
}

}  // namespace

bool isUTF8(std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const std::size_t length = sequenceLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::size_t characterCount(std::string_view text) noexcept {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
    return !isContinuation(static_cast<unsigned char>(byte));
  }));
}

}  // namespace quorvelkit
