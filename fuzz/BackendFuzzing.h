// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Fuzzing.h"
#include "tests/kit/FakeServer.h"

namespace quorvelkit::fuzz {

/// Makes a call whose handler is given, with one body for the answer to all that it asks, and waits
/// for the one time that the handler runs.
void callAndWait(const std::string& body, auto call) {
  static auto& server = *new test::FakeServer;
  server.forget();
  for (const std::string& path : {test::loginPath, test::configurationPath})
    server.set(path, {200, body});
  int runs = 0;
  call([&](const auto& /*response*/) { ++runs; });
  require(test::runMainQueueUntil([&] { return runs > 0; }));
  MainQueue::main().runPending();
  require(runs == 1);
}

}  // namespace quorvelkit::fuzz
