// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelKit/QVRouteResponse.h>
#include <QuorvelPlatform/Export.h>

#include <memory>

namespace quorvelkit {

/// Routes. The first call of a process also logs in and loads the configuration; each later one is
/// one exchange. QVBaseService tells what holds for every call.
///
///     auto request = std::make_shared<QVRouteRequest>(Coordinate{39.30, -76.54},
///                                                     Coordinate{39.27, -76.60});
///     QVBaseService::loadConfiguration([request] {
///       if (!request->url()) return report("The configuration names no navigation server.");
///       QVNavigation::route(request, [](std::shared_ptr<QVRouteResponse> response) {
///         if (response->error()) return report(*response->error());
///         const auto& route = response->route();
///         if (!route || route->points().empty()) return report("The answer is no route.");
///         draw(route->points());
///       });
///     });
///
/// The first test is there because a call without a configuration stays silent, the last because an
/// answer without an error may hold no route.
class QUORVELKIT_EXPORT QVNavigation : public QVBaseService {
 public:
  static std::shared_ptr<URLSessionDataTask> route(
      std::shared_ptr<QVRouteRequest> request,
      QVCompletionHandler<QVRouteResponse> completionHandler);
};

}  // namespace quorvelkit
