// SPDX-License-Identifier: Apache-2.0
// Run by StartUpBenchmark in a process of its own:
//   StartUpProbe URL     prints the microseconds of the first QVNavigation::route of a process,
//   which
//                        also logs in and loads the configuration, and of the second
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelPlatform/MainQueue.h>

#include <chrono>
#include <cstdio>
#include <memory>

namespace {

using namespace quorvelkit;
using Microseconds = std::chrono::duration<double, std::micro>;

// Absent when no route comes.
std::optional<double> timeOfCall() {
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
  const auto first = timeOfCall();
  const auto later = timeOfCall();
  if (!first || !later) return 1;
  std::printf("%f %f\n", *first, *later);
  return 0;
}
