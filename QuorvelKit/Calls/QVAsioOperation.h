// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelPlatform/EventLoops/AsioContext.h>

#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>

namespace quorvelkit::detail {

/// An asynchronous operation of Asio that waits for the result of a call. `Asio` is a class such as
/// StandaloneAsio, `Handler` the completion handler that Asio makes from a completion token.
template <class Asio, class Response, class Handler>
class AsioOperation : public AsioContextUser,
                      public std::enable_shared_from_this<AsioOperation<Asio, Response, Handler>> {
 public:
  using Result = QVCallResult<Response>;

  static void start(QVCall<Response> call, Handler handler) {
    const auto operation = std::make_shared<AsioOperation>(std::move(handler));
    operation->prepare(call);
    call.onResult([operation](Result result) { operation->complete(std::move(result)); });
  }

  /// Only for start().
  explicit AsioOperation(Handler handler) { state_.emplace(std::move(handler)); }

  void release() override {
    const auto state = take();  // Destroyed while no mutex is locked.
  }

 private:
  using Executor = decltype(Asio::executor(std::declval<const Handler&>()));
  using Service = AsioContextService<Asio>;
  static constexpr bool isCancellable = requires(const Handler& handler) {
    Asio::cancellationSlot(handler);
  };

  struct State {
    explicit State(Handler given)
        : handler(std::move(given)), executor(Asio::executor(handler)), work(executor) {}
    Handler handler;
    Executor executor;
    typename Asio::template WorkGuard<Executor> work;
  };

  void prepare(const QVCall<Response>& call) {
    context_ = Asio::context(state_->executor);
    if (context_ != nullptr)
      Asio::template service<Service>(*context_).add(this->shared_from_this());
    if constexpr (isCancellable) {
      auto slot = Asio::cancellationSlot(state_->handler);
      if (slot.is_connected()) slot.assign([copy = call](auto /*type*/) mutable { copy.cancel(); });
    }
  }

  // Runs on the main queue. The context is not destroyed while this object is one of its users and
  // the mutex is locked.
  void complete(Result result) {
    if (context_ == nullptr) return run(take(), std::move(result));
    const std::lock_guard lock(mutex_);
    if (!state_) return;
    Asio::post(state_->executor,
               [handler = std::move(state_->handler), moved = std::move(result)]() mutable {
                 invoke(std::move(handler), std::move(moved));
               });
    state_.reset();
    Asio::template service<Service>(*context_).remove(this->shared_from_this());
  }

  // Without an executor of its own, a handler runs on the main queue.
  static void run(std::optional<State> state, Result result) {
    const auto executor = state->executor;
    Asio::dispatch(executor,
                   [handler = std::move(state->handler), moved = std::move(result)]() mutable {
                     invoke(std::move(handler), std::move(moved));
                   });
  }

  static void invoke(Handler handler, Result result) {
    if constexpr (isCancellable) {
      auto slot = Asio::cancellationSlot(handler);
      if (slot.is_connected()) slot.clear();
    }
    std::move(handler)(std::move(result));
  }

  std::optional<State> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(state_, std::nullopt);
  }

  std::mutex mutex_;
  std::optional<State> state_;  // Absent after the completion or the end of the context.
  typename Asio::ExecutionContext* context_ = nullptr;
};

template <class Asio, class Response, class Token>
auto asyncResult(QVCall<Response> call, Token&& token) {
  return Asio::template initiate<void(QVCallResult<Response>), Token>(
      []<class Handler>(Handler&& handler, QVCall<Response> moved) {
        using Operation = AsioOperation<Asio, Response, std::decay_t<Handler>>;
        Operation::start(std::move(moved), std::forward<Handler>(handler));
      },
      std::forward<Token>(token), std::move(call));
}

}  // namespace quorvelkit::detail
