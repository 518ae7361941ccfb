// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Value.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/URL.h>
#include <QuorvelPlatform/URLRequest.h>

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// Base class of all requests. Makes an HTTP request from a URL and parameters, which a derived
/// class supplies. Every virtual member may be overridden; this class reads its own values through
/// them.
///
/// The response of a call refers to the same request object, so retries counted by the response are
/// visible in the request.
///
/// Not thread-safe. During a call it belongs to the thread that makes the HTTP request (see
/// QVBaseService).
class QUORVELKIT_EXPORT QVBaseRequest {
 public:
  QVBaseRequest() = default;
  QVBaseRequest(const QVBaseRequest&) = delete;
  QVBaseRequest& operator=(const QVBaseRequest&) = delete;
  virtual ~QVBaseRequest();

  /// The parameters, in insertion order. requestString() writes them as a query, postRequest() as
  /// a body.
  virtual const std::optional<ValueMap>& parameters() const;
  virtual void setParameters(std::optional<ValueMap> parameters);

  /// Returns true if request() adds the header "AccessToken" with QuorvelKit::accessToken(), which
  /// is empty if no token is set. Default: false.
  virtual bool includeAccessToken() const;

  /// Returns the URL. Default: absent. A request without a URL is not sent, and the completion
  /// handler of its call never runs. Exceptions: see QVBaseService.
  virtual std::optional<URL> url();

  /// The number of retries, and its limit. Defaults: 0 and 3. QVBaseResponse::shouldRetryRequest
  /// counts.
  virtual std::int64_t retryCount() const;
  virtual void setRetryCount(std::int64_t retryCount);
  virtual std::int64_t maxNumberOfRetries() const;
  virtual void setMaxNumberOfRetries(std::int64_t maxNumberOfRetries);

  /// Return the HTTP request with the method GET, DELETE or POST; absent without url(). The session
  /// sets the time-out (default: 60 seconds). deleteRequest() and postRequest() call request().
  virtual std::optional<URLRequest> request();
  virtual std::optional<URLRequest> deleteRequest();
  /// Sends the parameters as a compact JSON body with Content-Type and Content-Length. Without
  /// parameters, or if they contain a value that JSON does not have, there is no body and neither
  /// header.
  virtual std::optional<URLRequest> postRequest();

  /// Returns the parameters as a query such as "?a=1&b=two", or an empty string without parameters.
  /// Strings are written unchanged, without percent-encoding; integers in decimal, doubles as
  /// defaultText() writes them, booleans as "true" or "false", arrays and maps as compact JSON.
  virtual std::string requestString();
  /// True after the first parameter of a query. requestString() resets it, joiner() sets it.
  virtual bool paramAdded() const;
  virtual void setParamAdded(bool paramAdded);
  /// Returns the separator before the next parameter: "?" the first time, then "&".
  virtual std::string joiner();

  /// Prints the class name and the parameter names, but no values: they may be secret.
  friend QUORVELKIT_EXPORT std::ostream& operator<<(std::ostream& out,
                                                    const QVBaseRequest& request);

 protected:
  /// Replaces the parameters. Returns the URL rootURL + path + requestString(), or nullopt if that
  /// text is not a URL. No "/" is added between root and path.
  std::optional<URL> resourceURL(std::string_view rootURL, std::string_view path,
                                 ValueMap parameters);

 private:
  std::optional<ValueMap> parameters_;
  std::int64_t retryCount_ = 0;
  std::int64_t maxNumberOfRetries_ = 3;
  bool paramAdded_ = false;
};

}  // namespace quorvelkit
