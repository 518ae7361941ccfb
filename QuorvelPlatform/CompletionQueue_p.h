// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/TaskResult_p.h>

#include <atomic>
#include <limits>
#include <memory>
#include <mutex>

namespace quorvelkit {

/// A queue of ended data tasks. The thread that calls run() completes them in order; only one
/// thread at a time does so. Thread-safe.
class CompletionQueue {
 public:
  /// Adds a task with its result. Returns true if a thread must be notified to call run().
  /// Allocates no memory.
  bool push(std::shared_ptr<DataTask> task, TaskResult result);
  /// Returns true if tasks are waiting and no thread is in run().
  bool needsThread();
  /// Completes tasks until the queue is empty, or this number of batches. A batch is the tasks that
  /// are in the queue when the batch begins. Returns at once if another thread is in run().
  void run(int batches = std::numeric_limits<int>::max());
  /// Lets the current handler end and runs no further one. The remaining tasks are leaked.
  void stop() { stopping_ = true; }

  /// Locked during fork().
  std::mutex& mutex() { return mutex_; }

 private:
  std::mutex mutex_;
  std::shared_ptr<DataTask> firstWaiting_;  // A list, linked by DataTask::next.
  DataTask* lastWaiting_ = nullptr;
  bool isRunning_ = false;
  std::shared_ptr<DataTask> batch_;  // Used by the thread that is in run().
  std::atomic<bool> stopping_ = false;
};

}  // namespace quorvelkit
