// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVNavigation.h>

#include <functional>
#include <memory>
#include <string>

/// Requests a route and reports the result, also if the request cannot be sent.
inline void askForRoute(quorvelkit::Coordinate from, quorvelkit::Coordinate to,
                        std::function<void(const std::string&)> report) {
  using namespace quorvelkit;
  if (!QVBackendless::isUsableBaseURL()) return report("The backend's URL is not usable.");
  auto request = std::make_shared<QVRouteRequest>(from, to);
  QVBaseService::loadConfiguration([request, report] {
    const auto configuration = QVConfiguration::cachedResponse();
    if (!configuration || configuration->error()) return report("There is no configuration.");
    if (!request->url()) return report("The configuration names no navigation server.");
    QVNavigation::route(request, [report](const std::shared_ptr<QVRouteResponse>& response) {
      if (response->isCancelled()) return;
      const auto& error = response->error();
      if (error) return report("There is no route: " + error->localizedDescription());
      const auto& route = response->route();
      if (!route || route->points().empty()) return report("The answer is not a route.");
      report(std::to_string(route->points().size()) + " points");
    });
  });
}
