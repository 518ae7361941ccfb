// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/ProtocolRegistry_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/NetworkProtocol_p.h>

#include <pthread.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
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

SessionEngine::SessionEngine() {
  registerProcessHandlers();
  const AllSignalsBlocked blocked;
  try {
    for (std::thread& thread : threads_)
      thread = std::thread([this] { run(); });
  } catch (const std::exception&) {
    fatalError("The threads of the URL session could not be started.");
  }
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
    return engine == nullptr ? nullptr : &engine->network_.atWork();
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

void SessionEngine::start(std::shared_ptr<DataTask> task) {
  post({Event::start, std::move(task), nullptr});
}

void SessionEngine::cancel(std::shared_ptr<DataTask> task) {
  post({Event::cancel, std::move(task), nullptr});
}

void SessionEngine::ended(std::shared_ptr<Load> load, std::shared_ptr<DataTask> task) {
  post({Event::ended, std::move(task), std::move(load)});
}

void SessionEngine::post(Message message) {
  if (isIOThread()) {
    own_.push_back(std::move(message));
    return;
  }
  bool isFree = false;
  bool sleeps = false;
  {
    const std::lock_guard lock(mutex_);
    inbox_.push_back(std::move(message));
    isFree = !hasIOThread();
    sleeps = std::exchange(ioThreadSleeps_, false);
  }
  if (isFree) hasWork_.notify_one();
  if (sleeps) network_.wakeUp();
}

void SessionEngine::deliver(std::shared_ptr<DataTask> task, Outcome outcome) {
  if (!completions_.push(std::move(task), std::move(outcome))) return;
  if (isIOThread()) {
    constexpr std::chrono::microseconds longestGathering(500);
    if (!std::exchange(delivered_, true)) gathersUntil_ = now_ + longestGathering;
  } else {
    wakeOther();
  }
}

// Has a thread that waits look for work.
void SessionEngine::wakeOther() {
  // Whoever found nothing to do is waiting once the lock is free.
  { const std::lock_guard lock(mutex_); }
  hasWork_.notify_one();
}

void SessionEngine::stop() {
  completions_.stop();
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  hasWork_.notify_all();
  network_.wakeUp();
  for (std::thread& thread : threads_) {
    if (std::this_thread::get_id() != thread.get_id()) thread.join();
  }
}

void SessionEngine::run() {
  Lock lock(mutex_);
  while (!stopping_) {
    if (completions_.needsThread()) {
      lock.unlock();
      completions_.run();
      lock.lock();
    } else if (!hasIOThread() && (!inbox_.empty() || !loads_.empty())) {
      transfer(lock);
    } else {
      hasWork_.wait(lock);
    }
  }
}

// Goes on while anything is under way.
void SessionEngine::transfer(Lock& lock) {
  ioThread_ = std::this_thread::get_id();
  while (!stopping_ && (!inbox_.empty() || !loads_.empty())) {
    batch_.swap(inbox_);
    lock.unlock();
    performOnce();
    const bool gathers = gathersMore();
    lock.lock();
    if (gathers) continue;
    // The other thread completes what ended, unless nothing is left to do here.
    const bool goesOn = !inbox_.empty() || !loads_.empty();
    const bool wakesOther = std::exchange(delivered_, false) && goesOn;
    const bool sleeps = goesOn && inbox_.empty() && !stopping_;
    if (!wakesOther && !sleeps) continue;
    ioThreadSleeps_ = sleeps;
    lock.unlock();
    if (wakesOther) hasWork_.notify_one();
    if (sleeps) network_.wait(nextDeadline_ - now_);
    lock.lock();
    ioThreadSleeps_ = false;
  }
  ioThread_ = std::thread::id();
}

// To wake a thread costs as much as a small transfer. When calls come in crowds, and the network
// has more to do at once, the other thread is called for several that ended.
bool SessionEngine::gathersMore() {
  const bool isCrowded = loads_.size() > HostLines::connectionsPerHost;
  return delivered_ && isCrowded && !stopping_ && Load::Clock::now() < gathersUntil_ &&
         network_.wait(std::chrono::nanoseconds(0));
}

void SessionEngine::performOnce() {
  try {
    now_ = Load::Clock::now();
    handle(batch_);
    network_.perform();
    endTimedOut();
    while (!own_.empty()) {
      std::vector<Message> messages;
      messages.swap(own_);
      handle(messages);
    }
  } catch (...) {
    fatalError("An exception left a URL protocol.");
  }
}

void SessionEngine::handle(std::vector<Message>& messages) {
  for (Message& message : messages) {
    switch (message.event) {
      case Event::start: begin(std::move(message.task)); break;
      case Event::cancel:
        if (message.task->load != nullptr) endEarly(*message.task->load, URLError::cancelled);
        break;
      case Event::ended: finish(*message.load, *message.task); break;
    }
  }
  messages.clear();
}

void SessionEngine::begin(std::shared_ptr<DataTask> task) {
  if (task->state() == DataTask::State::canceling) {
    deliver(std::move(task), {});
    return;
  }
  auto load = std::make_shared<Load>(*this, task, now_);
  task->load = load.get();
  load->index = loads_.size();
  loads_.push_back(load);
  nextDeadline_ = std::min(nextDeadline_, load->deadline());
  const URLRequest& request = task->originalRequest();
  load->protocol = makeRegisteredProtocol(request);
  if (!load->protocol) load->protocol = makeNetworkProtocol(*this, *load, task->session());
  load->protocol->startLoading(request, load);
}

// Stops the protocol of a load that has ended and lets go of both.
void SessionEngine::finish(Load& load, DataTask& task) {
  task.load = nullptr;
  const auto protocol = std::move(load.protocol);
  if (protocol) protocol->stopLoading();
  const std::size_t index = load.index;
  std::swap(loads_[index], loads_.back());
  loads_[index]->index = index;
  loads_.pop_back();
}

void SessionEngine::endEarly(Load& load, std::int64_t code, std::string technicalText) {
  auto task = load.close();
  if (!task) return;
  finish(load, *task);
  deliver(std::move(task), Outcome::failure(code, std::move(technicalText)));
}

void SessionEngine::endTimedOut() {
  if (now_ < nextDeadline_) return;
  nextDeadline_ = Load::Clock::time_point::max();
  for (std::size_t i = 0; i < loads_.size();) {
    const auto deadline = loads_[i]->deadline();
    const std::size_t count = loads_.size();
    if (deadline <= now_) endEarly(*loads_[i], URLError::timedOut, loads_[i]->timeoutText(now_));
    if (loads_.size() == count) {
      nextDeadline_ = std::min(nextDeadline_, deadline);
      ++i;
    }
  }
}

}  // namespace quorvelkit
