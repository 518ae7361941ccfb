// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/ProtocolRegistry_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/NetworkProtocol_p.h>

#include <algorithm>
#include <new>
#include <utility>

namespace quorvelkit {

void SessionEngine::start(std::shared_ptr<DataTask> task) {
  std::string problem = startThreads();
  if (!problem.empty()) {
    return deliver(std::move(task), Outcome::failure(URLError::unknown, std::move(problem)));
  }
  post({{Event::start, std::move(task)}});
}

void SessionEngine::cancelUnstarted(std::shared_ptr<DataTask> task) {
  startThreads();
  deliver(std::move(task), {});
}

void SessionEngine::cancel(std::shared_ptr<DataTask> task) {
  // Before both threads run nothing is under way; a task that starts meanwhile sees its own state.
  if (threadCount_ == threads_.size()) post({{Event::cancel, std::move(task)}});
}

void SessionEngine::ended(LoadMessages message) { post(std::move(message)); }

void SessionEngine::post(LoadMessages message) {
  if (isIOThread()) return own_.splice(own_.end(), message);
  bool isFree = false;
  bool sleeps = false;
  {
    const std::lock_guard lock(mutex_);
    inbox_.splice(inbox_.end(), message);
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

// Has a thread that waits look for work. Without threads, the main queue completes what waits now.
void SessionEngine::wakeOther() {
  if (threadCount_ == 0) {
    return MainQueue::main().async([this] {
      if (threadCount_ == 0) completions_.run(1);
      if (completions_.needsThread()) wakeOther();
    });
  }
  // Whoever found nothing to do is waiting once the lock is free.
  { const std::lock_guard lock(mutex_); }
  hasWork_.notify_one();
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
      LoadMessages messages;
      messages.swap(own_);
      handle(messages);
    }
  } catch (...) {
    fatalError("An exception left a URL protocol.");
  }
}

void SessionEngine::handle(LoadMessages& messages) {
  for (LoadMessage& message : messages) {
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
  try {
    serve(task);
  } catch (const std::bad_alloc&) {
    if (task->load != nullptr) return task->load->end(Outcome::outOfMemory());
    deliver(std::move(task), Outcome::outOfMemory());
  }
}

void SessionEngine::serve(const std::shared_ptr<DataTask>& task) {
  auto load = std::make_shared<Load>(*this, task, now_);
  load->index = loads_.size();
  loads_.push_back(load);
  task->load = load.get();
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
