// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/QVConfigurationRequest.h>
#include <QuorvelKit/QVConfigurationResponse.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <memory>
#include <string_view>

namespace quorvelkit {

/// Loads the configuration when an application starts, and says why if that fails. Thread-safe.
///
///     const auto result = QVStartUp::loadConfiguration(QVDeadline(1min)).wait();
///     if (const auto error = result.error()) return report(*error);
///     showFirstScreen();
///
/// Differences to QVBaseService::loadConfiguration:
///
///  - The result is a response, or the reason why nothing was sent (an unusable base URL). A
///    response without an error contains at least one root URL.
///  - A cached configuration with an error, or without any root URL, is loaded again: a failed
///    start can be repeated.
///  - Calls that run at the same time share one login and one request for the configuration. Each
///    has its own deadline and retries. Cancelling one does not end the login or the request.
///  - With QVCallOptions::retry it tries again after each transient error, until the deadline.
class QUORVELKIT_EXPORT QVStartUp {
 public:
  /// If both the login and the configuration request fail, the result has the error and the HTTP
  /// response of the login. An answer that is no configuration has the error noConfiguration.
  /// If the server refuses a stored user token with status 401 or 403, the token is removed, so
  /// that the next attempt logs in.
  static QVCall<QVConfigurationResponse> loadConfiguration(QVCallOptions options = {});

  /// The domain of errors of this class, and the code for an answer that is no configuration, such
  /// as the log-in page of a network.
  static constexpr std::string_view errorDomain = "QuorvelKit.QVStartUp";
  static constexpr std::int64_t noConfiguration = 1;

 private:
  class Attempt;

  static std::shared_ptr<URLSessionDataTask> load(
      std::shared_ptr<QVConfigurationRequest> request,
      QVCompletionHandler<QVConfigurationResponse> completionHandler);
};

}  // namespace quorvelkit
