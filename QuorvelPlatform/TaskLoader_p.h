// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/URLProtocol.h>

#include <atomic>
#include <chrono>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace quorvelkit {

class SessionEngine;
class TaskLoader;

/// A message to the IO thread about one data task.
struct TaskMessage {
  enum class Event { start, cancel, ended } event = Event::start;
  std::shared_ptr<DataTask> task = nullptr;
  std::shared_ptr<TaskLoader> loader = nullptr;
};
using TaskMessages = std::list<TaskMessage>;

/// Runs one data task through one URL protocol: collects the response and the body, enforces the
/// body limit and the time-outs. The first of protocol, time-out and cancellation ends it.
class TaskLoader final : public URLProtocolClient, public std::enable_shared_from_this<TaskLoader> {
 public:
  using Clock = std::chrono::steady_clock;

  TaskLoader(SessionEngine& engine, std::shared_ptr<DataTask> task, Clock::time_point now);
  ~TaskLoader() override;

  void didReceive(std::shared_ptr<const URLResponse> response) override;
  void didLoad(const Data& piece) override;
  void didFinishLoading() override;
  void didFail(const Error& error) override;

  /// Ends the loader and completes its task with the result. Does nothing if the loader has ended.
  /// Thread-safe.
  void end(TaskResult result);
  /// Ends the loader without a result. Returns its task, or null if the loader has ended before.
  /// Further calls of the protocol are ignored. Thread-safe.
  std::shared_ptr<DataTask> detachTask();

  void restartIdleTimer(Clock::time_point now) {
    lastActivity_.store(now.time_since_epoch().count(), std::memory_order_relaxed);
  }
  /// The time of the next time-out if no further bytes are transferred.
  Clock::time_point deadline() const;
  /// Describes the time-out for Error::technicalDescription().
  std::string timeoutText(Clock::time_point now) const;
  Clock::duration idleInterval() const { return idleInterval_; }

  /// Members of the session engine, used on the IO thread: the protocol, and the position in the
  /// list of loaders.
  std::unique_ptr<URLProtocol> protocol;
  std::size_t index = 0;

 private:
  void deliverResult(std::shared_ptr<DataTask> task, TaskResult result);

  SessionEngine& engine_;
  const std::size_t maximumBodySize_;
  const Clock::duration idleInterval_;
  const Clock::time_point latestEnd_;
  std::atomic<Clock::rep> lastActivity_;

  std::mutex mutex_;
  std::shared_ptr<DataTask> task_;
  std::shared_ptr<const URLResponse> response_;
  // A body of one piece is not copied; further pieces are appended to one string.
  std::optional<Data> onlyPiece_;
  std::string joinedPieces_;
  TaskMessages endMessage_{1};  // Allocated in advance, so that ending needs no memory.
};

}  // namespace quorvelkit
