// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/Calls/QVRetryPolicy.h>
#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/URLError.h>

#include <algorithm>
#include <cmath>

namespace quorvelkit {

namespace {

constexpr std::chrono::hours longestBackoff(24);

const HTTPURLResponse* httpResponse(const QVBaseResponse& response) {
  return dynamic_cast<const HTTPURLResponse*>(response.response().get());
}

}  // namespace

bool QVRetryPolicy::isTransient(const QVBaseResponse& response) {
  if (!response.error()) return false;
  if (const HTTPURLResponse* const answer = httpResponse(response)) {
    const int status = answer->statusCode();
    return status == 429 || (status >= 502 && status <= 504);
  }
  if (response.error()->domain() != URLError::domain) return false;
  switch (response.error()->code()) {
    case URLError::timedOut:
    case URLError::cannotFindHost:
    case URLError::cannotConnectToHost:
    case URLError::networkConnectionLost:
    case URLError::notConnectedToInternet: return true;
    default: return false;
  }
}

std::chrono::milliseconds QVRetryPolicy::backoff(std::int64_t retry, double random,
                                                 const QVBaseResponse& response) const {
  using Milliseconds = std::chrono::duration<double, std::milli>;
  const double growth = std::pow(multiplier, static_cast<double>(retry));
  // A backoff of 0 stays 0, also if its growth is infinite.
  const Milliseconds growing =
      initialBackoff.count() == 0 ? Milliseconds(0) : Milliseconds(initialBackoff) * growth;
  const Milliseconds limited =
      std::min({growing, Milliseconds(maximumBackoff), Milliseconds(longestBackoff)});
  const auto backoff = std::chrono::duration_cast<std::chrono::milliseconds>(
      limited * (1 - std::clamp(jitter, 0.0, 1.0) * random));
  const HTTPURLResponse* const answer = httpResponse(response);
  const auto retryAfter = answer != nullptr ? answer->retryAfter() : std::nullopt;
  return std::max<std::chrono::milliseconds>(backoff, retryAfter.value_or(std::chrono::seconds(0)));
}

}  // namespace quorvelkit
