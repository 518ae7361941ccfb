// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVConfigurationRequest.h>
#include <QuorvelKit/QVConfigurationResponse.h>
#include <QuorvelPlatform/Export.h>

#include <memory>

namespace quorvelkit {

/// Loads the configuration of the library, once per process. Routes and place search load it before
/// they send a request. Thread-safe.
class QUORVELKIT_EXPORT QVConfiguration : public QVBaseService {
 public:
  /// Passes the configuration to the handler. Always returns null.
  ///
  /// With a cached response the handler runs inside this call, and its exceptions leave this call.
  /// Otherwise logs in, requests the configuration also if the login failed, caches the response
  /// also if it is an error, and runs the handler on the main queue. A cached error stays until the
  /// process ends or setCachedResponse(nullptr) is called. Two concurrent first calls each log in
  /// and request the configuration; the last answer stays cached.
  ///
  /// The handler never runs if no response is cached and the base URL does not parse
  /// (QVBackendless::isUsableBaseURL).
  static std::shared_ptr<URLSessionDataTask> get(
      std::shared_ptr<QVConfigurationRequest> request,
      QVCompletionHandler<QVConfigurationResponse> completionHandler);
  /// Calls get() with a new request.
  static std::shared_ptr<URLSessionDataTask> get(
      QVCompletionHandler<QVConfigurationResponse> completionHandler);

  /// The cached response, or null. After setting null, the next call loads the configuration again.
  /// A call whose configuration was loaded but whose HTTP request is not made yet then has no URL:
  /// it is not sent, and its handler never runs.
  static std::shared_ptr<QVConfigurationResponse> cachedResponse();
  static void setCachedResponse(std::shared_ptr<QVConfigurationResponse> cachedResponse);

 private:
  friend class QVStartUp;
  static std::shared_ptr<URLSessionDataTask> load(
      std::shared_ptr<QVConfigurationRequest> request,
      QVCompletionHandler<QVConfigurationResponse> completionHandler,
      std::function<void(std::function<void()>)> login);
};

}  // namespace quorvelkit
