// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/PercentEncoding.h>
#include <QuorvelPlatform/UTF8.h>

namespace quorvelkit {

namespace {

constexpr bool isAllowedInQuery(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("!$&'()*+,-./:;=?@_~").find(c) != std::string_view::npos;
}

}  // namespace

std::optional<std::string> percentEncodedForQuery(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  if (!isUTF8(text)) return std::nullopt;
  std::string encoded;
  encoded.reserve(text.size());
  for (const char c : text) {
    if (isAllowedInQuery(c)) {
      encoded += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      encoded += '%';
      encoded += digits[byte >> 4U];
      encoded += digits[byte & 0xFU];
    }
  }
  return encoded;
}

std::string urlEncode(std::string_view text) {
  auto encoded = percentEncodedForQuery(text);
  if (!encoded) {
    fatalError(std::string(unwrappedAbsentValue) + ": the text given to urlEncode is not UTF-8");
  }
  return *std::move(encoded);
}

}  // namespace quorvelkit
