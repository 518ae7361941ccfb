// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVCallOptions.h>
#include <QuorvelKit/Calls/QVCallResult.h>
#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVCallControl.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/Scheduler.h>

#include <sys/types.h>

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

// The implementation of QVCall.
namespace quorvelkit::detail {

/// The state of one QVCall: starts the attempts, ends the call early, and keeps its result.
/// Thread-safe.
class QUORVELKIT_EXPORT CallState : public CallControl,
                                    public std::enable_shared_from_this<CallState> {
 public:
  using Result = QVCallResult<QVBaseResponse>;
  using Continuation = std::function<void()>;

  /// One use of the facade function. Its completion handler owns this object and calls complete().
  /// If the handler is dropped, this object is destroyed without that call.
  class QUORVELKIT_EXPORT Attempt {
   public:
    explicit Attempt(std::shared_ptr<CallState> state) : state_(std::move(state)) {}
    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;
    ~Attempt();
    void complete(std::shared_ptr<QVBaseResponse> response);

   private:
    std::shared_ptr<CallState> state_;  // Null after complete().
  };

  /// What depends on the class of the response.
  struct Functions {
    /// Calls the facade function with a completion handler that owns the attempt.
    std::function<void(const std::shared_ptr<Attempt>& attempt)> start;
    std::shared_ptr<QVBaseResponse> (*makeResponse)(std::shared_ptr<QVBaseRequest> request,
                                                    Error error,
                                                    std::shared_ptr<URLSessionDataTask> task);
  };

  /// Starts a call. The request may be null if the pipeline will report it. Destroying the last
  /// copy of the returned pointer cancels the call, if the options say so.
  static std::shared_ptr<CallState> start(Functions functions,
                                          std::shared_ptr<QVBaseRequest> request,
                                          QVCallOptions options);
  /// Only for start().
  CallState(Functions functions, std::shared_ptr<QVBaseRequest> request, QVCallOptions options);
  ~CallState() override;

  /// If this throws std::bad_alloc, it has no effect.
  void cancel();
  std::optional<Result> result() const;
  /// Waits for the result until a point in time of the steady clock.
  std::optional<Result> waitUntil(std::chrono::steady_clock::time_point time);
  /// Calls the function once with the result available: on the main queue, never inside this call.
  void whenFinished(Continuation continuation);
  /// The same on any thread, also inside this call.
  void whenFinishedOnAnyThread(Continuation continuation);

  // Called by the pipeline.
  void didStart(std::shared_ptr<QVBaseRequest> request) override;
  void didMakeTask(std::shared_ptr<URLSessionDataTask> task) override;
  bool isInterrupted() const override;

 private:
  using StopCallback = std::stop_callback<std::function<void()>>;
  enum class Interruption { none, cancelled, timedOut };

  void applyOptions();
  void startAttempt();
  void receive(std::shared_ptr<QVBaseResponse> response);
  bool retries(QVBaseResponse& response);
  void noticeDroppedHandler();
  std::function<void()> interrupting(Interruption interruption);
  bool beginInterruption(Interruption interruption);
  void endInterrupted();
  void finish(Result result);
  Scheduler& scheduler() const;

  const QVCallOptions options_;
  const pid_t process_;
  std::optional<Scheduler::TimePoint> deadline_;

  mutable std::mutex mutex_;
  std::condition_variable finished_;
  Functions functions_;
  std::shared_ptr<QVBaseRequest> request_;
  std::shared_ptr<URLSessionDataTask> task_;
  Interruption interruption_ = Interruption::none;
  std::optional<Result> result_;
  std::shared_ptr<QVBaseResponse> lateResponse_;  // Of the pipeline, after an interruption.
  std::vector<MainQueue::Prepared> continuations_;
  std::vector<Continuation> continuationsOnAnyThread_;
  std::int64_t retryCount_ = 0;
  int queueRunners_ = 0;             // The waiting functions that run the main queue.
  MainQueue::Prepared queueWakeUp_;  // Ends their waits.
  std::shared_ptr<CallState> self_;  // Keeps this object alive during a backoff.
  std::unique_ptr<Scheduler::Timer> deadlineTimer_, backoffTimer_;
  std::unique_ptr<StopCallback> stopCallback_;
};

template <class Response>
QVCallResult<Response> typedResult(const CallState::Result& result) {
  if (result.notSent()) return QVCallResult<Response>(*result.notSent());
  return QVCallResult<Response>(std::static_pointer_cast<Response>(result.response()));
}

}  // namespace quorvelkit::detail
