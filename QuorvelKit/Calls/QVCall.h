// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVCallAwaiter.h>
#include <QuorvelKit/Calls/QVCallOptions.h>
#include <QuorvelKit/Calls/QVCallResult.h>
#include <QuorvelKit/Calls/QVCallState.h>
#include <QuorvelKit/QVBaseService.h>

#include <chrono>
#include <concepts>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace quorvelkit {

/// Starts a call of a facade and gives its result in the form that the application needs: by
/// blocking, as a std::future, in a coroutine, or to a function.
///
///     auto request = std::make_shared<QVRouteRequest>(Coordinate{39.30, -76.54},
///                                                     Coordinate{39.27, -76.60});
///     const auto result = QVCall(QVNavigation::route, request, QVDeadline(30s)).wait();
///     if (const auto error = result.error()) return report(*error);
///     const auto& route = result->route();
///     if (!route || route->points().empty()) return report("The answer is not a route.");
///     draw(route->points());
///
/// It works with the facades of the library and with those of an application, and always delivers
/// one result: a response, or the reason why no request was sent (QVNotSent). Several forms can be
/// used for the same call, each one also more than once.
///
/// Threads: any thread may construct and use a QVCall; its functions are thread-safe. Results
/// arrive through the main queue, which a thread of the application must run, as for completion
/// handlers. Before the first result of a process the same rule holds for the request object as in
/// QVBaseService; with QVCallOptions::retry it belongs to the call until the end.
///
/// Lifetime: copies refer to the same call. The call continues without them, unless
/// QVCallOptions::cancelsWhenAbandoned is true. After exit() no result arrives any more. A child
/// process must not use a QVCall of its parent.
///
/// Errors: an exception of a facade function leaves the constructor. The constructor also throws
/// std::system_error if a deadline is set and the thread of Scheduler::shared() cannot be started.
/// A function that throws std::bad_alloc has had no effect. If there is no memory for the response
/// of a cancelled call, the call continues.
///
/// Cost beside the completion handler: about five allocations for each call.
template <std::derived_from<QVBaseResponse> Response>
class QVCall {
 public:
  /// The type of the result.
  using Result = QVCallResult<Response>;
  /// A function that calls a facade with the given completion handler.
  using Start = std::function<void(QVCompletionHandler<Response> completionHandler)>;

  /// Starts a call with a facade function such as QVNavigation::route. A null request is a
  /// programming error and stops the process.
  template <class Request>
  QVCall(std::shared_ptr<URLSessionDataTask> (*facade)(std::shared_ptr<Request>,
                                                       QVCompletionHandler<Response>),
         std::type_identity_t<std::shared_ptr<Request>> request, QVCallOptions options = {})
      : QVCall([facade,
                request](auto completionHandler) { facade(request, std::move(completionHandler)); },
               request, std::move(options)) {}
  /// Starts a call with any function. It may run later on the main queue again (retries). cancel()
  /// and the deadline end the first call of a facade that the function starts. If they come before
  /// that, the request of the response is a plain QVBaseRequest.
  explicit QVCall(Start start, QVCallOptions options = {})
      : QVCall(std::move(start), nullptr, std::move(options)) {}

  /// Cancels the call. Unless the result is known, it becomes a response with the error
  /// URLError::cancelled and without an answer, made on the main queue. Before the request is sent,
  /// it is not sent any more. A running login or loading of the configuration continues.
  void cancel() { state_->cancel(); }

  /// Returns the result if it is known.
  std::optional<Result> result() const { return typed(state_->result()); }

  /// Waits for the result. On the thread of the main queue (MainQueue::isCurrentThread) it runs the
  /// main queue meanwhile, so other handlers may run inside this call, and an exception of theirs
  /// leaves it. On other threads it only waits. A wait that could never end stops the process with
  /// a message: on the threads of the session, during exit(), and in a child process for a call of
  /// its parent. If another thread calls exit() during a wait, the waiting thread sleeps until the
  /// process ends.
  Result wait() { return *waitUntil(std::chrono::steady_clock::time_point::max()); }
  /// The same with a time-out. Absent if the result is not known then; the call continues.
  template <class Rep, class Period>
  std::optional<Result> waitFor(std::chrono::duration<Rep, Period> time) {
    return waitUntil(QVDeadline(time).time(std::chrono::steady_clock::now()));
  }
  std::optional<Result> waitUntil(std::chrono::steady_clock::time_point time) {
    return typed(state_->waitUntil(time));
  }

  /// Returns a future of the result. Do not wait for it on the thread that runs the main queue:
  /// wait() does not block there. It never contains an exception.
  std::future<Result> future() const {
    auto promise = std::make_shared<std::promise<Result>>();
    auto future = promise->get_future();
    state_->whenFinishedOnAnyThread(
        [call = *this, promise] { promise->set_value(*call.result()); });
    return future;
  }

  /// Calls a function with the result, once, on the main queue and never inside this call.
  void onResult(std::function<void(Result result)> function) const {
    state_->whenFinished([call = *this, moved = std::move(function)] { moved(*call.result()); });
  }

  /// Waits in a coroutine, which is resumed on the main queue: `co_await call`. For a temporary
  /// QVCall and for a variable.
  QVCallAwaiter<Response> operator co_await() const { return {state_, nullptr}; }
  /// Waits in a coroutine, which the executor resumes: `co_await call.resumingOn(executor)`. Store
  /// an executor with captures in a variable: GCC 12 destroys a lambda with captures twice if it is
  /// a temporary of a co_await expression.
  QVCallAwaiter<Response> resumingOn(QVExecutor executor) const {
    return {state_, std::move(executor)};
  }

 private:
  QVCall(Start start, std::shared_ptr<QVBaseRequest> request, QVCallOptions options)
      : state_(detail::CallState::start(
            {[moved = std::move(start)](const auto& attempt) {
               moved([attempt](std::shared_ptr<Response> response) {
                 attempt->complete(std::move(response));
               });
             },
             [](auto forRequest, Error error, auto task) -> std::shared_ptr<QVBaseResponse> {
               return makeResponse<Response>(std::nullopt, std::move(forRequest), nullptr,
                                             std::move(error), std::move(task));
             }},
            std::move(request), std::move(options))) {}

  static std::optional<Result> typed(const std::optional<detail::CallState::Result>& result) {
    if (!result) return std::nullopt;
    return detail::typedResult<Response>(*result);
  }

  std::shared_ptr<detail::CallState> state_;
};

}  // namespace quorvelkit
