// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/CallbackThread_p.h>
#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/Load_p.h>
#include <QuorvelPlatform/curl/MultiLoop_p.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quorvelkit {

/// What all sessions of a process share: the IO thread, on which protocols and the network run,
/// and the callback thread. Made with the first task that starts and never destroyed; both threads
/// are stopped and joined at exit. A child process made by fork leaves its parent's engine alone
/// and makes a fresh one.
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
  void ended(std::shared_ptr<Load> load, std::shared_ptr<DataTask> task);
  void deliver(std::shared_ptr<DataTask> task, Outcome outcome) {
    callbacks_.push(std::move(task), std::move(outcome));
  }

  /// The IO thread only.
  MultiLoop& network() { return network_; }
  Load::Clock::time_point now() const { return now_; }

 private:
  enum class Event { start, cancel, ended };
  struct Message {
    Event event;
    std::shared_ptr<DataTask> task;
    std::shared_ptr<Load> load;
  };

  static void registerProcessHandlers();
  void stop();
  void post(Message message);
  void run();
  void handle(std::vector<Message>& messages);
  void begin(std::shared_ptr<DataTask> task);
  void finish(Load& load, DataTask& task);
  void endEarly(Load& load, std::int64_t code);
  void endTimedOut();

  CallbackThread callbacks_;
  MultiLoop network_;
  std::thread thread_;

  std::mutex mutex_;
  std::vector<Message> inbox_;
  bool sleeping_ = false;
  std::atomic<bool> stopping_ = false;

  // The rest belongs to the IO thread. Messages that were not handled before the end stay here.
  std::vector<Message> batch_;
  std::vector<Message> own_;
  std::vector<std::shared_ptr<Load>> loads_;
  Load::Clock::time_point now_;
  Load::Clock::time_point nextDeadline_ = Load::Clock::time_point::max();
};

}  // namespace quorvelkit
