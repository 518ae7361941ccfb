// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/kit/FakeServer.h"

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/QVNavigation.h>

#include <gtest/gtest.h>

#include <coroutine>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace quorvelkit::test {

using RouteCall = QVCall<QVRouteResponse>;
using RouteResult = QVCallResult<QVRouteResponse>;

inline std::shared_ptr<QVRouteRequest> routeRequest() {
  return std::make_shared<QVRouteRequest>(Coordinate{1, 2}, Coordinate{3, 4});
}

/// A coroutine that runs at once and destroys itself, unless it is destroyed through its handle.
struct Coroutine {
  struct promise_type {
    Coroutine get_return_object() {
      return {std::coroutine_handle<promise_type>::from_promise(*this)};
    }
    std::suspend_never initial_suspend() noexcept { return {}; }
    std::suspend_never final_suspend() noexcept { return {}; }
    void return_void() {}
    void unhandled_exception() { std::terminate(); }
  };
  std::coroutine_handle<promise_type> handle;
};

inline bool isReady(const std::future<RouteResult>& future) {
  return future.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

/// Returns options with these values.
struct Options {
  std::optional<QVDeadline> deadline = std::nullopt;
  std::stop_token stopToken = {};
  bool cancelsWhenAbandoned = false;
  std::optional<QVRetryPolicy> retry = std::nullopt;
  std::shared_ptr<Scheduler> scheduler = nullptr;
};
inline QVCallOptions with(Options values) {
  QVCallOptions options;
  options.deadline = values.deadline;
  options.stopToken = values.stopToken;
  options.cancelsWhenAbandoned = values.cancelsWhenAbandoned;
  options.retry = values.retry;
  options.scheduler = values.scheduler;
  return options;
}

/// Runs the main queue until the condition is true, also if no block makes it true. Returns false
/// after 20 seconds.
template <class Condition>
bool runUntil(Condition condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    MainQueue::main().runOnce(std::chrono::milliseconds(1));
  }
  return true;
}

/// Waits for a result in one of several forms, while this thread runs the main queue.
struct Form {
  const char* name;
  RouteResult (*resultOf)(RouteCall call);
};

inline RouteResult resultOfFuture(std::future<RouteResult> future) {
  EXPECT_TRUE(runUntil([&] { return isReady(future); }));
  return future.get();
}

// The thread of a coroutine's result must be the one that the form names.
inline Coroutine awaitOnMainQueue(RouteCall call, std::promise<RouteResult>& promise) {
  const auto result = co_await call;
  EXPECT_TRUE(MainQueue::main().isCurrentThread());
  promise.set_value(result);
}
inline Coroutine awaitOnOtherThread(RouteCall call, std::promise<RouteResult>& promise) {
  const auto result =
      co_await call.resumingOn([](std::function<void()> resume) { std::thread(resume).detach(); });
  EXPECT_FALSE(MainQueue::main().isCurrentThread());
  promise.set_value(result);
}

template <Coroutine (*await)(RouteCall, std::promise<RouteResult>&)>
RouteResult resultOfCoroutine(RouteCall call) {
  std::promise<RouteResult> promise;
  await(std::move(call), promise);
  return resultOfFuture(promise.get_future());
}

inline const Form forms[] = {
    {"wait", [](RouteCall call) { return call.wait(); }},
    {"wait on another thread",
     [](RouteCall call) {
       return resultOfFuture(std::async(std::launch::async, [call]() mutable {
         EXPECT_FALSE(MainQueue::main().isCurrentThread());
         return call.wait();
       }));
     }},
    {"future", [](RouteCall call) { return resultOfFuture(call.future()); }},
    {"onResult",
     [](RouteCall call) {
       std::promise<RouteResult> promise;
       call.onResult([&](RouteResult result) { promise.set_value(std::move(result)); });
       return resultOfFuture(promise.get_future());
     }},
    {"co_await", resultOfCoroutine<awaitOnMainQueue>},
    {"co_await with an executor", resultOfCoroutine<awaitOnOtherThread>},
};

/// Describes a result, such as "2 points" or "QuorvelKit.URLError -999".
inline std::string describe(const RouteResult& result) {
  if (result.notSent()) return result.error()->localizedDescription();
  if (result.error())
    return result.error()->domain() + ' ' + std::to_string(result.error()->code());
  return std::to_string(result->route()->points().size()) + " points";
}

inline const std::string twoPoints = R"({"points":[{"lat":1,"lon":2},{"lat":3,"lon":4}]})";

}  // namespace quorvelkit::test
