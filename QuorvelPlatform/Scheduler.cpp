// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/ProcessExit_p.h>
#include <QuorvelPlatform/Scheduler.h>
#include <QuorvelPlatform/SignalBlocker_p.h>

#include <pthread.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <list>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace quorvelkit {

Scheduler::Timer::~Timer() = default;
Scheduler::~Scheduler() = default;

namespace {

// Blocks ordered by time, and the thread that runs them.
class ThreadScheduler : public Scheduler {
 public:
  TimePoint now() const override { return std::chrono::steady_clock::now(); }
  std::unique_ptr<Timer> schedule(TimePoint time, Block block) override;

  void stop();
  std::mutex& mutex() { return mutex_; }

 private:
  // The number tells apart blocks of the same time and keeps their order.
  using Key = std::pair<TimePoint, std::uint64_t>;
  class ScheduledBlock;

  void run();
  void remove(const Key& key);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<Key, Block> blocks_;
  std::uint64_t count_ = 0;
  bool stopping_ = false;
  std::thread thread_;
};

class ThreadScheduler::ScheduledBlock : public Timer {
 public:
  ScheduledBlock(ThreadScheduler& scheduler, Key key) : scheduler_(scheduler), key_(key) {}
  ScheduledBlock(const ScheduledBlock&) = delete;
  ScheduledBlock& operator=(const ScheduledBlock&) = delete;
  ~ScheduledBlock() override { scheduler_.remove(key_); }

 private:
  ThreadScheduler& scheduler_;
  const Key key_;
};

std::unique_ptr<Scheduler::Timer> ThreadScheduler::schedule(TimePoint time, Block block) {
  std::unique_ptr<Timer> timer;  // Destroyed after the mutex is unlocked.
  const std::lock_guard lock(mutex_);
  if (!thread_.joinable() && !stopping_) {
    const SignalBlocker signalBlocker;
    thread_ = std::thread([this] { run(); });
  }
  const Key key(time, ++count_);
  timer = std::make_unique<ScheduledBlock>(*this, key);
  blocks_.emplace(key, std::move(block));
  if (blocks_.begin()->first == key) changed_.notify_one();
  return timer;
}

void ThreadScheduler::remove(const Key& key) {
  std::map<Key, Block>::node_type removed;
  const std::lock_guard lock(mutex_);
  removed = blocks_.extract(key);
}

void ThreadScheduler::run() {
  std::unique_lock lock(mutex_);
  while (!stopping_) {
    if (blocks_.empty()) {
      changed_.wait(lock);
    } else if (const TimePoint next = blocks_.begin()->first.first; now() < next) {
      changed_.wait_until(lock, next);
    } else {
      Block block = std::move(blocks_.extract(blocks_.begin()).mapped());
      lock.unlock();
      block();
      block = nullptr;
      lock.lock();
    }
  }
}

void ThreadScheduler::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable() && thread_.get_id() != std::this_thread::get_id()) thread_.join();
}

std::atomic<ThreadScheduler*> currentScheduler = nullptr;
std::mutex schedulerCreation;

// The parent's scheduler is neither used nor destroyed in a child process.
void registerSchedulerHandlers() {
  static bool registered = false;
  if (std::exchange(registered, true)) return;
  static constexpr auto unlock = [] {
    if (ThreadScheduler* const scheduler = currentScheduler) scheduler->mutex().unlock();
    schedulerCreation.unlock();
  };
  const int failure = std::atexit([] {
    isProcessExiting = true;
    if (ThreadScheduler* const scheduler = currentScheduler) scheduler->stop();
  });
  const int forkFailure = pthread_atfork(
      [] {
        schedulerCreation.lock();
        if (ThreadScheduler* const scheduler = currentScheduler) scheduler->mutex().lock();
      },
      unlock,
      [] {
        ThreadScheduler* const scheduler = currentScheduler.exchange(nullptr);
        if (scheduler != nullptr) scheduler->mutex().unlock();
        schedulerCreation.unlock();
      });
  if (failure != 0 || forkFailure != 0)
    fatalError("The scheduler cannot register its exit and fork handlers.");
}

}  // namespace

Scheduler& Scheduler::shared() {
  if (ThreadScheduler* const scheduler = currentScheduler.load()) return *scheduler;
  const std::lock_guard lock(schedulerCreation);
  if (currentScheduler.load() == nullptr) {
    static const NeverDestroyed<std::list<ThreadScheduler>> schedulers;
    currentScheduler = &schedulers->emplace_back();
    registerSchedulerHandlers();
  }
  return *currentScheduler.load();
}

}  // namespace quorvelkit
