// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string_view>

namespace quorvelkit {

class QVBaseRequest;

/// Says why a call ended without a response.
class QUORVELKIT_EXPORT QVNotSent {
 public:
  /// The reasons. Their numbers are the codes of error().
  enum class Reason {
    /// No configuration is cached, and the base URL of the backend is not usable
    /// (QVBackendless::isUsableBaseURL).
    unusableBaseURL = 1,
    /// No configuration is cached, although the base URL is usable: the application removed it.
    noConfiguration,
    /// The configuration could not be loaded. error() has the error of its response as description.
    configurationFailed,
    /// The configuration has no root URL of the server that the request needs.
    noRootURL,
    /// Root URL and parameters together are no URL, or a request of the application has no URL. For
    /// the latter, the reasons above take precedence, also if its facade needs no configuration.
    noURL,
    /// The completion handler was destroyed although the request has a URL, for example by an
    /// exception, or because QVCallSteps::prepare never called its argument.
    handlerDropped
  };

  /// The domain of error(). Its code is the number of the reason.
  static constexpr std::string_view domain = "QuorvelKit.QVNotSent";

  /// Makes an object with these values.
  explicit QVNotSent(Reason reason, std::optional<Error> configurationError = std::nullopt);
  /// Finds the reason for a request whose completion handler was dropped. Reads the configuration,
  /// and the request's url() if it has a root URL; use it where that function may be called.
  static QVNotSent reasonFor(QVBaseRequest& request);

  /// The reason why the request was not sent.
  Reason reason() const noexcept { return reason_; }
  /// Returns the error of the response to the configuration request, if reason() is
  /// configurationFailed.
  const std::optional<Error>& configurationError() const noexcept { return configurationError_; }
  /// Returns an error with a description in English, for logs and command-line programs.
  Error error() const;

 private:
  Reason reason_;
  std::optional<Error> configurationError_;
};

}  // namespace quorvelkit
