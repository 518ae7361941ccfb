// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVRetryPolicy.h>
#include <QuorvelPlatform/Scheduler.h>

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>
#include <variant>

namespace quorvelkit {

/// The time at which a call ends at the latest: a point in time, or a duration from the start of
/// the call.
class QVDeadline {
 public:
  /// A duration from the start of the call, or a point in time.
  template <class Rep, class Period>
  QVDeadline(std::chrono::duration<Rep, Period> fromStart) : value_(saturated(fromStart)) {}
  QVDeadline(Scheduler::TimePoint time) : value_(time) {}

  /// Returns the point in time for a call that starts at `start`.
  Scheduler::TimePoint time(Scheduler::TimePoint start) const {
    const auto* const fromStart = std::get_if<Duration>(&value_);
    if (fromStart == nullptr) return std::get<Scheduler::TimePoint>(value_);
    const bool isLater = *fromStart < Scheduler::TimePoint::max() - start;
    return isLater ? start + *fromStart : Scheduler::TimePoint::max();
  }

 private:
  using Duration = Scheduler::TimePoint::duration;

  template <class Rep, class Period>
  static constexpr Duration saturated(std::chrono::duration<Rep, Period> duration) {
    using Seconds = std::chrono::duration<long double>;
    if (!(Seconds(duration) < Seconds(Duration::max()))) return Duration::max();
    if (Seconds(duration) <= Seconds(Duration::min())) return Duration::min();
    return std::chrono::ceil<Duration>(duration);
  }

  std::variant<Duration, Scheduler::TimePoint> value_;
};

/// Settings of a QVCall: construct them, then set members. The defaults keep the behaviour of the
/// completion handler.
struct QVCallOptions {
  // GCC 12 destroys aggregates in a co_await expression twice, so this struct has a constructor.
  QVCallOptions() = default;
  /// Options with this deadline.
  QVCallOptions(QVDeadline callDeadline) : deadline(callDeadline) {}

  /// Limits the whole call: login, configuration, retries and their backoff included. Then the call
  /// is cancelled, and its response has the error URLError::timedOut. Default: no limit; each
  /// transfer has its own time-outs.
  std::optional<QVDeadline> deadline;
  /// Cancels the call, like QVCall::cancel().
  std::stop_token stopToken;
  /// True cancels the call when the last QVCall that refers to it is destroyed, and no future and
  /// no handler waits for its result. A coroutine that is destroyed while it waits destroys its
  /// QVCall.
  bool cancelsWhenAbandoned = false;
  /// Repeats the call after a transient error. Default: no retry.
  std::optional<QVRetryPolicy> retry;
  /// The clock of deadline and backoff. Null: Scheduler::shared().
  std::shared_ptr<Scheduler> scheduler;
};

}  // namespace quorvelkit
