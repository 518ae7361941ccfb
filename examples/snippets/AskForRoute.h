// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVNavigation.h>

#include <functional>
#include <memory>
#include <string>

/// Asks for a route and says what came of it, also where the call alone would stay silent.
inline void askForRoute(quorvelkit::Coordinate from, quorvelkit::Coordinate to,
                        std::function<void(const std::string&)> say) {
  using namespace quorvelkit;
  auto request = std::make_shared<QVRouteRequest>(from, to);
  QVBaseService::loadConfiguration([request, say] {
    const auto configuration = QVConfiguration::cachedResponse();
    if (!configuration || configuration->error()) return say("There is no configuration.");
    if (!request->url()) return say("The configuration names no navigation server.");
    QVNavigation::route(request, [say](const std::shared_ptr<QVRouteResponse>& response) {
      if (response->isCancelled()) return;
      if (response->error()) return say(response->error()->localizedDescription());
      say(std::to_string(response->route()->points().size()) + " points");
    });
  });
}
