// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/SessionState_p.h>
#include <QuorvelPlatform/TaskResult_p.h>
#include <QuorvelPlatform/URLSession.h>
#include <QuorvelPlatform/URLSessionDataTask.h>

#include <atomic>
#include <memory>

namespace quorvelkit {

class TaskLoader;

/// Implements the data task of a session. A cancel() at any time before the handler runs makes the
/// task fail with URLError::cancelled: an atomic state decides between the two.
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
  /// Runs the handler with the result, or with URLError::cancelled, and destroys it. Called once,
  /// on the callback thread. Called on the main queue if no thread can be started.
  void complete();

  /// Members of the completion queue. It links the tasks themselves, so that adding a task needs no
  /// memory.
  TaskResult result;
  std::shared_ptr<DataTask> next;

  /// The loader of this task while it runs, otherwise null. Used on the IO thread.
  TaskLoader* loader = nullptr;

 private:
  const std::shared_ptr<SessionState> session_;
  const URLRequest request_;
  URLSession::CompletionHandler handler_;
  std::atomic<State> state_ = State::suspended;
  std::atomic<int> processGeneration_ = 0;
};

}  // namespace quorvelkit
