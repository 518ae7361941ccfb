// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVNavigation.h>

#include <iostream>

using namespace quorvelkit;

int main(int argc, char** argv) {
  if (argc > 1) QVBackendless::setBaseURL(argv[1]);  // such as a sandbox
  // With an unusable URL no handler would run.
  if (!QVBackendless::isUsableBaseURL()) {
    std::cerr << "The backend's URL needs http or https, and a host.\n";
    return 1;
  }
  int status = 1;
  const auto fail = [](const auto& message) {
    std::cerr << message << '\n';
    MainQueue::main().stop();
  };
  const auto request = std::make_shared<QVRouteRequest>(Coordinate{40.4523, -38.2804},
                                                        Coordinate{40.4469, -38.1872});
  QVBaseService::loadConfiguration([&] {
    if (!request->url()) return fail("The backend has no configuration.");
    QVNavigation::route(request, [&](const std::shared_ptr<QVRouteResponse>& response) {
      if (response->error()) return fail(*response->error());
      const auto& route = response->route();
      if (!route || route->points().empty()) return fail("The answer is not a route.");
      for (const QVPoint& point : route->points())
        if (point.turn()) std::cout << point.turn()->instruction().value_or("") << '\n';
      status = 0;
      MainQueue::main().stop();
    });
  });
  MainQueue::main().run();
  return status;
}
