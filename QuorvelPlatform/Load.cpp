// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/Load_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/URLError.h>

#include <algorithm>
#include <new>
#include <utility>

namespace quorvelkit {

namespace {

// An interval for the clock: one that is not above zero gives the fallback, and none is longer
// than 30 years, so that no sum overflows.
Load::Clock::duration clockInterval(std::chrono::duration<double> interval,
                                    std::chrono::duration<double> fallback) {
  constexpr std::chrono::duration<double> longest(1e9);
  if (!(interval.count() > 0)) interval = fallback.count() > 0 ? fallback : longest;
  return std::chrono::ceil<Load::Clock::duration>(std::min(interval, longest));
}

}  // namespace

Load::Load(SessionEngine& engine, std::shared_ptr<DataTask> task, Clock::time_point now)
    : engine_(engine),
      maximumBodySize_(task->session().configuration.maximumBodySize),
      idleInterval_(clockInterval(task->originalRequest().ownTimeoutInterval().value_or(
                                      task->session().configuration.timeoutIntervalForRequest),
                                  task->session().configuration.timeoutIntervalForRequest)),
      lastMoment_(now +
                  clockInterval(task->session().configuration.timeoutIntervalForResource, {})),
      lastActivity_(now.time_since_epoch().count()),
      task_(std::move(task)) {}

Load::~Load() = default;

Load::Clock::time_point Load::deadline() const {
  const Clock::time_point lastActivity{
      Clock::duration(lastActivity_.load(std::memory_order_relaxed))};
  return std::min(lastActivity + idleInterval_, lastMoment_);
}

std::string Load::timeoutText(Clock::time_point now) const try {
  if (now >= lastMoment_) return "The whole transfer took longer than it may.";
  const auto idle = std::chrono::duration_cast<std::chrono::milliseconds>(idleInterval_);
  return "Nothing was sent or received for " + std::to_string(idle.count()) + " ms.";
} catch (const std::bad_alloc&) {
  return {};
}

void Load::didReceive(std::shared_ptr<const URLResponse> response) {
  touch(Clock::now());
  const std::lock_guard lock(mutex_);
  if (task_) response_ = std::move(response);
}

void Load::didLoad(const Data& piece) {
  touch(Clock::now());
  try {
    const std::lock_guard lock(mutex_);
    if (!task_) return;
    const std::size_t size = onlyPiece_ ? onlyPiece_->size() : pieces_.size();
    if (piece.size() <= maximumBodySize_ && size <= maximumBodySize_ - piece.size()) {
      if (size == 0) {
        onlyPiece_ = piece;
        return;
      }
      if (onlyPiece_) pieces_ = std::exchange(onlyPiece_, std::nullopt)->view();
      pieces_ += piece.view();
      return;
    }
  } catch (const std::bad_alloc&) {
    return end(Outcome::outOfMemory());
  }
  end(Outcome::failure(URLError::dataLengthExceedsMaximum));
}

void Load::didFinishLoading() {
  Outcome outcome;
  std::shared_ptr<DataTask> task;
  {
    const std::lock_guard lock(mutex_);
    task = std::move(task_);
    if (!task) return;
    try {
      outcome.response = response_;
      outcome.body = onlyPiece_ ? *onlyPiece_ : Data(std::move(pieces_));
    } catch (const std::bad_alloc&) {
      outcome = Outcome::outOfMemory();
    }
  }
  hand(std::move(task), std::move(outcome));
}

void Load::didFail(const Error& error) {
  Outcome outcome;
  outcome.error = error;
  end(std::move(outcome));
}

std::shared_ptr<DataTask> Load::close() {
  const std::lock_guard lock(mutex_);
  return std::move(task_);
}

void Load::end(Outcome outcome) {
  if (auto task = close()) hand(std::move(task), std::move(outcome));
}

void Load::hand(std::shared_ptr<DataTask> task, Outcome outcome) {
  ending_.front() = {LoadMessage::Event::ended, task, shared_from_this()};
  engine_.ended(std::move(ending_));
  engine_.deliver(std::move(task), std::move(outcome));
}

}  // namespace quorvelkit
