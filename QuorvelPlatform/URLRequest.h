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

/// An HTTP request: URL, method, header fields, body and settings. A value type.
class QUORVELKIT_EXPORT URLRequest {
 public:
  /// How a cache may be used. The library has no cache; a URL protocol of an application can read
  /// the policy.
  enum class CachePolicy {
    useProtocolCachePolicy,
    reloadIgnoringLocalCacheData,
    returnCacheDataElseLoad,
    returnCacheDataDontLoad,
  };
  /// A time in seconds.
  using TimeInterval = std::chrono::duration<double>;

  /// Makes a GET request without a body.
  explicit URLRequest(URL url) : url_(std::move(url)) {}

  /// The URL. A request can be sent only if it has a scheme and a host.
  const URL& url() const noexcept { return url_; }
  void setURL(URL url) { url_ = std::move(url); }

  /// The method, "GET" by default. GET, HEAD, POST, PUT, DELETE and CONNECT are converted to upper
  /// case, other methods are not changed (methods are case-sensitive: RFC 9110, section 9.1). A
  /// text that is not a token is ignored.
  const std::string& httpMethod() const noexcept { return httpMethod_; }
  void setHTTPMethod(std::string_view method);

  /// The header fields. Host, Content-Length, Transfer-Encoding and Connection can be set and read,
  /// but the session sends its own values; Expect and Proxy-* are not sent. The session sends its
  /// cookies and a Cookie field in one line. HTTPHeaderFields says which names and values are
  /// ignored.
  const HTTPHeaderFields& headerFields() const noexcept { return headerFields_; }
  /// Returns or sets the value of a field.
  std::optional<std::string_view> value(std::string_view headerField) const {
    return headerFields_.value(headerField);
  }
  void setValue(std::optional<std::string_view> value, std::string_view headerField) {
    headerFields_.set(headerField, value);
  }
  /// Appends to the value of a field, with "," between the values.
  void addValue(std::string_view value, std::string_view headerField) {
    headerFields_.add(headerField, value);
  }

  /// The body. A GET or HEAD request with a body that is not empty fails with
  /// URLError::dataLengthExceedsMaximum. A POST body without a Content-Type field is sent as
  /// application/x-www-form-urlencoded.
  const std::optional<Data>& httpBody() const noexcept { return httpBody_; }
  void setHTTPBody(std::optional<Data> body) { httpBody_ = std::move(body); }

  /// The cache policy of the request.
  CachePolicy cachePolicy() const noexcept { return cachePolicy_; }
  void setCachePolicy(CachePolicy policy) noexcept { cachePolicy_ = policy; }

  /// The idle time-out: the longest time without a sent or received byte, including the time to
  /// connect. Each header line and each piece of a body restarts it. 60 seconds by default. If the
  /// interval is not positive, the session's interval is used.
  TimeInterval timeoutInterval() const noexcept {
    return ownTimeoutInterval_.value_or(std::chrono::seconds(60));
  }
  void setTimeoutInterval(TimeInterval interval) noexcept { ownTimeoutInterval_ = interval; }
  /// The interval that was set. Absent if none was set; the session's interval is then used.
  std::optional<TimeInterval> ownTimeoutInterval() const noexcept { return ownTimeoutInterval_; }

  /// Prints the method, the URL and the names of the header fields. Values may be secret and are
  /// not printed.
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
