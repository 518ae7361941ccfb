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

/// What a service is asked, and the base of every request. A subclass gives the address (url) and,
/// where it needs them, parameters; this class makes the HTTP request of them. All members may be
/// overridden, and all readers here go through the overrides.
///
/// A request is shared, not copied: the response made for it refers to the same object, so that
/// the attempts counted through the response are seen here. It is not safe for use from two
/// threads at once; while a call is being made it belongs to the thread that makes the HTTP
/// request (see QVBaseService).
class QUORVELKIT_EXPORT QVBaseRequest {
 public:
  QVBaseRequest() = default;
  QVBaseRequest(const QVBaseRequest&) = delete;
  QVBaseRequest& operator=(const QVBaseRequest&) = delete;
  virtual ~QVBaseRequest();

  /// What requestString() writes into the address and postRequest() into the body, in the order
  /// of insertion.
  virtual const std::optional<ValueMap>& parameters() const;
  virtual void setParameters(std::optional<ValueMap> parameters);

  /// Whether request() adds the header "AccessToken" with QuorvelKit::accessToken(), empty when no
  /// token is set. False here.
  virtual bool includeAccessToken() const;

  /// The address. Absent here; a request without one is never sent, and the handler of its call
  /// never runs. What an override throws leaves the call or the main queue (see QVBaseService).
  virtual std::optional<URL> url();

  /// How often the request was tried again, and how often it may be: 0 and 3 at first. Counted by
  /// QVBaseResponse::shouldRetryRequest.
  virtual std::int64_t retryCount() const;
  virtual void setRetryCount(std::int64_t retryCount);
  virtual std::int64_t maxNumberOfRetries() const;
  virtual void setMaxNumberOfRetries(std::int64_t maxNumberOfRetries);

  /// The HTTP request of each method; absent without url(). Its time-out is left to the session
  /// (60 seconds unless configured otherwise). The two others start from request(), so an override
  /// of that one reaches all three.
  virtual std::optional<URLRequest> request();
  virtual std::optional<URLRequest> deleteRequest();
  /// Carries the parameters as a compact JSON body with Content-Type and Content-Length. Without
  /// parameters, and with parameters that have no JSON form, it has neither body nor the headers.
  virtual std::optional<URLRequest> postRequest();

  /// The parameters as a query: "?a=1&b=two", or nothing without parameters. Texts stand as they
  /// are, nothing is percent-encoded; integers are decimal, doubles as defaultText() writes them,
  /// booleans "true" or "false", lists and maps compact JSON.
  virtual std::string requestString();
  /// Whether the next parameter is not the first. Reset by requestString(), set by joiner().
  virtual bool paramAdded() const;
  virtual void setParamAdded(bool paramAdded);
  /// What stands before the next parameter: "?" the first time, then "&".
  virtual std::string joiner();

  /// Prints the class and the names of the parameters: values may be secret.
  friend QUORVELKIT_EXPORT std::ostream& operator<<(std::ostream& out,
                                                    const QVBaseRequest& request);

 protected:
  /// Replaces the parameters, and gives the address rootURL + path + requestString(); absent when
  /// that text is no URL. Nothing is put between root and path.
  std::optional<URL> resourceURL(std::string_view rootURL, std::string_view path,
                                 ValueMap parameters);

 private:
  std::optional<ValueMap> parameters_;
  std::int64_t retryCount_ = 0;
  std::int64_t maxNumberOfRetries_ = 3;
  bool paramAdded_ = false;
};

}  // namespace quorvelkit
