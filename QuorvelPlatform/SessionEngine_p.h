// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/CompletionQueue_p.h>
#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/Load_p.h>
#include <QuorvelPlatform/Outcome_p.h>
#include <QuorvelPlatform/curl/MultiLoop_p.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quorvelkit {

/// What all sessions of a process share: two threads that take turns in two roles. The IO thread
/// is the one on which protocols and the network run at the moment, the callback thread the one on
/// which tasks complete, one at a time, so that a slow parse never stalls transfers. The thread
/// that ends the last load under way completes it itself, which saves a switch of threads; the
/// other one takes the network over as soon as a task starts meanwhile.
///
/// Made with the first task and never destroyed. The threads start with the first task that is
/// resumed or cancelled; both are stopped and joined at exit. While one of them cannot be started,
/// tasks fail: they complete on the other one or, when there is none, on the main queue.
/// A child process made by fork leaves its parent's engine alone and makes a fresh one.
class SessionEngine {
 public:
  static SessionEngine& shared();
  /// Counts the forks that led to this process: what another process made has another number.
  static int processGeneration();

  /// For shared() alone.
  SessionEngine();
  SessionEngine(const SessionEngine&) = delete;
  SessionEngine& operator=(const SessionEngine&) = delete;

  /// Any thread.
  void start(std::shared_ptr<DataTask> task);
  void cancel(std::shared_ptr<DataTask> task);
  /// Has a task that was never started complete as cancelled.
  void cancelUnstarted(std::shared_ptr<DataTask> task);
  void ended(LoadMessages message);
  /// Has the task complete on the callback thread.
  void deliver(std::shared_ptr<DataTask> task, Outcome outcome);

  /// The IO thread only.
  MultiLoop& network() { return network_; }
  Load::Clock::time_point now() const { return now_; }

 private:
  using Event = LoadMessage::Event;
  using Lock = std::unique_lock<std::mutex>;

  static void registerProcessHandlers();
  std::string startThreads();
  void stop();
  void run();
  void wakeOther();

  // The IO thread.
  bool hasIOThread() const { return ioThread_.load() != std::thread::id(); }
  bool isIOThread() const { return ioThread_.load() == std::this_thread::get_id(); }
  void transfer(Lock& lock);
  bool gathersMore();
  void performOnce();
  void post(LoadMessages message);
  void handle(LoadMessages& messages);
  void begin(std::shared_ptr<DataTask> task);
  void serve(const std::shared_ptr<DataTask>& task);
  void finish(Load& load, DataTask& task);
  void endEarly(Load& load, std::int64_t code, std::string technicalText = {});
  void endTimedOut();

  // Changed under the lock of the engines; how many have started may be read by any thread.
  std::array<std::thread, 2> threads_;
  std::atomic<std::size_t> threadCount_ = 0;
  std::mutex mutex_;
  std::condition_variable hasWork_;
  std::atomic<bool> stopping_ = false;
  // What was not handled before the end stays where it is.
  LoadMessages inbox_;
  bool ioThreadSleeps_ = false;
  std::atomic<std::thread::id> ioThread_;

  CompletionQueue completions_;

  // The rest belongs to the IO thread.
  MultiLoop network_;
  LoadMessages batch_;
  LoadMessages own_;
  std::vector<std::shared_ptr<Load>> loads_;
  bool delivered_ = false;  // Something, and no thread was told to complete it.
  Load::Clock::time_point gathersUntil_;
  Load::Clock::time_point now_;
  Load::Clock::time_point nextDeadline_ = Load::Clock::time_point::max();
};

}  // namespace quorvelkit
