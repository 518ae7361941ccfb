// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVNavigation.h>

#include <iostream>

/// Requests a route from the backend that the first argument of the program names.
inline quorvelkit::QVCall<quorvelkit::QVRouteResponse> requestTrip(int argc, char** argv) {
  using namespace quorvelkit;
  if (argc > 1) QVBackendless::setBaseURL(argv[1]);
  return {QVNavigation::route, std::make_shared<QVRouteRequest>(Coordinate{40.4523, -38.2804},
                                                                Coordinate{40.4469, -38.1872})};
}

/// Prints the directions, or why there are none. Returns the exit code of the program.
inline int printTrip(const quorvelkit::QVCallResult<quorvelkit::QVRouteResponse>& result) {
  if (const auto error = result.error()) {
    std::cerr << *error << '\n';
    return 1;
  }
  const auto& route = result->route();
  if (!route || route->points().empty()) {
    std::cerr << "The answer is not a route.\n";
    return 1;
  }
  for (const quorvelkit::QVPoint& point : route->points())
    if (point.turn()) std::cout << point.turn()->instruction().value_or("") << '\n';
  return 0;
}
