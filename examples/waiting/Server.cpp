// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <QuorvelKit/Calls/QVStartUp.h>
#include <QuorvelPlatform/MainQueueThread.h>

#include <thread>
#include <vector>

int main(int argc, char** argv) {
  if (argc > 1) quorvelkit::QVBackendless::setBaseURL(argv[1]);
  const quorvelkit::MainQueueThread mainQueue;
  quorvelkit::QVStartUp::loadConfiguration().wait();
  std::atomic<int> routes = 0;
  const auto work = [&] {
    std::vector<std::future<quorvelkit::QVCallResult<quorvelkit::QVRouteResponse>>> results;
    results.reserve(250);
    for (int i = 0; i < 250; ++i)
      results.push_back(requestTrip(argc, argv).future());
    for (auto& result : results)
      if (result.get()) ++routes;
  };
  for (std::vector<std::jthread> workers; workers.size() < 4;)
    workers.emplace_back(work);
  std::cout << routes << " routes\n";
}
