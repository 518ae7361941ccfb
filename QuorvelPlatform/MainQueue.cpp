// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/WakeUpHook.h>

#include <pthread.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <list>
#include <mutex>
#include <new>
#include <optional>
#include <utility>

namespace quorvelkit {

struct MainQueue::State {
  using Hook = std::shared_ptr<const std::function<void()>>;

  // Locked while the hook of a WakeUpHook runs, and before the other mutex.
  std::mutex hookMutex;
  std::mutex mutex;
  std::condition_variable changed;
  std::list<Block> blocks;
  bool stopped = false;
  Hook hook;
  // The hook was called after the last start of runPending().
  bool isSignalled = false;
  // The thread that runs the blocks, or 0 for the initial thread of the process.
  std::atomic<pid_t> thread = 0;

  std::optional<Block> take(std::unique_lock<std::mutex>& lock) {
    if (blocks.empty()) return std::nullopt;
    std::optional<Block> block(std::move(blocks.front()));
    blocks.pop_front();
    lock.unlock();
    return block;
  }

  // Returns the hook, for a call without the mutex.
  Hook signal() {
    isSignalled = hook != nullptr;
    return hook;
  }

  // Calls a new hook if blocks are waiting.
  void wakeUpIfWaiting() {
    Hook current;
    {
      const std::lock_guard lock(mutex);
      isSignalled = false;
      if (!blocks.empty()) current = signal();
    }
    if (current) (*current)();
  }
};

namespace {

// A fork changes the identifier of the thread that calls it.
std::atomic<int> forkCount = 0;

// Registers the current thread as the thread of a queue until the thread ends.
class ThreadRegistration {
 public:
  ThreadRegistration() = default;
  ThreadRegistration(const ThreadRegistration&) = delete;
  ThreadRegistration& operator=(const ThreadRegistration&) = delete;
  ~ThreadRegistration() {
    pid_t own = id();
    if (thread_ != nullptr) thread_->compare_exchange_strong(own, 0);
  }
  void registerAt(std::atomic<pid_t>& thread) {
    thread_ = &thread;
    if (thread.load(std::memory_order_relaxed) != id()) thread = id();
  }
  pid_t id() {
    const int forks = forkCount.load(std::memory_order_relaxed);
    if (std::exchange(forks_, forks) != forks) id_ = gettid();
    return id_;
  }

 private:
  std::atomic<pid_t>* thread_ = nullptr;
  int forks_ = -1;
  pid_t id_ = 0;
};

thread_local ThreadRegistration threadRegistration;

// Calls a function at the end of a scope, also after an exception.
template <class Function>
class AtScopeEnd {
 public:
  explicit AtScopeEnd(Function function) : function_(std::move(function)) {}
  AtScopeEnd(const AtScopeEnd&) = delete;
  AtScopeEnd& operator=(const AtScopeEnd&) = delete;
  ~AtScopeEnd() { function_(); }

