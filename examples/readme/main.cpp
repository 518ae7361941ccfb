// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVNavigation.h>

#include <iostream>

using namespace quorvelkit;

int main(int argc, char** argv) {
  if (argc > 1) QVBackendless::setBaseURL(argv[1]);  // such as a sandbox
  const auto request = std::make_shared<QVRouteRequest>(Coordinate{40.4523, -38.2804},
                                                        Coordinate{40.4469, -38.1872});
  const auto result = QVCall(QVNavigation::route, request).wait();
  if (const auto error = result.error()) {
    std::cerr << *error << '\n';
    return 1;
  }
  const auto& route = result->route();
  if (!route || route->points().empty()) {
    std::cerr << "The answer is not a route.\n";
    return 1;
  }
  for (const QVPoint& point : route->points())
    if (point.turn()) std::cout << point.turn()->instruction().value_or("") << '\n';
}
