// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>

#include <functional>
#include <memory>
#include <utility>

namespace quorvelkit {

/// Returns a function that adds a block to the main queue, for one call on any thread. The call
/// allocates no memory, so it cannot fail. The block must not own objects of the application.
inline std::function<void()> addingToMainQueue(std::function<void()> block) {
  return [prepared = std::make_shared<MainQueue::Prepared>(std::move(block))] {
    MainQueue::main().async(std::move(*prepared));
  };
}

}  // namespace quorvelkit
