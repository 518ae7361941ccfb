// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelKit/QVRouteResponse.h>
#include <QuorvelPlatform/Export.h>

#include <memory>

namespace quorvelkit {

/// Requests routes from the navigation server. Thread-safe. QVBaseService describes threads, errors
/// and lifetimes. Cost: one HTTP request for each call; the first call of a process also sends the
/// login and the request for the configuration.
///
///     auto request = std::make_shared<QVRouteRequest>(Coordinate{39.30, -76.54},
///                                                     Coordinate{39.27, -76.60});
///     QVBaseService::loadConfiguration([request] {
///       if (!request->url()) return report("The configuration names no navigation server.");
///       QVNavigation::route(request, [](std::shared_ptr<QVRouteResponse> response) {
///         if (response->error()) return report(*response->error());
///         const auto& route = response->route();
///         if (!route || route->points().empty()) return report("The answer is not a route.");
///         draw(route->points());
///       });
///     });
///
/// The first check is needed because a request without a URL is not sent, the last because an
/// answer without an error may contain no route.
class QUORVELKIT_EXPORT QVNavigation : public QVBaseService {
 public:
  /// Requests the route between two coordinates.
  static std::shared_ptr<URLSessionDataTask> route(
      std::shared_ptr<QVRouteRequest> request,
      QVCompletionHandler<QVRouteResponse> completionHandler);
};

}  // namespace quorvelkit
