// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/Outcome_p.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quorvelkit {

/// The serial thread on which tasks complete, so that a slow parse never stalls transfers.
class CallbackThread {
 public:
  void start();
  void push(std::shared_ptr<DataTask> task, Outcome outcome);
  /// Lets the handler that is running end and runs no other; what is left over stays where it is.
  /// Joins the thread unless called on it.
  void stop();

  /// Held across a fork.
  std::mutex& mutex() { return mutex_; }

 private:
  struct Delivery {
    std::shared_ptr<DataTask> task;
    Outcome outcome;
  };

  void run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Delivery> inbox_;
  std::vector<Delivery> batch_;
  std::atomic<bool> stopping_ = false;
  std::thread thread_;
};

}  // namespace quorvelkit
