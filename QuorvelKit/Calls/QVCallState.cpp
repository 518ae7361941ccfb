// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/Calls/QVCallState.h>
#include <QuorvelPlatform/BlockingWait_p.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/URLError.h>

#include <algorithm>
#include <random>
#include <system_error>

namespace quorvelkit::detail {

namespace {

double randomNumber() {
  thread_local std::minstd_rand generator(std::random_device{}());
  return std::uniform_real_distribution()(generator);
}

}  // namespace

CallState::Attempt::~Attempt() {
  if (state_) state_->noticeDroppedHandler();
}

void CallState::Attempt::complete(std::shared_ptr<QVBaseResponse> response) {
  if (const auto state = std::exchange(state_, nullptr)) state->receive(std::move(response));
}

std::shared_ptr<CallState> CallState::start(Functions functions,
                                            std::shared_ptr<QVBaseRequest> request,
                                            QVCallOptions options) {
  auto state =
      std::make_shared<CallState>(std::move(functions), std::move(request), std::move(options));
  state->applyOptions();
  state->startAttempt();
  if (!state->options_.cancelsWhenAbandoned) return state;
  return {state.get(), [state](CallState*) { state->cancel(); }};
}

CallState::CallState(Functions functions, std::shared_ptr<QVBaseRequest> request,
                     QVCallOptions options)
    : options_(std::move(options)),
      functions_(std::move(functions)),
      request_(std::move(request)) {}

CallState::~CallState() = default;

Scheduler& CallState::scheduler() const {
  return options_.scheduler ? *options_.scheduler : Scheduler::shared();
}

// Neither the timer nor the stop callback owns this object: the threads that run them must not
// destroy objects of the application.
void CallState::applyOptions() {
  const auto onMainQueue = [weak = weak_from_this()](Interruption interruption) {
    MainQueue::main().async([weak, interruption] {
      if (const auto state = weak.lock()) state->interrupt(interruption);
    });
  };
  if (options_.stopToken.stop_requested()) return interrupt(Interruption::cancelled);
  std::unique_ptr<Scheduler::Timer> timer;
  if (options_.deadline) {
    deadline_ = options_.deadline->time(scheduler().now());
    timer =
        scheduler().schedule(*deadline_, [onMainQueue] { onMainQueue(Interruption::timedOut); });
  }
  std::unique_ptr<StopCallback> stopCallback;
  if (options_.stopToken.stop_possible()) {
    stopCallback = std::make_unique<StopCallback>(
        options_.stopToken, [onMainQueue] { onMainQueue(Interruption::cancelled); });
  }
  const std::lock_guard lock(mutex_);
  if (result_) return;
  deadlineTimer_.swap(timer);
  stopCallback_.swap(stopCallback);
}

void CallState::startAttempt() {
  std::function<void(const std::shared_ptr<Attempt>&)> start;
  {
    const std::lock_guard lock(mutex_);
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
  request_ = std::move(request);
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
  if (isInterrupted()) return;
  if (!retries(*response)) finish(Result(std::move(response)), true);
}

// Schedules another attempt. Returns false if there is none. While the timer waits, it and this
// object own each other; finish() destroys the timer.
bool CallState::retries(QVBaseResponse& response) try {
  if (!options_.retry || !QVRetryPolicy::isTransient(response)) return false;
  const Scheduler::TimePoint time =
      scheduler().now() + options_.retry->backoff(retryCount_, randomNumber(), response);
  if ((deadline_ && time >= *deadline_) || !response.shouldRetryRequest()) return false;
  ++retryCount_;
  auto timer = scheduler().schedule(time, [state = shared_from_this()]() mutable {
    MainQueue::main().async([moved = std::move(state)] { moved->startAttempt(); });
  });
  const std::lock_guard lock(mutex_);
  if (result_) return false;
  backoffTimer_.swap(timer);
  return true;
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
                        : QVNotSent(QVNotSent::Reason::handlerDropped)),
         false);
}

void CallState::cancel() { interrupt(Interruption::cancelled); }

void CallState::interrupt(Interruption interruption) {
  std::shared_ptr<URLSessionDataTask> task;
  {
    const std::lock_guard lock(mutex_);
    if (result_ || interruption_ != Interruption::none) return;
    interruption_ = interruption;
    task = task_;
  }
  if (task) task->cancel();
  MainQueue::main().async([state = shared_from_this()] { state->endInterrupted(); });
}

// The response of the pipeline, if there is one, arrives later and is ignored.
void CallState::endInterrupted() {
  std::unique_lock lock(mutex_);
  if (result_) return;
  const std::int64_t code =
      interruption_ == Interruption::timedOut ? URLError::timedOut : URLError::cancelled;
  const auto task = task_;
  const auto request = request_ ? request_ : std::make_shared<QVBaseRequest>();
  lock.unlock();
  const Error error =
      task ? URLError::make(code, task->originalRequest().url()) : URLError::make(code);
  finish(Result(functions_.makeResponse(request, error, task)), true);
}

void CallState::finish(Result result, bool isOnMainQueue) {
  std::vector<Continuation> continuations, onAnyThread;
  Functions functions{};
  std::unique_ptr<Scheduler::Timer> timers[2];
  std::unique_ptr<StopCallback> stopCallback;
  bool wakesQueueRunner = false;
  {
    const std::lock_guard lock(mutex_);
    if (result_) return;
    result_.emplace(std::move(result));
    continuations.swap(continuations_);
    onAnyThread.swap(continuationsOnAnyThread_);
    functions.start.swap(functions_.start);
    deadlineTimer_.swap(timers[0]);
    backoffTimer_.swap(timers[1]);
    stopCallback_.swap(stopCallback);
    task_ = nullptr;
    wakesQueueRunner = queueRunners_ > 0 && !isOnMainQueue;
  }
  finished_.notify_all();
  if (wakesQueueRunner) MainQueue::main().async([] {});
  for (const Continuation& continuation : onAnyThread)
    continuation();
  // If one of several threw an exception here, the others would be lost.
  if (isOnMainQueue && continuations.size() == 1) return continuations.front()();
  for (Continuation& continuation : continuations)
    MainQueue::main().async(std::move(continuation));
}

std::optional<CallState::Result> CallState::result() const {
  const std::lock_guard lock(mutex_);
  return result_;
}

std::optional<CallState::Result> CallState::waitUntil(std::chrono::steady_clock::time_point time) {
  if (auto known = result()) return known;
  requireThreadThatMayWait();
  std::unique_lock lock(mutex_);
  if (!MainQueue::main().isCurrentThread()) {
    finished_.wait_until(lock, time, [&] { return result_.has_value(); });
    return result_;
  }
  ++queueRunners_;
  while (!result_ && std::chrono::steady_clock::now() < time) {
    lock.unlock();
    const auto remaining =
        std::chrono::ceil<std::chrono::milliseconds>(time - std::chrono::steady_clock::now());
    MainQueue::main().runOnce(
        std::min<std::chrono::milliseconds>(remaining, std::chrono::hours(1)));
    lock.lock();
  }
  --queueRunners_;
  return result_;
}

void CallState::whenFinished(Continuation continuation) {
  {
    const std::lock_guard lock(mutex_);
    if (!result_) return continuations_.push_back(std::move(continuation));
  }
  MainQueue::main().async(std::move(continuation));
}

void CallState::whenFinishedOnAnyThread(Continuation continuation) {
  {
    const std::lock_guard lock(mutex_);
    if (!result_) return continuationsOnAnyThread_.push_back(std::move(continuation));
  }
  continuation();
}

}  // namespace quorvelkit::detail
