// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace quorvelkit {

/// Percent-encodes each byte that is not allowed in the query of a URL (RFC 3986, section 2.1, with
/// upper-case digits). Keeps letters, digits and `!$&'()*+,-./:;=?@_~`, hence also "&" and "=".
/// Encodes "%", hence encodes an encoded text again. Absent if the text is not UTF-8.
QUORVELKIT_EXPORT std::optional<std::string> percentEncodedForQuery(std::string_view text);

/// Does the same for a text that must be UTF-8. Another text is a programming error and stops the
/// process.
QUORVELKIT_EXPORT std::string urlEncode(std::string_view text);

/// A text that is percent-encoded as one value of a query. Requests send it unchanged.
class QueryValue {
 public:
  /// The encoded text.
  const std::string& encoded() const noexcept { return encoded_; }
  operator const std::string&() const noexcept { return encoded_; }

 private:
  explicit QueryValue(std::string encoded) : encoded_(std::move(encoded)) {}
  friend QUORVELKIT_EXPORT QueryValue encodeQueryValue(std::string_view text);

  std::string encoded_;
};

/// Percent-encodes each byte except letters, digits and -._~ (RFC 3986, section 2.3), so that a
/// server decodes one value that equals the text, also with the separators "&", "=", "+", "#" and
/// "?". Accepts any bytes, also a text that is not UTF-8.
QUORVELKIT_EXPORT QueryValue encodeQueryValue(std::string_view text);

}  // namespace quorvelkit
