// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/HTTPHeaderFields.h>
#include <QuorvelPlatform/URLResponse.h>

#include <chrono>
#include <optional>
#include <string_view>

namespace quorvelkit {

/// The status and the header fields of an HTTP answer. Immutable and thread-safe.
class QUORVELKIT_EXPORT HTTPURLResponse : public URLResponse {
 public:
  /// Reads media type, text encoding and length from the header fields.
  HTTPURLResponse(URL url, int statusCode, HTTPHeaderFields headerFields);
  ~HTTPURLResponse() override;

  /// The status code.
  int statusCode() const noexcept { return statusCode_; }
  /// The header fields in the order and spelling of the server. Several values of one name are
  /// joined with ", " (RFC 9110, section 5.3).
  const HTTPHeaderFields& headerFields() const noexcept { return headerFields_; }
  /// Returns the value of a field. Ignores the case of the name.
  std::optional<std::string_view> value(std::string_view headerField) const {
    return headerFields_.value(headerField);
  }

  /// Returns the time that the server asks to wait before another request: the field Retry-After in
  /// seconds, or its date compared with the field Date or, without it, with the system clock (RFC
  /// 9110, section 10.2.3). Not negative and at most one day. Absent without a valid field.
  std::optional<std::chrono::seconds> retryAfter() const;

  /// Returns the text of a status code in English lower case, such as "not found". Unknown codes
  /// have the text of their class ("client error"), codes outside 100 to 599 "server error". Does
  /// not depend on the locale.
  static std::string_view localizedString(int statusCode) noexcept;

 private:
  int statusCode_;
  HTTPHeaderFields headerFields_;
};

}  // namespace quorvelkit
