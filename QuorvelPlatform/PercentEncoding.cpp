// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/PercentEncoding.h>
#include <QuorvelPlatform/UTF8.h>

namespace quorvelkit {

namespace {

// Percent-encodes each byte except letters, digits and the given characters.
std::string percentEncoded(std::string_view text, std::string_view unencoded) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(text.size());
  for (const char c : text) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
        unencoded.find(c) != std::string_view::npos) {
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

}  // namespace

std::optional<std::string> percentEncodedForQuery(std::string_view text) {
  if (!isUTF8(text)) return std::nullopt;
  return percentEncoded(text, "!$&'()*+,-./:;=?@_~");
}

std::string urlEncode(std::string_view text) {
  auto encoded = percentEncodedForQuery(text);
  if (!encoded) {
    fatalError(std::string(unwrappedAbsentValue) + ": the text given to urlEncode is not UTF-8");
  }
  return *std::move(encoded);
}

QueryValue encodeQueryValue(std::string_view text) {
  return QueryValue(percentEncoded(text, "-._~"));
}

}  // namespace quorvelkit
