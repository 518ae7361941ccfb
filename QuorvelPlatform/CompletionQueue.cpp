// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/CompletionQueue_p.h>
#include <QuorvelPlatform/FatalError.h>

#include <utility>

namespace quorvelkit {

bool CompletionQueue::push(std::shared_ptr<DataTask> task, Outcome outcome) {
  const std::lock_guard lock(mutex_);
  waiting_.push_back({std::move(task), std::move(outcome)});
  return !isRunning_ && waiting_.size() == 1;
}

bool CompletionQueue::needsThread() {
  const std::lock_guard lock(mutex_);
  return !isRunning_ && !waiting_.empty() && !stopping_;
}

void CompletionQueue::run(int batches) {
  std::unique_lock lock(mutex_);
  if (isRunning_) return;
  isRunning_ = true;
  for (; batches > 0 && !waiting_.empty() && !stopping_; --batches) {
    batch_.swap(waiting_);
    lock.unlock();
    for (Completion& completion : batch_) {
      if (stopping_) return;
      try {
        completion.task->complete(std::move(completion.outcome));
        completion.task.reset();
      } catch (...) {
        fatalError("An exception left a completion handler of a URL session.");
      }
    }
    if (stopping_) return;
    batch_.clear();
    lock.lock();
  }
  isRunning_ = false;
}

}  // namespace quorvelkit
