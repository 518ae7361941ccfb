// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/Calls/QVCallState.h>
#include <QuorvelKit/Calls/QVMainQueueBlock_p.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/URLError.h>

#include <unistd.h>

#include <new>
#include <random>
#include <system_error>

namespace quorvelkit::detail {

namespace {

// Needs no good generator: backoffs of many clients must only differ.
double randomNumber() {
  thread_local std::minstd_rand generator(static_cast<unsigned>(
      std::chrono::steady_clock::now().time_since_epoch().count() ^ getpid()));
  return std::uniform_real_distribution()(generator);
}

}  // namespace

CallState::Attempt::~Attempt() {
  if (state_) state_->noticeDroppedHandler();
}

void CallState::Attempt::complete(std::shared_ptr<QVBaseResponse> response) {
  if (!state_) return;
  state_->receive(std::move(response));
  state_ = nullptr;
}

std::shared_ptr<CallState> CallState::start(Functions functions,
                                            std::shared_ptr<QVBaseRequest> request,
                                            QVCallOptions options) {
  auto state =
      std::make_shared<CallState>(std::move(functions), std::move(request), std::move(options));
  state->applyOptions();
  state->startAttempt();
  if (!state->options_.cancelsWhenAbandoned) return state;
  return {state.get(), [state](CallState*) {
            try {
              state->cancel();
            } catch (const std::bad_alloc&) {  // The call continues.
            }
          }};
}

CallState::CallState(Functions functions, std::shared_ptr<QVBaseRequest> request,
                     QVCallOptions options)
    : options_(std::move(options)),
      process_(getpid()),
      functions_(std::move(functions)),
      request_(std::move(request)) {}

CallState::~CallState() = default;

Scheduler& CallState::scheduler() const {
  return options_.scheduler ? *options_.scheduler : Scheduler::shared();
}

// The threads that call the returned function must not own objects of the application.
std::function<void()> CallState::interrupting(Interruption interruption) {
  return addingToMainQueue([weak = weak_from_this(), interruption] {
    const auto state = weak.lock();
    if (state && state->beginInterruption(interruption)) state->endInterrupted();
  });
}

void CallState::applyOptions() {
  if (options_.stopToken.stop_requested()) return cancel();
  std::unique_ptr<Scheduler::Timer> timer;
  if (options_.deadline) {
    deadline_ = options_.deadline->time(scheduler().now());
    timer = scheduler().schedule(*deadline_, interrupting(Interruption::timedOut));
  }
  std::unique_ptr<StopCallback> stopCallback;
  if (options_.stopToken.stop_possible()) {
    stopCallback =
        std::make_unique<StopCallback>(options_.stopToken, interrupting(Interruption::cancelled));
  }
  const std::lock_guard lock(mutex_);
  if (result_) return;
  deadlineTimer_.swap(timer);
  stopCallback_.swap(stopCallback);
}

void CallState::startAttempt() {
  std::function<void(const std::shared_ptr<Attempt>&)> start;
  std::shared_ptr<CallState> self;
  {
    const std::lock_guard lock(mutex_);
    self_.swap(self);
    if (result_ || interruption_ != Interruption::none) return;
    task_ = nullptr;
    if (options_.retry) {
      start = functions_.start;
    } else {
      start.swap(functions_.start);
    }
  }
  const CallControl::Scope scope(shared_from_this());
  start(std::make_shared<Attempt>(shared_from_this()));
}

void CallState::didStart(std::shared_ptr<QVBaseRequest> request) {
  const std::lock_guard lock(mutex_);
  if (!request_) request_ = std::move(request);
}

void CallState::didMakeTask(std::shared_ptr<URLSessionDataTask> task) {
  {
    const std::lock_guard lock(mutex_);
    task_ = task;
    if (interruption_ == Interruption::none) return;
  }
  if (task) task->cancel();
}

bool CallState::isInterrupted() const {
  const std::lock_guard lock(mutex_);
  return interruption_ != Interruption::none;
}

// After an interruption the result comes from endInterrupted(), also if the response of the
// cancelled task arrives first.
void CallState::receive(std::shared_ptr<QVBaseResponse> response) {
  {
    const std::lock_guard lock(mutex_);
    if (interruption_ != Interruption::none) {
      lateResponse_ = std::move(response);
      return;
    }
  }
  if (!retries(*response)) finish(Result(std::move(response)));
}

// Schedules another attempt. Returns false if there is none.
bool CallState::retries(QVBaseResponse& response) try {
  if (!options_.retry || !QVRetryPolicy::isTransient(response)) return false;
  const Scheduler::TimePoint time =
      scheduler().now() + options_.retry->backoff(retryCount_, randomNumber(), response);
  if ((deadline_ && time >= *deadline_) || !response.shouldRetryRequest()) return false;
  ++retryCount_;
  auto timer = scheduler().schedule(time, addingToMainQueue([weak = weak_from_this()] {
                                      if (const auto state = weak.lock()) state->startAttempt();
                                    }));
  const std::lock_guard lock(mutex_);
  if (result_) return false;
  backoffTimer_.swap(timer);
  self_ = shared_from_this();
  return true;
} catch (const std::bad_alloc&) {
  return false;
} catch (const std::system_error&) {
  return false;  // The thread of the scheduler cannot be started.
}

void CallState::noticeDroppedHandler() {
  std::shared_ptr<QVBaseRequest> request;
  {
    const std::lock_guard lock(mutex_);
    if (result_ || interruption_ != Interruption::none) return;
    request = request_;
  }
  finish(Result(request ? QVNotSent::reasonFor(*request)
                        : QVNotSent(QVNotSent::Reason::handlerDropped)));
}

void CallState::cancel() {
  MainQueue::Prepared end([state = shared_from_this()] { state->endInterrupted(); });
  if (beginInterruption(Interruption::cancelled)) MainQueue::main().async(std::move(end));
}

bool CallState::beginInterruption(Interruption interruption) {
  std::shared_ptr<URLSessionDataTask> task;
  {
    const std::lock_guard lock(mutex_);
    if (result_ || interruption_ != Interruption::none) return false;
    interruption_ = interruption;
    task = task_;
  }
  try {
    if (task) task->cancel();
  } catch (const std::bad_alloc&) {  // The task continues; its response is not needed.
  }
  return true;
}

// Without memory for the response, the result is that of the pipeline.
void CallState::endInterrupted() {
  std::unique_lock lock(mutex_);
  if (result_) return;
  const std::int64_t code =
      interruption_ == Interruption::timedOut ? URLError::timedOut : URLError::cancelled;
  const auto task = task_;
  auto request = request_;
  lock.unlock();
  try {
    if (!request) request = std::make_shared<QVBaseRequest>();
    const Error error =
        task ? URLError::make(code, task->originalRequest().url()) : URLError::make(code);
    finish(Result(functions_.makeResponse(request, error, task)));
  } catch (const std::bad_alloc&) {
    lock.lock();
    if (result_) throw;  // A continuation has thrown it.
    interruption_ = Interruption::none;
    const auto response = std::exchange(lateResponse_, nullptr);
    lock.unlock();
    if (response) finish(Result(response));
  }
}

void CallState::finish(Result result) {
  const bool isOnMainQueue = MainQueue::main().isCurrentThread();
  std::vector<MainQueue::Prepared> continuations;
  std::vector<Continuation> onAnyThread;
  std::function<void(const std::shared_ptr<Attempt>&)> start;
  std::unique_ptr<Scheduler::Timer> timers[2];
  std::unique_ptr<StopCallback> stopCallback;
  std::shared_ptr<URLSessionDataTask> task;
  std::shared_ptr<QVBaseResponse> lateResponse;
  std::shared_ptr<CallState> self;
  MainQueue::Prepared queueWakeUp;
  bool wakesQueueRunner = false;
  {
    const std::lock_guard lock(mutex_);
    if (result_) return;
    result_.emplace(std::move(result));
    continuations.swap(continuations_);
    onAnyThread.swap(continuationsOnAnyThread_);
    start.swap(functions_.start);
    timers[0].swap(deadlineTimer_);
    timers[1].swap(backoffTimer_);
    stopCallback.swap(stopCallback_);
    task.swap(task_);
    lateResponse.swap(lateResponse_);
    self.swap(self_);
    wakesQueueRunner = queueRunners_ > 0 && !isOnMainQueue;
    if (wakesQueueRunner) std::swap(queueWakeUp, queueWakeUp_);
  }
  finished_.notify_all();
  if (wakesQueueRunner) MainQueue::main().async(std::move(queueWakeUp));
  for (const Continuation& continuation : onAnyThread)
    continuation();
  // If one of several threw an exception here, the others would be lost.
  if (isOnMainQueue && continuations.size() == 1) return continuations.front()();
  for (MainQueue::Prepared& continuation : continuations)
    MainQueue::main().async(std::move(continuation));
}

}  // namespace quorvelkit::detail
