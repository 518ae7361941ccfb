// SPDX-License-Identifier: Apache-2.0
// How the engine and its threads start, and what exit and fork do to them.
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/ProtocolRegistry_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>

#include <pthread.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <list>
#include <utility>

namespace quorvelkit {

namespace {

std::mutex engineMutex;
std::atomic<SessionEngine*> currentEngine = nullptr;
std::atomic<int> generation = 0;

// Signals are for the application's threads; SIGPIPE of a broken connection reaches nobody.
class AllSignalsBlocked {
 public:
  AllSignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  AllSignalsBlocked(const AllSignalsBlocked&) = delete;
  AllSignalsBlocked& operator=(const AllSignalsBlocked&) = delete;
  ~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

}  // namespace

int SessionEngine::processGeneration() { return generation.load(std::memory_order_relaxed); }

SessionEngine& SessionEngine::shared() {
  if (SessionEngine* engine = currentEngine.load(std::memory_order_acquire)) return *engine;
  const std::lock_guard lock(engineMutex);
  SessionEngine* engine = currentEngine.load(std::memory_order_relaxed);
  if (engine == nullptr) {
    static const NeverDestroyed<std::list<SessionEngine>> ofAllGenerations;
    engine = &ofAllGenerations->emplace_back();
    currentEngine.store(engine, std::memory_order_release);
  }
  return *engine;
}

SessionEngine::SessionEngine() { registerProcessHandlers(); }

// Starts the threads that are missing. Returns why one of them cannot be started, or nothing.
std::string SessionEngine::startThreads() {
  if (threadCount_ == threads_.size()) return {};
  const std::lock_guard lock(engineMutex);
  if (stopping_) return {};
  const AllSignalsBlocked blocked;
  try {
    for (; threadCount_ < threads_.size(); ++threadCount_)
      threads_[threadCount_] = std::thread([this] { run(); });
  } catch (const std::exception& exception) {
    return std::string("A thread of the URL session cannot be started: ") + exception.what();
  }
  return {};
}

// The network is initialised before the exit handler is registered, so that the threads have
// stopped when its own clean-up runs. Across a fork, the first lock and that of the network come
// before the others, which are taken inside them; of the others, only that of the completions is
// ever taken inside another one.
void SessionEngine::registerProcessHandlers() {
  static bool registered = false;
  if (std::exchange(registered, true)) return;
  int failure = std::atexit([] {
    if (SessionEngine* engine = currentEngine.load()) engine->stop();
  });
  static constexpr auto forEachLock = [](void (*visit)(std::mutex&)) {
    visit(protocolRegistryMutex());
    if (SessionEngine* engine = currentEngine.load(std::memory_order_relaxed)) {
      visit(engine->mutex_);
      visit(engine->completions_.mutex());
    }
  };
  static constexpr auto network = []() -> std::recursive_mutex* {
    SessionEngine* const engine = currentEngine.load(std::memory_order_relaxed);
    return engine == nullptr || engine->threadCount_ == 0 ? nullptr : &engine->network_.atWork();
  };
  static constexpr auto lock = [](std::mutex& mutex) { mutex.lock(); };
  static constexpr auto unlock = [](std::mutex& mutex) { mutex.unlock(); };
  failure |= pthread_atfork(
      [] {
        engineMutex.lock();
        if (auto* const atWork = network()) atWork->lock();
        forEachLock(lock);
      },
      [] {
        forEachLock(unlock);
        if (auto* const atWork = network()) atWork->unlock();
        engineMutex.unlock();
      },
      [] {
        forEachLock(unlock);
        ++generation;
        // A handler that forks must not go on with the parent's other handlers.
        if (SessionEngine* const engine = currentEngine.exchange(nullptr)) {
          engine->completions_.stop();
          engine->stopping_ = true;
        }
        engineMutex.unlock();
      });
  if (failure != 0) fatalError("The URL session could not ask to be told of exit and fork.");
}

void SessionEngine::stop() {
  completions_.stop();
  {
    const std::lock_guard noThreadStarts(engineMutex);
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  hasWork_.notify_all();
  network_.wakeUp();
  for (std::thread& thread : threads_) {
    if (thread.joinable() && std::this_thread::get_id() != thread.get_id()) thread.join();
  }
}

}  // namespace quorvelkit
