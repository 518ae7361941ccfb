// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>

#include <functional>
#include <memory>

/// Runs the main queue until a call has delivered its response, which this returns. `call` is
/// given the completion handler to pass on. Only for calls that are certain to deliver: a request
/// without a URL is never sent, and would be waited for in vain.
template <class Response>
std::shared_ptr<Response> await(
    const std::function<void(std::function<void(std::shared_ptr<Response>)>)>& call) {
  std::shared_ptr<Response> delivered;
  call([&delivered](std::shared_ptr<Response> response) {
    delivered = std::move(response);
    quorvelkit::MainQueue::main().stop();
  });
  quorvelkit::MainQueue::main().run();
  return delivered;
}
