// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Outcome_p.h>
#include <QuorvelPlatform/SessionState_p.h>
#include <QuorvelPlatform/URLSession.h>
#include <QuorvelPlatform/URLSessionDataTask.h>

#include <atomic>
#include <memory>

namespace quorvelkit {

class Load;

/// The task of a session. Its one atomic state decides between the end of the transfer and a
/// cancellation: whoever changes it last before the handler runs is believed.
class DataTask final : public URLSessionDataTask, public std::enable_shared_from_this<DataTask> {
 public:
  DataTask(std::shared_ptr<SessionState> session, URLRequest request,
           URLSession::CompletionHandler handler);
  ~DataTask() override;

  void resume() override;
  void cancel() override;
  State state() const override { return state_.load(std::memory_order_acquire); }
  const URLRequest& originalRequest() const override { return request_; }

  SessionState& session() const { return *session_; }
  /// Runs the handler with the outcome, or with a cancellation that came before it, and lets go of
  /// it. Called once, on the callback thread or, for want of threads, on the main queue.
  void complete();

  /// How the task ended, and the task that completes behind it: a task that waits for its
  /// completion takes no memory for that. Belong to the completion queue.
  Outcome outcome;
  std::shared_ptr<DataTask> next;

  /// The load that serves this task while there is one. Belongs to the IO thread.
  Load* load = nullptr;

 private:
  const std::shared_ptr<SessionState> session_;
  const URLRequest request_;
  URLSession::CompletionHandler handler_;
  std::atomic<State> state_ = State::suspended;
  std::atomic<int> generation_ = 0;
};

}  // namespace quorvelkit
