// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/TaskLoader_p.h>
#include <QuorvelPlatform/URLError.h>

#include <algorithm>
#include <new>
#include <utility>

namespace quorvelkit {

namespace {

// Converts an interval. An interval that is not positive gives the fallback. The result is at most
// about 30 years, so that the sum with a time point does not overflow.
TaskLoader::Clock::duration clockInterval(std::chrono::duration<double> interval,
                                          std::chrono::duration<double> fallback) {
  constexpr std::chrono::duration<double> maximum(1e9);
  if (!(interval.count() > 0)) interval = fallback.count() > 0 ? fallback : maximum;
  return std::chrono::ceil<TaskLoader::Clock::duration>(std::min(interval, maximum));
}

}  // namespace

TaskLoader::TaskLoader(SessionEngine& engine, std::shared_ptr<DataTask> task, Clock::time_point now)
    : engine_(engine),
      maximumBodySize_(task->session().configuration.maximumBodySize),
      idleInterval_(clockInterval(task->originalRequest().ownTimeoutInterval().value_or(
                                      task->session().configuration.timeoutIntervalForRequest),
                                  task->session().configuration.timeoutIntervalForRequest)),
      latestEnd_(now + clockInterval(task->session().configuration.timeoutIntervalForResource, {})),
      lastActivity_(now.time_since_epoch().count()),
      task_(std::move(task)) {}

TaskLoader::~TaskLoader() = default;

TaskLoader::Clock::time_point TaskLoader::deadline() const {
  const Clock::time_point lastActivity{
      Clock::duration(lastActivity_.load(std::memory_order_relaxed))};
  return std::min(lastActivity + idleInterval_, latestEnd_);
}

std::string TaskLoader::timeoutText(Clock::time_point now) const try {
  if (now >= latestEnd_) return "The whole transfer took longer than its time limit.";
  const auto idle = std::chrono::duration_cast<std::chrono::milliseconds>(idleInterval_);
  return "Nothing was sent or received for " + std::to_string(idle.count()) + " ms.";
} catch (const std::bad_alloc&) {
  return {};
}

void TaskLoader::didReceive(std::shared_ptr<const URLResponse> response) {
  restartIdleTimer(Clock::now());
  const std::lock_guard lock(mutex_);
  if (task_) response_ = std::move(response);
}

void TaskLoader::didLoad(const Data& piece) {
  restartIdleTimer(Clock::now());
  try {
    const std::lock_guard lock(mutex_);
    if (!task_) return;
    const std::size_t size = onlyPiece_ ? onlyPiece_->size() : joinedPieces_.size();
    if (piece.size() <= maximumBodySize_ && size <= maximumBodySize_ - piece.size()) {
      if (size == 0) {
        onlyPiece_ = piece;
        return;
      }
      if (onlyPiece_) joinedPieces_ = std::exchange(onlyPiece_, std::nullopt)->view();
      joinedPieces_ += piece.view();
      return;
    }
  } catch (const std::bad_alloc&) {
    return end(TaskResult::outOfMemory());
  }
  end(TaskResult::failure(URLError::dataLengthExceedsMaximum));
}

void TaskLoader::didFinishLoading() {
  TaskResult result;
  std::shared_ptr<DataTask> task;
  {
    const std::lock_guard lock(mutex_);
    task = std::move(task_);
    if (!task) return;
    try {
      result.response = response_;
      result.body = onlyPiece_ ? *onlyPiece_ : Data(std::move(joinedPieces_));
    } catch (const std::bad_alloc&) {
      result = TaskResult::outOfMemory();
    }
  }
  deliverResult(std::move(task), std::move(result));
}

void TaskLoader::didFail(const Error& error) {
  TaskResult result;
  result.error = error;
  end(std::move(result));
}

std::shared_ptr<DataTask> TaskLoader::detachTask() {
  const std::lock_guard lock(mutex_);
  return std::move(task_);
}

void TaskLoader::end(TaskResult result) {
  if (auto task = detachTask()) deliverResult(std::move(task), std::move(result));
}

void TaskLoader::deliverResult(std::shared_ptr<DataTask> task, TaskResult result) {
  endMessage_.front() = {TaskMessage::Event::ended, task, shared_from_this()};
  engine_.post(std::move(endMessage_));
  engine_.enqueueCompletion(std::move(task), std::move(result));
}

}  // namespace quorvelkit
