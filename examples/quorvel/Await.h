// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>

#include <functional>
#include <memory>

/// Starts a call, runs the main queue until its completion handler runs, and returns the response.
/// `call` receives the completion handler and passes it to the facade. The request must have a URL:
/// without one it is not sent, and this function never returns.
template <class Response>
std::shared_ptr<Response> await(
    const std::function<void(std::function<void(std::shared_ptr<Response>)>)>& call) {
  std::shared_ptr<Response> received;
  call([&received](std::shared_ptr<Response> response) {
    received = std::move(response);
    quorvelkit::MainQueue::main().stop();
  });
  quorvelkit::MainQueue::main().run();
  return received;
}
