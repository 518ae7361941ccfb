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

class Load;
class SessionEngine;

/// What the IO thread is told.
struct LoadMessage {
  enum class Event { start, cancel, ended } event = Event::start;
  std::shared_ptr<DataTask> task = nullptr;
  std::shared_ptr<Load> load = nullptr;
};
using LoadMessages = std::list<LoadMessage>;

/// One task being served by one protocol: takes the protocol's answer, counts its bytes and keeps
/// its time. Ends once, by the first of the protocol, a time-out and a cancellation.
class Load final : public URLProtocolClient, public std::enable_shared_from_this<Load> {
 public:
  using Clock = std::chrono::steady_clock;

  Load(SessionEngine& engine, std::shared_ptr<DataTask> task, Clock::time_point now);
  ~Load() override;

  void didReceive(std::shared_ptr<const URLResponse> response) override;
  void didLoad(const Data& piece) override;
  void didFinishLoading() override;
  void didFail(const Error& error) override;

  /// Ends the load and hands the outcome to the callback thread. Any thread.
  void end(Outcome outcome);
  /// Ends the load without handing anything over: gives the task, or null when the load has ended
  /// already. Later calls of the protocol find a closed door.
  std::shared_ptr<DataTask> close();

  /// Starts the idle time anew.
  void touch(Clock::time_point now) {
    lastActivity_.store(now.time_since_epoch().count(), std::memory_order_relaxed);
  }
  /// When the load times out unless something moves before.
  Clock::time_point deadline() const;
  /// Which of its two limits a load has passed that timed out.
  std::string timeoutText(Clock::time_point now) const;
  Clock::duration idleInterval() const { return idleInterval_; }

  /// The rest belongs to the IO thread.
  std::unique_ptr<URLProtocol> protocol;
  std::size_t index = 0;

 private:
  void hand(std::shared_ptr<DataTask> task, Outcome outcome);

  SessionEngine& engine_;
  const std::size_t maximumBodySize_;
  const Clock::duration idleInterval_;
  const Clock::time_point lastMoment_;
  std::atomic<Clock::rep> lastActivity_;

  std::mutex mutex_;
  std::shared_ptr<DataTask> task_;
  std::shared_ptr<const URLResponse> response_;
  std::optional<Data> onlyPiece_;
  std::string pieces_;
  LoadMessages ending_{1};  // Told when the load ends, which takes no memory then.
};

}  // namespace quorvelkit
