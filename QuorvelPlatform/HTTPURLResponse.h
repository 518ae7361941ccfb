// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/HTTPHeaderFields.h>
#include <QuorvelPlatform/URLResponse.h>

#include <optional>
#include <string_view>

namespace quorvelkit {

/// The status and header fields of an HTTP answer. Immutable.
class QUORVELKIT_EXPORT HTTPURLResponse : public URLResponse {
 public:
  /// Media type, text encoding and length are read from the header fields.
  HTTPURLResponse(URL url, int statusCode, HTTPHeaderFields headerFields);
  ~HTTPURLResponse() override;

  int statusCode() const noexcept { return statusCode_; }
  /// The header fields as they came, in the server's spelling; a name that came more than once
  /// has its values joined with ", " (RFC 9110, section 5.3).
  const HTTPHeaderFields& headerFields() const noexcept { return headerFields_; }
  /// The value of a field, looked up without regard to case.
  std::optional<std::string_view> value(std::string_view headerField) const {
    return headerFields_.value(headerField);
  }

  /// The phrase of a status code, in English lower case whatever the locale: "not found". Codes
  /// without a phrase of their own have that of their class ("client error"), codes outside 100
  /// to 599 have "server error".
  static std::string_view localizedString(int statusCode) noexcept;

 private:
  int statusCode_;
  HTTPHeaderFields headerFields_;
};

}  // namespace quorvelkit
