// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <functional>
#include <memory>

namespace quorvelkit {

/// Runs blocks at a later time. The library uses it for deadlines, backoff and debounce. An
/// application can pass a scheduler of its own, for example one with a clock for tests.
/// Implementations must be thread-safe.
class QUORVELKIT_EXPORT Scheduler {
 public:
  /// A time of std::chrono::steady_clock, or of the clock of the implementation.
  using TimePoint = std::chrono::steady_clock::time_point;
  /// A function that runs once.
  using Block = std::function<void()>;

  /// A block that waits for its time. The destructor removes the block from the scheduler if it has
  /// not started yet. It does not wait for a block that is running.
  class QUORVELKIT_EXPORT Timer {
   public:
    Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    virtual ~Timer();
  };

  Scheduler() = default;
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;
  virtual ~Scheduler();

  /// The current time.
  virtual TimePoint now() const = 0;
  /// Runs the block once when now() reaches `time`, never inside this call. Blocks run on one
  /// thread, ordered by time, then by the order of the calls. A block must return quickly, must not
  /// throw and must not own objects of the application: it is destroyed on that thread or on the
  /// thread that destroys the timer.
  virtual std::unique_ptr<Timer> schedule(TimePoint time, Block block) = 0;

  /// Returns the scheduler of the library. It uses std::chrono::steady_clock and one thread, which
  /// the first schedule() starts. If the thread cannot be started, schedule() throws
  /// std::system_error. At exit the thread is stopped and joined. A child process made by fork()
  /// starts without blocks and with a thread of its own. Never destroyed.
  static Scheduler& shared();
};

}  // namespace quorvelkit
