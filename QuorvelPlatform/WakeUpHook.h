// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace quorvelkit {

/// Sets the wake-up hook of MainQueue::main() for the lifetime of this object. For adapters between
/// the main queue and an event loop; QuorvelPlatform/EventLoops contains ready-made ones.
///
/// Construct it on the thread of the event loop. The hook runs on any thread, for one caller at a
/// time, and never after the destructor. It must only signal the event loop: if it used the queue
/// or this object, it would lock its own mutex twice. It must not throw.
///
/// The destructor restores the hook that was set before, unless another hook replaced this one.
/// Destroy the objects in the reverse order of their construction.
class QUORVELKIT_EXPORT WakeUpHook {
 public:
  explicit WakeUpHook(std::function<void()> hook);
  WakeUpHook(const WakeUpHook&) = delete;
  WakeUpHook& operator=(const WakeUpHook&) = delete;
  ~WakeUpHook();

 private:
  struct Active {
    explicit Active(std::function<void()> given) : hook(std::move(given)) {}
    std::mutex mutex;
    std::function<void()> hook;  // Empty after the destructor.
  };

  std::shared_ptr<Active> active_;
  std::shared_ptr<const std::function<void()>> installed_, replaced_;
};

}  // namespace quorvelkit
