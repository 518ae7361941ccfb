// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <QuorvelPlatform/MainQueueThread.h>

int main(int argc, char** argv) {
  const quorvelkit::MainQueueThread mainQueue;
  auto result = requestTrip(argc, argv).future();
  // The program does something else, on this thread and others.
  return printTrip(result.get());
}
