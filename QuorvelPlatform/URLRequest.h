// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Data.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/HTTPHeaderFields.h>
#include <QuorvelPlatform/URL.h>

#include <chrono>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// One HTTP request as a value: where to, by which method, with which header fields and body.
class QUORVELKIT_EXPORT URLRequest {
 public:
  /// How a cache may take part. The library keeps no cache; the policy is carried for URL
  /// protocols of an application's own.
  enum class CachePolicy {
    useProtocolCachePolicy,
    reloadIgnoringLocalCacheData,
    returnCacheDataElseLoad,
    returnCacheDataDontLoad,
  };
  using TimeInterval = std::chrono::duration<double>;

  explicit URLRequest(URL url) : url_(std::move(url)) {}

  const URL& url() const noexcept { return url_; }
  void setURL(URL url) { url_ = std::move(url); }

  /// "GET" unless set. GET, HEAD, POST, PUT, DELETE and CONNECT are upper-cased, other texts stay
  /// as they are (methods are case-sensitive: RFC 9110, section 9.1). A text that is no token is
  /// ignored.
  const std::string& httpMethod() const noexcept { return httpMethod_; }
  void setHTTPMethod(std::string_view method);

  /// Header fields. Host, Content-Length, Transfer-Encoding and Connection may be set and read
  /// back, but the session sends its own; Expect and Proxy-* are not sent either. A Cookie field
  /// goes in one line behind the cookies that the session holds for the URL. HTTPHeaderFields tells
  /// what set and add refuse.
  const HTTPHeaderFields& headerFields() const noexcept { return headerFields_; }
  std::optional<std::string_view> value(std::string_view headerField) const {
    return headerFields_.value(headerField);
  }
  void setValue(std::optional<std::string_view> value, std::string_view headerField) {
    headerFields_.set(headerField, value);
  }
  /// Appends to the field's value, joined with ",".
  void addValue(std::string_view value, std::string_view headerField) {
    headerFields_.add(headerField, value);
  }

  /// A GET or HEAD request with a body that is not empty fails with
  /// URLError::dataLengthExceedsMaximum. A POST body without a Content-Type is sent as a form.
  const std::optional<Data>& httpBody() const noexcept { return httpBody_; }
  void setHTTPBody(std::optional<Data> body) { httpBody_ = std::move(body); }

  CachePolicy cachePolicy() const noexcept { return cachePolicy_; }
  void setCachePolicy(CachePolicy policy) noexcept { cachePolicy_ = policy; }

  /// How long the transfer may stand still before it fails: connecting and waiting for the first
  /// byte count, every header line and every byte of a body, sent or decoded, starts the time anew.
  /// 60 seconds unless set; an interval that is not above zero stands for the session's own.
  TimeInterval timeoutInterval() const noexcept {
    return ownTimeoutInterval_.value_or(std::chrono::seconds(60));
  }
  void setTimeoutInterval(TimeInterval interval) noexcept { ownTimeoutInterval_ = interval; }
  /// The interval that was set; absent when the session's own holds.
  std::optional<TimeInterval> ownTimeoutInterval() const noexcept { return ownTimeoutInterval_; }

  /// Prints method and URL, and of the header fields the names alone: values may be secret.
  friend QUORVELKIT_EXPORT std::ostream& operator<<(std::ostream& out, const URLRequest& request);

 private:
  URL url_;
  std::string httpMethod_ = "GET";
  HTTPHeaderFields headerFields_;
  std::optional<Data> httpBody_;
  CachePolicy cachePolicy_ = CachePolicy::useProtocolCachePolicy;
  std::optional<TimeInterval> ownTimeoutInterval_;
};

}  // namespace quorvelkit
