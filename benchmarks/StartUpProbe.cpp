// SPDX-License-Identifier: Apache-2.0
// Prints the microseconds of the first and of the second QVNavigation::route of a process. The
// first one also logs in and loads the configuration. StartUpBenchmark runs it.
//   StartUpProbe URL
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelPlatform/MainQueue.h>

#include <chrono>
#include <cstdio>
#include <memory>

namespace {

using namespace quorvelkit;
using Microseconds = std::chrono::duration<double, std::micro>;

// Returns nothing if there is no route.
std::optional<double> callMicroseconds() {
  const auto begin = std::chrono::steady_clock::now();
  std::optional<bool> isRoute;
  QVNavigation::route(
      std::make_shared<QVRouteRequest>(Coordinate{39.30, -76.54}, Coordinate{39.27, -76.60}),
      [&](const std::shared_ptr<QVRouteResponse>& response) {
        isRoute = response->route() && !response->route()->points().empty();
      });
  while (!isRoute) {
    if (!MainQueue::main().runOnce(std::chrono::seconds(20))) return std::nullopt;
  }
  if (!*isRoute) return std::nullopt;
  return Microseconds(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  QVBackendless::setBaseURL(arguments[1]);
  const auto first = callMicroseconds();
  const auto second = callMicroseconds();
  if (!first || !second) return 1;
  std::printf("%f %f\n", *first, *second);
  return 0;
}
