// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Fuzzing.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/URLProtocol.h>

#include <mutex>
#include <utility>

namespace quorvelkit::fuzz {

/// Answers every request of the process with one body, in place of the network.
class BodyProtocol : public URLProtocol {
 public:
  /// The body of the answers from now on.
  static void setBody(std::string body) {
    static const auto registration =
        registerFactory([](const URLRequest&) { return std::make_unique<BodyProtocol>(); });
    touch(registration);
    const std::lock_guard lock(mutex_);
    body_ = Data(std::move(body));
  }
  void startLoading(const URLRequest& request, std::shared_ptr<URLProtocolClient> client) override {
    client->didReceive(std::make_shared<HTTPURLResponse>(request.url(), 200, HTTPHeaderFields()));
    {
      const std::lock_guard lock(mutex_);
      client->didLoad(body_);
    }
    client->didFinishLoading();
  }
  void stopLoading() override {}

 private:
  static inline std::mutex mutex_;
  static inline Data body_;
};

/// Makes a call whose handler is given, and waits for the one time that the handler runs.
void callAndWait(auto call) {
  int runs = 0;
  call([&](const auto& /*response*/) { ++runs; });
  while (runs == 0)
    require(MainQueue::main().runOnce(std::chrono::seconds(30)));
  MainQueue::main().runPending();
  require(runs == 1);
}

}  // namespace quorvelkit::fuzz
