// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/MainQueueThread.h>
#include <QuorvelPlatform/MainQueueThread_p.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/ProcessExit_p.h>

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <latch>
#include <list>
#include <mutex>
#include <thread>
#include <utility>

namespace quorvelkit {

namespace {

class QueueRunner {
 public:
  void start() {
    std::latch isRunning(1);
    thread_ = std::thread([this, &isRunning] {
      MainQueue::main().bindToCurrentThread();
      id_ = std::this_thread::get_id();
      isRunning.count_down();
      while (!stopping_)
        MainQueue::main().runOnce(std::chrono::hours(1));
      setState(State::ended);
    });
    isRunning.wait();
  }
  // Waits for the block that is running and joins the thread. On the thread itself it only detaches
  // the thread, which ends after its block.
  void stop() {
    stopping_ = true;
    if (!isCurrentThread()) {
      MainQueue::main().async([] {});  // Ends the wait for a block.
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [&] { return state_ != State::running; });
      if (state_ == State::sleeping) return;
    }
    const std::lock_guard lock(mutex_);
    if (!thread_.joinable()) return;
    isCurrentThread() ? thread_.detach() : thread_.join();
  }
  // The thread sleeps until the process ends.
  void setSleeping() { setState(State::sleeping); }
  bool isCurrentThread() const { return id_ == std::this_thread::get_id(); }

 private:
  enum class State { running, sleeping, ended };

  void setState(State state) {
    const std::lock_guard lock(mutex_);
    state_ = state;
    changed_.notify_all();
  }

  std::atomic<bool> stopping_ = false;
  std::atomic<std::thread::id> id_;
  std::mutex mutex_;
  std::condition_variable changed_;
  State state_ = State::running;
  std::thread thread_;
};

// The runner of the only object. Runners are never destroyed, because a child process must not
// destroy the thread of its parent, and a thread may outlive its object.
struct CurrentRunner {
  std::mutex mutex;
  std::list<QueueRunner> runners;
  QueueRunner* current = nullptr;

  QueueRunner* get() {
    const std::lock_guard lock(mutex);
    return current;
  }
};

CurrentRunner& currentRunner() {
  static const NeverDestroyed<CurrentRunner> state;
  return *state;
}

void registerRunnerHandlers() {
  static bool registered = false;
  if (std::exchange(registered, true)) return;
  const int failure = std::atexit([] {
    isProcessExiting = true;
    if (QueueRunner* const runner = currentRunner().get()) runner->stop();
  });
  const int forkFailure =
      pthread_atfork([] { currentRunner().mutex.lock(); }, [] { currentRunner().mutex.unlock(); },
                     [] {
                       currentRunner().current = nullptr;
                       currentRunner().mutex.unlock();
                     });
  if (failure != 0 || forkFailure != 0)
    fatalError("The thread of the main queue cannot register its exit and fork handlers.");
}

}  // namespace

void markSleepingMainQueueThread() {
  QueueRunner* const runner = currentRunner().get();
  if (runner != nullptr && runner->isCurrentThread()) runner->setSleeping();
}

MainQueueThread::MainQueueThread() : process_(getpid()) {
  auto& [mutex, runners, current] = currentRunner();
  const std::lock_guard lock(mutex);
  if (current != nullptr) fatalError("The main queue has a MainQueueThread already.");
  if (MainQueue::main().hasWakeUpHook())
    fatalError("A MainQueueThread cannot run a main queue that has a wake-up hook.");
  registerRunnerHandlers();
  QueueRunner& runner = runners.emplace_back();
  runner.start();
  current = &runner;
}

MainQueueThread::~MainQueueThread() {
  if (process_ != getpid()) return;
  // The mutex is not locked while a handler is running, because fork() locks it.
  currentRunner().get()->stop();
  const std::lock_guard lock(currentRunner().mutex);
  currentRunner().current = nullptr;
}

}  // namespace quorvelkit
