// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/HTTPHeaderBlock_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/URLError.h>

#include <new>
#include <utility>

namespace quorvelkit {

DataTask::DataTask(std::shared_ptr<SessionState> session, URLRequest request,
                   URLSession::CompletionHandler handler)
    : session_(std::move(session)), request_(std::move(request)), handler_(std::move(handler)) {
  static_cast<void>(URLError::outOfMemory());  // Creates the error while there is memory.
}

DataTask::~DataTask() = default;

void DataTask::resume() {
  State expected = State::suspended;
  if (!state_.compare_exchange_strong(expected, State::running)) return;
  // If cancel() was called before this line, the IO thread sees the state when it starts the task.
  processGeneration_ = SessionEngine::processGeneration();
  SessionEngine::shared().start(shared_from_this());
}

void DataTask::cancel() {
  State expected = State::suspended;
  if (state_.compare_exchange_strong(expected, State::canceling)) {
    SessionEngine::shared().cancelUnstarted(shared_from_this());
    return;
  }
  expected = State::running;
  if (!state_.compare_exchange_strong(expected, State::canceling)) return;
  // A task that was running at a fork belongs to the parent process.
  if (processGeneration_ == SessionEngine::processGeneration()) {
    SessionEngine::shared().cancel(shared_from_this());
  }
}

void DataTask::complete() {
  State expected = State::running;
  if (!state_.compare_exchange_strong(expected, State::completed)) {
    state_ = State::completed;
    result = TaskResult::failure(URLError::cancelled);
  }
  const auto handler = std::exchange(handler_, nullptr);
  TaskResult ended = std::exchange(result, {});
  try {
    if (ended.errorCode != 0 && !ended.error) {
      ended.error = URLError::make(ended.errorCode, request_.url(), std::move(ended.technicalText));
    }
    if (!ended.error && ended.header)
      ended.response = makeResponse(request_.url(), *std::move(ended.header));
  } catch (const std::bad_alloc&) {
    ended.error = URLError::outOfMemory();
  }
  if (ended.error) {
    ended.body = {};
    handler(std::nullopt, nullptr, std::move(ended.error));
    return;
  }
  handler(std::move(ended.body), std::move(ended.response), std::nullopt);
}

}  // namespace quorvelkit
