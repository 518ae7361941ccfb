// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/HTTPHead_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/URLError.h>

#include <new>
#include <utility>

namespace quorvelkit {

DataTask::DataTask(std::shared_ptr<SessionState> session, URLRequest request,
                   URLSession::CompletionHandler handler)
    : session_(std::move(session)), request_(std::move(request)), handler_(std::move(handler)) {
  static_cast<void>(URLError::outOfMemory());  // Made while there is memory.
}

DataTask::~DataTask() = default;

void DataTask::resume() {
  State expected = State::suspended;
  if (!state_.compare_exchange_strong(expected, State::running)) return;
  // A cancel() that comes before this line is seen when the task starts.
  generation_ = SessionEngine::processGeneration();
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
  // A task that was under way at a fork belongs to the parent's threads.
  if (generation_ == SessionEngine::processGeneration()) {
    SessionEngine::shared().cancel(shared_from_this());
  }
}

void DataTask::complete() {
  State expected = State::running;
  if (!state_.compare_exchange_strong(expected, State::completed)) {
    state_ = State::completed;
    outcome = Outcome::failure(URLError::cancelled);
  }
  const auto handler = std::exchange(handler_, nullptr);
  Outcome end = std::exchange(outcome, {});
  try {
    if (end.errorCode != 0 && !end.error) {
      end.error = URLError::make(end.errorCode, request_.url(), std::move(end.technicalText));
    }
    if (!end.error && end.head) end.response = makeResponse(request_.url(), *std::move(end.head));
  } catch (const std::bad_alloc&) {
    end.error = URLError::outOfMemory();
  }
  if (end.error) {
    end.body = {};
    handler(std::nullopt, nullptr, std::move(end.error));
    return;
  }
  handler(std::move(end.body), std::move(end.response), std::nullopt);
}

}  // namespace quorvelkit
