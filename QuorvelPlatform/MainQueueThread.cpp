// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/MainQueueThread.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/SignalBlocker_p.h>

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
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
    const SignalBlocker signalBlocker;
    thread_ = std::thread([this, &isRunning] {
      MainQueue::main().bindToCurrentThread();
      isRunning.count_down();
      while (!stopping_)
        MainQueue::main().runOnce(std::chrono::hours(1));
    });
    isRunning.wait();
  }
  void stop() {
    stopping_ = true;
    MainQueue::main().async([] {});  // Ends the wait.
    const std::lock_guard lock(joining_);
    if (thread_.joinable() && !isCurrentThread()) thread_.join();
  }
  bool isCurrentThread() const { return thread_.get_id() == std::this_thread::get_id(); }

 private:
  std::atomic<bool> stopping_ = false;
  std::mutex joining_;
  std::thread thread_;
};

// The runner of the only object. Runners are never destroyed, because a child process must not
// destroy the thread of its parent, and the exit handler may run on the thread.
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
  QueueRunner* const runner = currentRunner().get();
  if (runner->isCurrentThread())
    fatalError("A MainQueueThread cannot be destroyed on its own thread.");
  runner->stop();
  const std::lock_guard lock(currentRunner().mutex);
  currentRunner().current = nullptr;
}

}  // namespace quorvelkit
