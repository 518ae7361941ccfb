// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVConfigurationRequest.h>
#include <QuorvelKit/QVConfigurationResponse.h>
#include <QuorvelPlatform/Export.h>

#include <memory>

namespace quorvelkit {

/// The configuration of the library, loaded once per process. Routes and place search load it by
/// themselves before they send.
class QUORVELKIT_EXPORT QVConfiguration : public QVBaseService {
 public:
  /// Gives the cached response to the handler at once, on the caller's thread. Without one, logs
  /// in, fetches the configuration whatever the login brought, caches the response whatever it
  /// holds, and gives it to the handler on the main queue. Returns no task either way. What the
  /// handler throws leaves this call in the first case, the main queue's run function in the other.
  ///
  /// The handler never runs when there is no cached response and the login or the request has no
  /// URL, because the base URL does not parse (QVBackendless::isUsableBaseURL).
  ///
  /// A failure is cached too, for the rest of the process. Two first calls at a time each log in
  /// and fetch; the later answer stays.
  static std::shared_ptr<URLSessionDataTask> get(
      std::shared_ptr<QVConfigurationRequest> request,
      QVCompletionHandler<QVConfigurationResponse> completionHandler);
  /// The same with a fresh request.
  static std::shared_ptr<URLSessionDataTask> get(
      QVCompletionHandler<QVConfigurationResponse> completionHandler);

  /// The response that was cached; null before. Setting null makes the next call load anew, and
  /// leaves the calls unsent whose configuration has arrived but whose own request is not made yet:
  /// they have no URL any more, so their handlers never run. Safe from any thread.
  static std::shared_ptr<QVConfigurationResponse> cachedResponse();
  static void setCachedResponse(std::shared_ptr<QVConfigurationResponse> cachedResponse);
};

}  // namespace quorvelkit
