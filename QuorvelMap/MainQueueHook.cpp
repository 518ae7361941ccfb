// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelPlatform/EventLoops/QtEventLoop.h>
#include <QuorvelPlatform/MainQueue.h>

#include <optional>

namespace quorvelkit {

void installMainQueueHook() {
  // Never destroyed: the application may make map views until the process ends.
  static auto& loop = *new std::optional<QtEventLoop>;
  if (!MainQueue::main().hasWakeUpHook()) {
    loop.emplace();
  } else if (loop) {
    // The destructor of an earlier application object has deleted the posted events.
    loop->wakeUp();
  }
}

}  // namespace quorvelkit
