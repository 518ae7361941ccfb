// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/EventLoops/AsioContext.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/WakeUpHook.h>

#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace quorvelkit {

/// Runs MainQueue::main() in an execution context of Asio. Use it as AsioEventLoop or
/// BoostAsioEventLoop; their headers include Asio.
///
///  - Threads: construct and destroy it on the thread that runs the context. If several threads run
///    it, give a strand: blocks then run on any of these threads, one at a time.
///  - Lifetime: it may be destroyed inside a block, after the context, and with blocks in the
///    queue, where they stay.
///  - It does not keep run() running, unless Work::tracked is given. asyncResult() counts as work.
///  - Nested calls of run_one() or poll() inside a block run the blocks that follow, but not on a
///    strand.
///  - Exceptions: an exception of a block leaves run(), which can be called again.
///  - Cost: one or two posted functions for all blocks that are waiting. If there is no memory for
///    them, the process ends (std::terminate): without them the queue would stop silently.
template <class Asio>
class BasicAsioEventLoop {
 public:
  /// The type that can hold every executor of Asio.
  using Executor = typename Asio::Executor;

  /// Tracked work keeps the context running until this object is destroyed.
  enum class Work { untracked, tracked };

  /// Uses an executor, such as a strand.
  explicit BasicAsioEventLoop(Executor executor, Work work = Work::untracked)
      : loop_(std::make_shared<Loop>(std::move(executor), work)),
        hook_([loop = loop_.get()] { loop->wakeUp(); }) {}
  /// Uses an io_context or another execution context.
  template <class Context>
  requires requires(Context& context) { Executor(context.get_executor()); }
  explicit BasicAsioEventLoop(Context& context, Work work = Work::untracked)
      : BasicAsioEventLoop(Executor(context.get_executor()), work) {}
  BasicAsioEventLoop(const BasicAsioEventLoop&) = delete;
  BasicAsioEventLoop& operator=(const BasicAsioEventLoop&) = delete;

 private:
  using Service = detail::AsioContextService<Asio>;

  class Loop : public detail::AsioContextUser, public std::enable_shared_from_this<Loop> {
   public:
    Loop(Executor executor, Work work)
        : context_(Asio::context(executor)), executor_(std::move(executor)) {
      if (work == Work::tracked) work_.emplace(*executor_);
    }
    void attach() {
      if (context_ != nullptr) service().add(this->shared_from_this());
    }
    void detach() {
      const std::lock_guard lock(mutex_);
      const bool isUser = executor_ && context_ != nullptr;
      clear();
      if (isUser) service().remove(this->shared_from_this());
    }
    void release() override {
      const std::lock_guard lock(mutex_);
      clear();
    }
    void wakeUp() noexcept {
      const std::lock_guard lock(mutex_);
      if (!executor_) return;
      Asio::post(*executor_, [loop = this->shared_from_this()] {
        if (loop->isAttached()) MainQueue::main().runPending();
      });
    }

   private:
    Service& service() { return Asio::template service<Service>(*context_); }
    bool isAttached() {
      const std::lock_guard lock(mutex_);
      return executor_.has_value();
    }
    void clear() {
      work_.reset();
      executor_.reset();
    }

    typename Asio::ExecutionContext* const context_;
    std::mutex mutex_;
    std::optional<Executor> executor_;  // Absent after the end of the context or the adapter.
    std::optional<typename Asio::template WorkGuard<Executor>> work_;
  };

  // Attaches the loop to its context for the lifetime of this object.
  class Attached {
   public:
    explicit Attached(std::shared_ptr<Loop> loop) : loop_(std::move(loop)) { loop_->attach(); }
    Attached(const Attached&) = delete;
    Attached& operator=(const Attached&) = delete;
    ~Attached() { loop_->detach(); }
    Loop* get() const { return loop_.get(); }

   private:
    std::shared_ptr<Loop> loop_;
  };

  Attached loop_;
  WakeUpHook hook_;
};

}  // namespace quorvelkit
