// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Fuzzing.h"
#include "tests/kit/FakeServer.h"

namespace quorvelkit::fuzz {

/// Runs a call against a server that answers every request with `body`. Passes the completion
/// handler to `call`, and checks that the handler runs exactly once.
void callAndWait(const std::string& body, auto call) {
  static auto& server = *new test::FakeServer;
  server.clearRequests();
  for (const std::string& path : {test::loginPath, test::configurationPath})
    server.set(path, {200, body});
  int runs = 0;
  call([&](const auto& /*response*/) { ++runs; });
  require(test::runMainQueueUntil([&] { return runs > 0; }));
  MainQueue::main().runPending();
  require(runs == 1);
}

}  // namespace quorvelkit::fuzz
