// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVCallResult.h>
#include <QuorvelKit/Calls/QVCallState.h>

#include <atomic>
#include <coroutine>
#include <functional>
#include <memory>
#include <utility>

namespace quorvelkit {

/// Runs a function later, on a thread or an event loop that the application chooses.
using QVExecutor = std::function<void(std::function<void()> function)>;

/// Suspends a coroutine until a QVCall has its result, and returns the result.
///
/// The coroutine is resumed on the main queue or by an executor, and never inside the start of the
/// call. If it is destroyed while it waits, it is not resumed; destroy it on the thread that would
/// resume it. The result of the call is then ignored, or the call is cancelled
/// (QVCallOptions::cancelsWhenAbandoned).
template <class Response>
class QVCallAwaiter {
 public:
  // GCC 12 destroys awaiters twice if they are aggregates, so this class has a constructor.
  /// Only QVCall makes awaiters.
  QVCallAwaiter(std::shared_ptr<detail::CallState> call, QVExecutor executor)
      : call_(std::move(call)), waiting_(std::make_shared<Waiting>(std::move(executor))) {}
  QVCallAwaiter(const QVCallAwaiter&) = delete;
  QVCallAwaiter& operator=(const QVCallAwaiter&) = delete;
  ~QVCallAwaiter() { waiting_->isWaiting = false; }

  /// The functions that co_await calls.
  bool await_ready() const noexcept { return false; }
  void await_suspend(std::coroutine_handle<> coroutine) {
    waiting_->coroutine = coroutine;
    waiting_->isWaiting = true;
    // After this call the coroutine may run on another thread and destroy this object.
    call_->whenFinished([waiting = waiting_] {
      if (!waiting->executor) return waiting->resume();
      waiting->executor([waiting] { waiting->resume(); });
    });
  }
  QVCallResult<Response> await_resume() const {
    return detail::typedResult<Response>(*call_->result());
  }

 private:
  // The coroutine while it is suspended.
  struct Waiting {
    explicit Waiting(QVExecutor given) : executor(std::move(given)) {}
    void resume() {
      if (isWaiting.exchange(false)) coroutine.resume();
    }
    QVExecutor executor;
    std::coroutine_handle<> coroutine;
    std::atomic<bool> isWaiting = false;
  };

  std::shared_ptr<detail::CallState> call_;
  std::shared_ptr<Waiting> waiting_;
};

}  // namespace quorvelkit
