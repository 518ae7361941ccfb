// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/CompletionQueue_p.h>
#include <QuorvelPlatform/FatalError.h>

#include <utility>

namespace quorvelkit {

bool CompletionQueue::push(std::shared_ptr<DataTask> task, TaskResult result) {
  task->result = std::move(result);
  DataTask* const last = task.get();
  const std::lock_guard lock(mutex_);
  const bool isFirst = !firstWaiting_;
  (isFirst ? firstWaiting_ : lastWaiting_->next) = std::move(task);
  lastWaiting_ = last;
  return !isRunning_ && isFirst;
}

bool CompletionQueue::needsThread() {
  const std::lock_guard lock(mutex_);
  return !isRunning_ && firstWaiting_ && !stopping_;
}

void CompletionQueue::run(int batches) {
  std::unique_lock lock(mutex_);
  if (isRunning_) return;
  isRunning_ = true;
  for (; batches > 0 && firstWaiting_ && !stopping_; --batches) {
    batch_ = std::exchange(firstWaiting_, nullptr);
    lock.unlock();
    while (batch_ && !stopping_) {
      try {
        const std::shared_ptr<DataTask> task = std::move(batch_);
        batch_ = std::move(task->next);
        task->complete();
      } catch (...) {
        fatalError("A completion handler of a URL session threw an exception.");
      }
    }
    if (stopping_) return;
    lock.lock();
  }
  isRunning_ = false;
}

}  // namespace quorvelkit
