// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <QuorvelPlatform/EventLoops/PollEventLoop.h>

#include <optional>

int main(int argc, char** argv) {
  quorvelkit::PollEventLoop mainQueue;
  std::optional<int> status;
  requestTrip(argc, argv).onResult([&](const auto& result) { status = printTrip(result); });
  while (!status) {
    pollfd entries[] = {mainQueue.pollable()};  // and the descriptors of the program
    poll(entries, 1, -1);
    if (entries[0].revents != 0) mainQueue.handle();
  }
  return *status;
}
