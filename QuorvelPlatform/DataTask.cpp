// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/HTTPHead_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/URLError.h>

#include <utility>

namespace quorvelkit {

DataTask::DataTask(std::shared_ptr<SessionState> session, URLRequest request,
                   URLSession::CompletionHandler handler)
    : session_(std::move(session)), request_(std::move(request)), handler_(std::move(handler)) {}

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

void DataTask::complete(Outcome outcome) {
  State expected = State::running;
  if (!state_.compare_exchange_strong(expected, State::completed)) {
    state_ = State::completed;
    outcome = Outcome::failure(URLError::cancelled);
  }
  const auto handler = std::exchange(handler_, nullptr);
  if (outcome.errorCode != 0) {
    outcome.error =
        URLError::make(outcome.errorCode, request_.url(), std::move(outcome.technicalText));
  }
  if (outcome.error) {
    handler(std::nullopt, nullptr, std::move(outcome.error));
    return;
  }
  if (outcome.head) outcome.response = makeResponse(request_.url(), *std::move(outcome.head));
  handler(std::move(outcome.body), std::move(outcome.response), std::nullopt);
}

}  // namespace quorvelkit
