// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVNavigation.h>

#include <functional>
#include <memory>
#include <string>

/// Asks for a route and says what came of it, also where the call alone would stay silent.
inline void askForRoute(quorvelkit::Coordinate from, quorvelkit::Coordinate to,
                        std::function<void(const std::string&)> say) {
  using namespace quorvelkit;
  if (!QVBackendless::isUsableBaseURL()) return say("The backend's URL is not usable.");
  auto request = std::make_shared<QVRouteRequest>(from, to);
  QVBaseService::loadConfiguration([request, say] {
    const auto configuration = QVConfiguration::cachedResponse();
    if (!configuration || configuration->error()) return say("There is no configuration.");
    if (!request->url()) return say("The configuration names no navigation server.");
    QVNavigation::route(request, [say](const std::shared_ptr<QVRouteResponse>& response) {
      if (response->isCancelled()) return;
      const auto& error = response->error();
      if (error) return say("The server gave no route: " + error->localizedDescription());
      const auto& route = response->route();
      if (!route || route->points().empty()) return say("The answer is no route.");
      say(std::to_string(route->points().size()) + " points");
    });
  });
}
