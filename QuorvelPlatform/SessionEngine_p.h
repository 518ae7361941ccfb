// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/CompletionQueue_p.h>
#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/TaskLoader_p.h>
#include <QuorvelPlatform/TaskResult_p.h>
#include <QuorvelPlatform/curl/TransferLoop_p.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quorvelkit {

/// The two threads and the queues that serve all sessions of a process.
///
/// There are two roles. The IO thread runs transfers and URL protocols, the callback thread
/// completes data tasks, one at a time. Both threads can take both roles:
///  - While tasks are running, one thread is the IO thread and the other one the callback thread,
///    so that a slow completion handler does not delay transfers.
///  - The IO thread that ends the last running task also completes it, which saves the change to
///    another thread. If a new task starts meanwhile, the other thread becomes the IO thread.
///
/// Created with the first task and never destroyed. The threads start with the first task that is
/// resumed or cancelled. At exit they are stopped and joined. If a thread cannot be started, tasks
/// fail; they complete on the other thread, or on the main queue if there is no thread at all.
/// After fork() the child process creates a new engine and does not use its parent's.
class SessionEngine {
 public:
  static SessionEngine& shared();
  /// Returns the number of forks between the first process and this one. A value that was created
  /// under another number belongs to another process.
  static int processGeneration();
  /// Returns true on the threads of an engine, which must not wait for data tasks.
  static bool isEngineThread();

  /// Only for shared().
  SessionEngine();
  SessionEngine(const SessionEngine&) = delete;
  SessionEngine& operator=(const SessionEngine&) = delete;

  // Thread-safe.

  void start(std::shared_ptr<DataTask> task);
  void cancel(std::shared_ptr<DataTask> task);
  /// Completes a task that was never started as cancelled.
  void cancelUnstarted(std::shared_ptr<DataTask> task);
  /// Sends messages to the IO thread.
  void post(TaskMessages messages);
  /// Completes the task on the callback thread.
  void enqueueCompletion(std::shared_ptr<DataTask> task, TaskResult result);

  // On the IO thread.

  TransferLoop& transferLoop() { return transferLoop_; }
  /// Returns the time at which the current round of the IO thread began.
  TaskLoader::Clock::time_point now() const { return now_; }

 private:
  using Event = TaskMessage::Event;
  using Lock = std::unique_lock<std::mutex>;

  static void registerExitHandler();
  static bool registerForkHandlers() noexcept;
  static const bool forkHandlersAreRegistered;
  std::string startThreads();
  void stop();
  void runThread();
  void prepareMainQueueRun();
  void notifyOtherThread();
  bool hasIOThread() const { return ioThread_.load() != std::thread::id(); }
  bool isIOThread() const { return ioThread_.load() == std::this_thread::get_id(); }

  // On the IO thread.
  void runIOThread(Lock& lock);
  bool shouldExtendBatch();
  void performRound();
  void handleMessages(TaskMessages& messages);
  void startTask(std::shared_ptr<DataTask> task);
  void startLoader(const std::shared_ptr<DataTask>& task);
  void removeLoader(TaskLoader& loader, DataTask& task);
  void failLoader(TaskLoader& loader, std::int64_t code, std::string technicalText = {});
  void failTimedOutLoaders();

  // Changed while the mutex of SessionThreads.cpp is locked. The count is read by any thread.
  std::array<std::thread, 2> threads_;
  std::atomic<std::size_t> threadCount_ = 0;

  std::mutex mutex_;  // Guards the inbox, ioThreadSleeps_ and mainQueueRun_.
  std::condition_variable hasWork_;
  std::atomic<bool> stopping_ = false;
  TaskMessages inbox_;  // Messages of other threads to the IO thread.
  bool ioThreadSleeps_ = false;
  MainQueue::Prepared mainQueueRun_;  // Set while the engine has no thread and a task is added.
  std::atomic<std::thread::id> ioThread_;  // No thread if nothing is running.

  CompletionQueue completions_;

  // Used on the IO thread.
  TransferLoop transferLoop_;
  TaskMessages receivedMessages_;  // The messages of the inbox that this round handles.
  TaskMessages ioThreadMessages_;  // Messages of the IO thread to itself.
  std::vector<std::shared_ptr<TaskLoader>> loaders_;
  bool hasBatch_ = false;  // The IO thread added completions and has not notified a thread yet.
  TaskLoader::Clock::time_point batchDeadline_;
  TaskLoader::Clock::time_point now_;
  TaskLoader::Clock::time_point nextDeadline_ = TaskLoader::Clock::time_point::max();
};

}  // namespace quorvelkit
