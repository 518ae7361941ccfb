// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/CallbackThread_p.h>
#include <QuorvelPlatform/FatalError.h>

#include <utility>

namespace quorvelkit {

void CallbackThread::start() {
  thread_ = std::thread([this] {
    try {
      run();
    } catch (...) {
      fatalError("An exception left a completion handler of a URL session.");
    }
  });
}

void CallbackThread::push(std::shared_ptr<DataTask> task, Outcome outcome) {
  bool wake = false;
  {
    const std::lock_guard lock(mutex_);
    wake = inbox_.empty();
    inbox_.push_back({std::move(task), std::move(outcome)});
  }
  if (wake) changed_.notify_one();
}

void CallbackThread::run() {
  for (;;) {
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [&] { return stopping_ || !inbox_.empty(); });
      batch_.swap(inbox_);
    }
    for (Delivery& delivery : batch_) {
      if (stopping_) return;
      delivery.task->complete(std::move(delivery.outcome));
      delivery.task.reset();
    }
    if (stopping_) return;
    batch_.clear();
  }
}

void CallbackThread::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_one();
  if (std::this_thread::get_id() != thread_.get_id()) thread_.join();
}

}  // namespace quorvelkit
