// SPDX-License-Identifier: Apache-2.0
// Waiting for the result of a call.
#include <QuorvelKit/Calls/QVCallState.h>
#include <QuorvelPlatform/BlockingWait_p.h>
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/MainQueue.h>

#include <unistd.h>

#include <algorithm>

namespace quorvelkit::detail {

std::optional<CallState::Result> CallState::result() const {
  const std::lock_guard lock(mutex_);
  return result_;
}

std::optional<CallState::Result> CallState::waitUntil(std::chrono::steady_clock::time_point time) {
  if (auto known = result()) return known;
  requireThreadThatMayWait();
  if (process_ != getpid())
    fatalError("A child process must not wait for a call of its parent, which ends in the parent.");
  std::unique_lock lock(mutex_);
  if (!MainQueue::main().isCurrentThread()) {
    finished_.wait_until(lock, time, [&] { return result_.has_value(); });
    return result_;
  }
  if (queueRunners_++ == 0) queueWakeUp_ = MainQueue::Prepared([] {});
  while (!result_ && std::chrono::steady_clock::now() < time) {
    lock.unlock();
    const auto remaining =
        std::chrono::ceil<std::chrono::milliseconds>(time - std::chrono::steady_clock::now());
    MainQueue::main().runOnce(
        std::min<std::chrono::milliseconds>(remaining, std::chrono::hours(1)));
    sleepIfProcessIsExiting();
    lock.lock();
  }
  --queueRunners_;
  return result_;
}

void CallState::whenFinished(Continuation continuation) {
  MainQueue::Prepared prepared(std::move(continuation));
  {
    const std::lock_guard lock(mutex_);
    if (!result_) return continuations_.push_back(std::move(prepared));
  }
  MainQueue::main().async(std::move(prepared));
}

void CallState::whenFinishedOnAnyThread(Continuation continuation) {
  {
    const std::lock_guard lock(mutex_);
    if (!result_) return continuationsOnAnyThread_.push_back(std::move(continuation));
  }
  continuation();
}

}  // namespace quorvelkit::detail
