// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <cstdint>

namespace quorvelkit {

class QVBaseResponse;

/// When and how often a call is repeated after a transient error: exponential backoff with jitter.
///
/// The response must allow another attempt, too: QVBaseResponse::shouldRetryRequest counts the
/// attempts in the request and, by default, allows three retries.
struct QUORVELKIT_EXPORT QVRetryPolicy {
  /// The backoff before the first retry. Each further one is `multiplier` times as long, up to
  /// `maximumBackoff`, and to one day at most.
  std::chrono::milliseconds initialBackoff{500};
  double multiplier = 2;
  std::chrono::milliseconds maximumBackoff{30'000};
  /// The part of each backoff that is random, from 0 (none) to 1 (all). Prevents that many clients
  /// repeat their calls at the same time.
  double jitter = 0.5;

  /// Returns true if the same call may succeed later: after a time-out, without a connection to the
  /// server (host not found, not connected, connection lost, no network), and after the status 429,
  /// 502, 503 or 504.
  static bool isTransient(const QVBaseResponse& response);

  /// Returns the backoff before a retry. `retry` counts from 0, `random` is a number from 0 to 1. A
  /// field Retry-After of the response (RFC 9110, section 10.2.3: seconds or a date) makes it
  /// longer, but not shorter. A date is compared with the field Date or, without it, with the clock
  /// of the system.
  std::chrono::milliseconds backoff(std::int64_t retry, double random,
                                    const QVBaseResponse& response) const;
};

}  // namespace quorvelkit
