// SPDX-License-Identifier: Apache-2.0
// The way of a data task through the engine: start(), messages to the IO thread, a loader, the
// completion queue. SessionThreads.cpp starts and stops the threads.
#include <QuorvelPlatform/BodyMemory_p.h>
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/ProtocolRegistry_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/NetworkProtocol_p.h>

#include <algorithm>
#include <new>
#include <utility>

namespace quorvelkit {

// Functions for any thread.

void SessionEngine::start(std::shared_ptr<DataTask> task) {
  std::string problem = startThreads();
  if (!problem.empty()) {
    return enqueueCompletion(std::move(task),
                             TaskResult::failure(URLError::unknown, std::move(problem)));
  }
  post({{Event::start, std::move(task)}});
}

void SessionEngine::cancelUnstarted(std::shared_ptr<DataTask> task) {
  startThreads();
  enqueueCompletion(std::move(task), {});
}

void SessionEngine::cancel(std::shared_ptr<DataTask> task) {
  // Without both threads no task is running. A task that starts now checks its own state.
  if (threadCount_ == threads_.size()) post({{Event::cancel, std::move(task)}});
}

void SessionEngine::post(TaskMessages messages) {
  if (isIOThread()) return ioThreadMessages_.splice(ioThreadMessages_.end(), messages);
  bool needsIOThread = false;
  bool sleeps = false;
  {
    const std::lock_guard lock(mutex_);
    inbox_.splice(inbox_.end(), messages);
    needsIOThread = !hasIOThread();
    sleeps = std::exchange(ioThreadSleeps_, false);
  }
  if (needsIOThread) hasWork_.notify_one();
  if (sleeps) transferLoop_.wakeUp();
}

void SessionEngine::enqueueCompletion(std::shared_ptr<DataTask> task, TaskResult result) {
  if (threadCount_ == 0) prepareMainQueueRun();
  if (!completions_.push(std::move(task), std::move(result))) return;
  if (isIOThread()) {
    constexpr std::chrono::microseconds maximumBatchTime(500);
    if (!std::exchange(hasBatch_, true)) batchDeadline_ = now_ + maximumBatchTime;
  } else {
    notifyOtherThread();
  }
}

// Allocates the block that completes tasks on the main queue before a task is added, because a task
// that is in the completion queue must complete also if no memory is left.
void SessionEngine::prepareMainQueueRun() {
  MainQueue::Prepared prepared([this] {
    if (threadCount_ == 0) completions_.run(1);
    if (completions_.needsThread()) notifyOtherThread();
  });
  const std::lock_guard lock(mutex_);
  mainQueueRun_ = std::move(prepared);
}

// Notifies a waiting thread. If no thread could be started, the main queue completes the tasks.
void SessionEngine::notifyOtherThread() {
  if (threadCount_ == 0) {
    MainQueue::Prepared run;
    {
      const std::lock_guard lock(mutex_);
      std::swap(run, mainQueueRun_);
    }
    return MainQueue::main().async(std::move(run));
  }
  // After this lock, a thread that found no work before is waiting and receives the notification.
  { const std::lock_guard lock(mutex_); }
  hasWork_.notify_one();
}

// Each of the two threads runs this function. It takes the role that is needed, or waits.
void SessionEngine::runThread() {
  Lock lock(mutex_);
  while (!stopping_) {
    if (completions_.needsThread()) {
      lock.unlock();
      completions_.run();
      lock.lock();
    } else if (!hasIOThread() && (!inbox_.empty() || !loaders_.empty())) {
      runIOThread(lock);
    } else if (!BodyMemory::shared().isOpen()) {
      hasWork_.wait(lock);
    } else if (hasWork_.wait_for(lock, BodyMemory::maximumIdleTime) == std::cv_status::timeout) {
      lock.unlock();
      BodyMemory::shared().freeIfIdle(TaskLoader::Clock::now());
      lock.lock();
    }
  }
}

// Functions for the IO thread.

// Returns when no task is running, and at exit.
void SessionEngine::runIOThread(Lock& lock) {
  ioThread_ = std::this_thread::get_id();
  while (!stopping_ && (!inbox_.empty() || !loaders_.empty())) {
    receivedMessages_.swap(inbox_);
    lock.unlock();
    performRound();
    const bool extendsBatch = shouldExtendBatch();
    lock.lock();
    if (extendsBatch) continue;
    // If nothing is running any more, this thread completes the batch itself.
    const bool continues = !inbox_.empty() || !loaders_.empty();
    const bool notifies = std::exchange(hasBatch_, false) && continues;
    const bool sleeps = continues && inbox_.empty() && !stopping_;
    if (!notifies && !sleeps) continue;
    ioThreadSleeps_ = sleeps;
    lock.unlock();
    if (notifies) hasWork_.notify_one();
    if (sleeps) transferLoop_.wait(nextDeadline_ - now_);
    lock.lock();
    ioThreadSleeps_ = false;
  }
  ioThread_ = std::thread::id();
}

// Waking a thread costs as much as a small transfer. While many tasks are running and the network
// has more input, several completions are therefore collected before the other thread is notified.
bool SessionEngine::shouldExtendBatch() {
  const bool isBusy = loaders_.size() > HostConnectionLimiter::connectionsPerHost;
  return hasBatch_ && isBusy && !stopping_ && TaskLoader::Clock::now() < batchDeadline_ &&
         transferLoop_.wait(std::chrono::nanoseconds(0));
}

void SessionEngine::performRound() {
  try {
    now_ = TaskLoader::Clock::now();
    handleMessages(receivedMessages_);
    transferLoop_.perform();
    failTimedOutLoaders();
    while (!ioThreadMessages_.empty()) {
      TaskMessages messages;
      messages.swap(ioThreadMessages_);
      handleMessages(messages);
    }
  } catch (...) {
    fatalError("A URL protocol threw an exception.");
  }
}

void SessionEngine::handleMessages(TaskMessages& messages) {
  for (TaskMessage& message : messages) {
    switch (message.event) {
      case Event::start: startTask(std::move(message.task)); break;
      case Event::cancel:
        if (message.task->loader != nullptr) failLoader(*message.task->loader, URLError::cancelled);
        break;
      case Event::ended: removeLoader(*message.loader, *message.task); break;
    }
  }
  messages.clear();
}

void SessionEngine::startTask(std::shared_ptr<DataTask> task) {
  if (task->state() == DataTask::State::canceling) {
    enqueueCompletion(std::move(task), {});
    return;
  }
  try {
    startLoader(task);
  } catch (const std::bad_alloc&) {
    if (task->loader != nullptr) return task->loader->end(TaskResult::outOfMemory());
    enqueueCompletion(std::move(task), TaskResult::outOfMemory());
  }
}

void SessionEngine::startLoader(const std::shared_ptr<DataTask>& task) {
  auto loader = std::make_shared<TaskLoader>(*this, task, now_);
  loader->index = loaders_.size();
  loaders_.push_back(loader);
  task->loader = loader.get();
  nextDeadline_ = std::min(nextDeadline_, loader->deadline());
  const URLRequest& request = task->originalRequest();
  loader->protocol = makeRegisteredProtocol(request);
  if (!loader->protocol) loader->protocol = makeNetworkProtocol(*this, *loader, task->session());
  loader->protocol->startLoading(request, loader);
}

// Stops and destroys the protocol of an ended loader.
void SessionEngine::removeLoader(TaskLoader& loader, DataTask& task) {
  task.loader = nullptr;
  const auto protocol = std::move(loader.protocol);
  if (protocol) protocol->stopLoading();
  const std::size_t index = loader.index;
  std::swap(loaders_[index], loaders_.back());
  loaders_[index]->index = index;
  loaders_.pop_back();
}

void SessionEngine::failLoader(TaskLoader& loader, std::int64_t code, std::string technicalText) {
  auto task = loader.detachTask();
  if (!task) return;
  removeLoader(loader, *task);
  enqueueCompletion(std::move(task), TaskResult::failure(code, std::move(technicalText)));
}

void SessionEngine::failTimedOutLoaders() {
  if (now_ < nextDeadline_) return;
  nextDeadline_ = TaskLoader::Clock::time_point::max();
  for (std::size_t i = 0; i < loaders_.size();) {
    const auto deadline = loaders_[i]->deadline();
    const std::size_t count = loaders_.size();
    if (deadline <= now_) {
      failLoader(*loaders_[i], URLError::timedOut, loaders_[i]->timeoutText(now_));
    }
    if (loaders_.size() == count) {
      nextDeadline_ = std::min(nextDeadline_, deadline);
      ++i;
    }
  }
}

}  // namespace quorvelkit
