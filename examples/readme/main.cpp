// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVNavigation.h>

#include <iostream>

using namespace quorvelkit;

int main(int argc, char** argv) {
  if (argc > 1) QVBackendless::setBaseURL(argv[1]);  // a sandbox, say
  const auto request = std::make_shared<QVRouteRequest>(Coordinate{40.4523, -38.2804},
                                                        Coordinate{40.4469, -38.1872});
  QVBaseService::loadConfiguration([&] {
    if (!request->url()) {  // nobody to ask, so no handler would run
      std::cerr << "The backend has no configuration.\n";
      return MainQueue::main().stop();
    }
    QVNavigation::route(request, [](const std::shared_ptr<QVRouteResponse>& response) {
      MainQueue::main().stop();
      if (response->error()) std::cerr << *response->error() << '\n';
      if (!response->route()) return;
      for (const QVPoint& point : response->route()->points())
        if (point.turn()) std::cout << point.turn()->instruction().value_or("") << '\n';
    });
  });
  MainQueue::main().run();
}