 private:
  Function function_;
};

}  // namespace

MainQueue& MainQueue::main() {
  static const NeverDestroyed<State> state;
  static MainQueue queue(*state);
  return queue;
}

// fork() locks the mutexes, so that the child process gets a consistent queue. The threads that
// wait in the parent do not exist in the child, so its condition variable is a new one.
MainQueue::MainQueue(State& state) : state_(state) {
  static constexpr auto unlock = [] {
    main().state_.mutex.unlock();
    main().state_.hookMutex.unlock();
  };
  pthread_atfork(
      [] {
        main().state_.hookMutex.lock();
        main().state_.mutex.lock();
      },
      unlock,
      [] {
        ++forkCount;
        main().state_.thread = 0;
        new (&main().state_.changed) std::condition_variable;
        unlock();
      });
}

void MainQueue::async(Block block) { async(Prepared(std::move(block))); }

void MainQueue::async(Prepared block) {
  State::Hook hook;
  {
    const std::lock_guard lock(state_.mutex);
    if (state_.blocks.empty()) hook = state_.signal();
    state_.blocks.splice(state_.blocks.end(), block.place_);
  }
  state_.changed.notify_one();
  if (hook) (*hook)();
}

void MainQueue::run() {
  bindToCurrentThread();
  for (;;) {
    std::unique_lock lock(state_.mutex);
    state_.changed.wait(lock, [&] { return state_.stopped || !state_.blocks.empty(); });
    if (std::exchange(state_.stopped, false)) return;
    const auto block = state_.take(lock);
    (*block)();
  }
}

bool MainQueue::runOnce(std::chrono::milliseconds timeout) {
  bindToCurrentThread();
  std::unique_lock lock(state_.mutex);
  state_.changed.wait_for(lock, timeout, [&] { return !state_.blocks.empty(); });
  const auto block = state_.take(lock);
  if (block) (*block)();
  return block.has_value();
}

void MainQueue::runPending() {
  bindToCurrentThread();
  std::size_t pending = 0;
  {
    const std::lock_guard lock(state_.mutex);
    state_.isSignalled = false;
    pending = state_.blocks.size();
  }
  const AtScopeEnd wakeUp([&] {
    State::Hook hook;
    {
      const std::lock_guard lock(state_.mutex);
      if (!state_.blocks.empty() && !state_.isSignalled) hook = state_.signal();
    }
    if (hook) (*hook)();
  });
  for (; pending > 0; --pending) {
    std::unique_lock lock(state_.mutex);
    State::Hook hook;
    // If the block runs an event loop, that loop must run the blocks that follow.
    if (state_.blocks.size() > 1 && !state_.isSignalled) hook = state_.signal();
    const auto block = state_.take(lock);
    if (!block) return;
    if (hook) (*hook)();
    (*block)();
  }
}

void MainQueue::stop() {
  {
    const std::lock_guard lock(state_.mutex);
    state_.stopped = true;
  }
  state_.changed.notify_all();
}

void MainQueue::setWakeUpHook(std::function<void()> hook) {
  State::Hook next =
      hook ? std::make_shared<const std::function<void()>>(std::move(hook)) : nullptr;
  {
    const std::lock_guard lock(state_.mutex);
    state_.hook.swap(next);
  }
  state_.wakeUpIfWaiting();
}

bool MainQueue::hasWakeUpHook() const {
  const std::lock_guard lock(state_.mutex);
  return state_.hook != nullptr;
}

bool MainQueue::isCurrentThread() const {
  const pid_t thread = state_.thread;
  const pid_t own = threadRegistration.id();
  return own == (thread != 0 ? thread : getpid());
}

void MainQueue::bindToCurrentThread() { threadRegistration.registerAt(state_.thread); }

WakeUpHook::WakeUpHook(std::function<void()> hook)
    : active_(std::make_shared<std::function<void()>>(std::move(hook))),
      installed_(std::make_shared<const std::function<void()>>([active = active_] {
        const std::lock_guard lock(MainQueue::main().state_.hookMutex);
        if (*active) (*active)();
      })) {
  MainQueue::State& state = MainQueue::main().state_;
  MainQueue::main().bindToCurrentThread();
  {
    const std::lock_guard lock(state.mutex);
    replaced_ = std::exchange(state.hook, installed_);
  }
  state.wakeUpIfWaiting();
}

WakeUpHook::~WakeUpHook() {
  MainQueue::State& state = MainQueue::main().state_;
  bool isInstalled = false;
  {
    const std::lock_guard lock(state.mutex);
    isInstalled = state.hook == installed_;
    if (isInstalled) state.hook = replaced_;
  }
  if (isInstalled) state.wakeUpIfWaiting();
  std::function<void()> hook;
  const std::lock_guard lock(state.hookMutex);
  hook.swap(*active_);
}

}  // namespace quorvelkit
