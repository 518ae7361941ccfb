// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/Scheduler.h>
#include <QuorvelPlatform/WakeUpHook.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

/// An event loop of an application that also runs the main queue: wait() returns when a block is in
/// the queue.
class SignalLoop {
 public:
  void wait() {
    std::unique_lock lock(mutex_);
    signal_.wait(lock, [this] { return isSignalled_; });
    isSignalled_ = false;
    lock.unlock();
    quorvelkit::MainQueue::main().runPending();
  }

 private:
  void wakeUp() {
    const std::lock_guard lock(mutex_);
    isSignalled_ = true;
    signal_.notify_one();
  }

  std::mutex mutex_;
  std::condition_variable signal_;
  bool isSignalled_ = false;
  quorvelkit::WakeUpHook hook_{[this] { wakeUp(); }};
};

/// Runs a function on the main queue after a time, unless the timer or the function is destroyed
/// before. The block does not own the function, because it may be destroyed on any thread.
inline std::unique_ptr<quorvelkit::Scheduler::Timer> runLater(
    std::chrono::milliseconds time, const std::weak_ptr<std::function<void()>>& function) {
  using namespace quorvelkit;
  Scheduler& scheduler = Scheduler::shared();
  return scheduler.schedule(scheduler.now() + time, [function] {
    MainQueue::main().async([function] {
      if (const auto still = function.lock()) (*still)();
    });
  });
}
