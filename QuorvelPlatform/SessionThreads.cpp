// SPDX-License-Identifier: Apache-2.0
// Starts and stops the engine and its threads, and handles exit and fork.
#include <QuorvelPlatform/BodyMemory_p.h>
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/ProcessExit_p.h>
#include <QuorvelPlatform/ProtocolRegistry_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/SignalBlocker_p.h>

#include <pthread.h>

#include <cstdlib>
#include <exception>
#include <list>
#include <utility>

namespace quorvelkit {

namespace {

std::mutex engineMutex;
std::atomic<SessionEngine*> currentEngine = nullptr;
std::atomic<int> generation = 0;
thread_local bool runsEngine = false;  // True on the threads of an engine.

}  // namespace

int SessionEngine::processGeneration() { return generation.load(std::memory_order_relaxed); }

SessionEngine& SessionEngine::shared() {
  if (SessionEngine* engine = currentEngine.load(std::memory_order_acquire)) return *engine;
  const std::lock_guard lock(engineMutex);
  SessionEngine* engine = currentEngine.load(std::memory_order_relaxed);
  if (engine == nullptr) {
    static const NeverDestroyed<std::list<SessionEngine>> engines;
    engine = &engines->emplace_back();
    currentEngine.store(engine, std::memory_order_release);
  }
  return *engine;
}

SessionEngine::SessionEngine() { registerExitHandler(); }

bool SessionEngine::isEngineThread() { return runsEngine; }

// Starts the threads that are not running. Returns the reason if a thread cannot be started.
std::string SessionEngine::startThreads() {
  if (threadCount_ == threads_.size()) return {};
  const std::lock_guard lock(engineMutex);
  if (stopping_) return {};
  const SignalBlocker signalBlocker;
  try {
    for (; threadCount_ < threads_.size(); ++threadCount_)
      threads_[threadCount_] = std::thread([this] {
        runsEngine = true;
        runThread();
      });
  } catch (const std::exception& exception) {
    return std::string("A thread of the URL session cannot be started: ") + exception.what();
  }
  return {};
}

// The transfer loop initialises libcurl before the exit handler is registered. Exit handlers run in
// reverse order: the threads have stopped before the libraries of libcurl clean up.
void SessionEngine::registerExitHandler() {
  static bool registered = false;
  if (std::exchange(registered, true)) return;
  const int failure = std::atexit([] {
    isProcessExiting = true;
    if (SessionEngine* engine = currentEngine.load()) engine->stop();
  });
  if (failure != 0) fatalError("The URL session cannot register its exit handler.");
}

// Registered when the library is loaded, because a process may fork during the first task.
//
// fork() locks all mutexes in the order in which threads lock them: the engine mutex, the mutex of
// libcurl, then the others. A thread that holds one of the others locks at most the mutex of the
// completion queue, which is therefore the last one. Threads only try to lock the mutex of the
// memory for bodies.
bool SessionEngine::registerForkHandlers() noexcept {
  static constexpr auto forEachLock = [](void (*visit)(std::mutex&)) {
    visit(BodyMemory::shared().mutex());
    visit(protocolRegistryMutex());
    if (SessionEngine* engine = currentEngine.load(std::memory_order_relaxed)) {
      visit(engine->mutex_);
      visit(engine->completions_.mutex());
    }
  };
  static constexpr auto libcurlMutex = []() -> std::recursive_mutex* {
    SessionEngine* const engine = currentEngine.load(std::memory_order_relaxed);
    return engine == nullptr || engine->threadCount_ == 0 ? nullptr
                                                          : &engine->transferLoop_.libcurlMutex();
  };
  static constexpr auto lock = [](std::mutex& mutex) { mutex.lock(); };
  static constexpr auto unlock = [](std::mutex& mutex) { mutex.unlock(); };
  const int failure = pthread_atfork(
      [] {
        engineMutex.lock();
        if (auto* const mutex = libcurlMutex()) mutex->lock();
        forEachLock(lock);
      },
      [] {
        forEachLock(unlock);
        if (auto* const mutex = libcurlMutex()) mutex->unlock();
        engineMutex.unlock();
      },
      [] {
        forEachLock(unlock);
        ++generation;
        runsEngine = false;
        // If a completion handler forked, the child must not run the handlers of its parent.
        if (SessionEngine* const engine = currentEngine.exchange(nullptr)) {
          engine->completions_.stop();
          engine->stopping_ = true;
        }
        engineMutex.unlock();
        BodyMemory::shared().freeIfIdle(BodyMemory::Clock::time_point::max());
      });
  if (failure != 0) fatalError("The URL session cannot register its fork handlers.");
  return true;
}

const bool SessionEngine::forkHandlersAreRegistered = registerForkHandlers();

void SessionEngine::stop() {
  completions_.stop();
  {
    const std::lock_guard noThreadStarts(engineMutex);
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  hasWork_.notify_all();
  transferLoop_.wakeUp();
  for (std::thread& thread : threads_) {
    if (thread.joinable() && std::this_thread::get_id() != thread.get_id()) thread.join();
  }
}

}  // namespace quorvelkit
