// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/Outcome_p.h>

#include <atomic>
#include <limits>
#include <memory>
#include <mutex>

namespace quorvelkit {

/// Tasks that are to complete, one at a time and in the order they ended, on whatever thread comes
/// for them.
class CompletionQueue {
 public:
  /// Gives true when no thread is completing tasks: one has to be told. Takes no memory.
  bool push(std::shared_ptr<DataTask> task, Outcome outcome);
  /// Whether there are tasks to complete and no thread is completing them.
  bool needsThread();
  /// Completes tasks until none is left, unless another thread is at it. A batch is what waits
  /// when it begins.
  void run(int batches = std::numeric_limits<int>::max());
  /// Lets the handler that is running end and runs no other; what is left over stays where it is.
  void stop() { stopping_ = true; }

  /// Held across a fork.
  std::mutex& mutex() { return mutex_; }

 private:
  std::mutex mutex_;
  std::shared_ptr<DataTask> firstWaiting_;  // Leads to the others.
  DataTask* lastWaiting_ = nullptr;
  bool isRunning_ = false;
  std::shared_ptr<DataTask> batch_;  // Belongs to the thread that is completing tasks.
  std::atomic<bool> stopping_ = false;
};

}  // namespace quorvelkit
