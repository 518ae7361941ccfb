// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <functional>
#include <memory>

namespace quorvelkit {

/// Sets the wake-up hook of MainQueue::main() for the lifetime of this object. For adapters between
/// the main queue and an event loop; QuorvelPlatform/EventLoops contains ready-made ones.
///
/// Construct it on the thread of the event loop. The hook runs on any thread, for one caller at a
/// time, and never after the destructor. It must only signal the event loop: if it used the queue
/// or this object, or called fork(), it would lock a mutex twice. It must not throw.
///
/// The destructor restores the hook that was set before, unless another hook replaced this one.
/// Destroy the objects in the reverse order of their construction.
class QUORVELKIT_EXPORT WakeUpHook {
 public:
  /// Sets the hook.
  explicit WakeUpHook(std::function<void()> hook);
  WakeUpHook(const WakeUpHook&) = delete;
  WakeUpHook& operator=(const WakeUpHook&) = delete;
  ~WakeUpHook();

 private:
  std::shared_ptr<std::function<void()>> active_;  // Empty after the destructor.
  std::shared_ptr<const std::function<void()>> installed_, replaced_;
};

}  // namespace quorvelkit
