// SPDX-License-Identifier: Apache-2.0
#include "tests/calls/CallForms.h"
#include "tests/support/ManualScheduler.h"

#include <QuorvelPlatform/HTTPURLResponse.h>

#include <gtest/gtest.h>

namespace quorvelkit {
namespace {

using namespace test;
using namespace std::chrono_literals;

std::shared_ptr<const URLResponse> answer(int status, HTTPHeaderFields fields = {}) {
  return std::make_shared<HTTPURLResponse>(*URL::parse("http://a.test"), status, std::move(fields));
}

std::shared_ptr<QVRouteResponse> responseWith(std::shared_ptr<const URLResponse> http,
                                              std::optional<Error> error = std::nullopt) {
  return makeResponse<QVRouteResponse>(std::nullopt, routeRequest(), std::move(http),
                                       std::move(error));
}

TEST(RetryPolicyTest, TransientErrors) {
  for (const int status : {200, 400, 401, 404, 408, 428, 430, 500, 501, 505})
    EXPECT_FALSE(QVRetryPolicy::isTransient(*responseWith(answer(status)))) << status;
  for (const int status : {429, 502, 503, 504})
    EXPECT_TRUE(QVRetryPolicy::isTransient(*responseWith(answer(status)))) << status;
  const auto isTransient = [](const Error& error) {
    return QVRetryPolicy::isTransient(*responseWith(nullptr, error));
  };
  for (const auto code :
       {URLError::timedOut, URLError::cannotFindHost, URLError::cannotConnectToHost,
        URLError::networkConnectionLost, URLError::notConnectedToInternet})
    EXPECT_TRUE(isTransient(URLError::make(code))) << code;
  for (const auto code :
       {URLError::unknown, URLError::cancelled, URLError::badURL, URLError::cannotParseResponse,
        URLError::dataLengthExceedsMaximum, URLError::serverCertificateUntrusted})
    EXPECT_FALSE(isTransient(URLError::make(code))) << code;
  EXPECT_FALSE(isTransient(Error("Other", URLError::timedOut)));
}

TEST(RetryPolicyTest, BackoffGrowsAndFollowsTheServer) {
  const QVRetryPolicy policy{.initialBackoff = 100ms, .maximumBackoff = 1s, .jitter = 0.5};
  const auto silent = responseWith(answer(503));
  struct Row {
    std::int64_t retry;
    double random;
    std::chrono::milliseconds backoff;
  };
  for (const auto& [retry, random, backoff] :
       {Row{0, 0, 100ms}, Row{1, 0, 200ms}, Row{3, 0, 800ms}, Row{4, 0, 1s}, Row{4000, 0, 1s},
        Row{0, 1, 50ms}, Row{1, 0.5, 150ms}})
    EXPECT_EQ(policy.backoff(retry, random, *silent), backoff) << retry << ", " << random;
  EXPECT_EQ((QVRetryPolicy{.initialBackoff = 0ms}.backoff(4000, 0, *silent)), 0ms);
  constexpr auto longest = std::chrono::milliseconds::max();
  EXPECT_EQ(
      (QVRetryPolicy{.initialBackoff = longest, .maximumBackoff = longest}.backoff(1, 0, *silent)),
      24h);
  EXPECT_EQ(policy.backoff(0, 0, *responseWith(nullptr)), 100ms);

  const std::string date = "Sun, 06 Nov 1994 08:49:37 GMT";
  struct Field {
    std::string retryAfter, date;
    std::chrono::milliseconds backoff;
  };
  for (const auto& [retryAfter, sent, backoff] :
       {Field{"7", "", 7s}, Field{" 7 ", "", 7s}, Field{"0", "", 100ms}, Field{"-7", "", 100ms},
        Field{"7.5", date, 100ms}, Field{"99999999", "", 24h},
        Field{"99999999999999999999", "", 100ms}, Field{date, "Sun, 06 Nov 1994 08:49:30 GMT", 7s},
        Field{date, "", 100ms}, Field{date, "Sun, 06 Nov 1994 08:49:38 GMT", 100ms},
        Field{"soon", "", 100ms}}) {
    HTTPHeaderFields fields;
    fields.set("Retry-After", retryAfter);
    if (!sent.empty()) fields.set("Date", sent);
    EXPECT_EQ(policy.backoff(0, 0, *responseWith(answer(503, fields))), backoff) << retryAfter;
  }
}

TEST(DeadlineTest, DurationsOutsideTheRangeAreLimited) {
  using TimePoint = Scheduler::TimePoint;
  const TimePoint start(1h);
  EXPECT_EQ(QVDeadline(1min).time(start), start + 1min);
  EXPECT_EQ(QVDeadline(start).time(TimePoint()), start);
  for (const QVDeadline endless :
       {QVDeadline(std::chrono::hours::max()), QVDeadline(TimePoint::duration::max()),
        QVDeadline(std::chrono::duration<double>(1e300))})
    EXPECT_EQ(endless.time(start), TimePoint::max());
  EXPECT_LT(QVDeadline(std::chrono::hours::min()).time(start), TimePoint());
}

class RetryTest : public testing::Test {
 protected:
  RetryTest() {
    configure(roots("http://nav.test", "http://find.test"));
    server.set("/v4/route", {503, "busy"});
  }
  RouteCall start(std::optional<QVDeadline> deadline = std::nullopt) {
    return RouteCall(QVNavigation::route, request,
                     with({.deadline = deadline,
                           .retry = QVRetryPolicy{.initialBackoff = 1s, .jitter = 0},
                           .scheduler = scheduler}));
  }
  // Runs the main queue until this attempt has failed and the next one is scheduled.
  bool isWaitingAfter(std::size_t attempts, std::size_t timers = 1) {
    return runUntil(
        [&] { return server.requests().size() == attempts && scheduler->waiting() == timers; });
  }

  FakeServer server;
  std::shared_ptr<ManualScheduler> scheduler = std::make_shared<ManualScheduler>();
  std::shared_ptr<QVRouteRequest> request = routeRequest();
};

TEST_F(RetryTest, RepeatsTransientErrorsWithinTheLimits) {
  using Status = std::vector<int>;
  struct Row {
    const char* name;
    Status statuses;  // of the answers, in order; the backoffs are 1, 2 and 4 seconds
    std::int64_t maximumRetries;
    std::optional<QVDeadline> deadline;
    const char* expected;
  };
  const Row rows[] = {
      {"success", {503, 503, 200}, 3, std::nullopt, "2 points"},
      {"too many retries", {503, 503}, 1, std::nullopt, "QuorvelKit.QVRouteResponse 503"},
      {"another error", {503, 404}, 3, std::nullopt, "QuorvelKit.QVRouteResponse 404"},
      {"past the deadline", {503, 503}, 3, 2500ms, "QuorvelKit.QVRouteResponse 503"},
  };
  for (const auto& [name, statuses, maximumRetries, deadline, expected] : rows) {
    SCOPED_TRACE(name);
    server.clearRequests();
    request = routeRequest();
    request->setMaxNumberOfRetries(maximumRetries);
    server.set("/v4/route", {statuses[0], "busy"});
    auto call = start(deadline);
    for (std::size_t attempt = 1; attempt < statuses.size(); ++attempt) {
      ASSERT_TRUE(isWaitingAfter(attempt, deadline ? 2 : 1));
      server.set("/v4/route", {statuses[attempt], statuses[attempt] == 200 ? twoPoints : "busy"});
      const std::chrono::seconds backoff(1 << (attempt - 1));
      scheduler->advance(backoff - 1ms);
      MainQueue::main().runPending();
      EXPECT_EQ(server.requests().size(), attempt) << "It waits for the whole backoff.";
      scheduler->advance(1ms);
    }
    EXPECT_EQ(describe(call.wait()), expected);
    EXPECT_EQ(server.requests().size(), statuses.size());
    EXPECT_EQ(request->retryCount(), static_cast<std::int64_t>(statuses.size()) - 1);
    EXPECT_EQ(scheduler->waiting(), 0U);
  }
}

TEST_F(RetryTest, CancelEndsTheBackoff) {
  auto call = start();
  ASSERT_TRUE(isWaitingAfter(1));
  call.cancel();
  EXPECT_EQ(describe(call.wait()), "QuorvelKit.URLError -999");
  EXPECT_EQ(scheduler->waiting(), 0U);
}

// During the backoff only the scheduler refers to the call.
TEST_F(RetryTest, ContinuesWithoutItsHandle) {
  auto future = start().future();
  ASSERT_TRUE(isWaitingAfter(1));
  server.set("/v4/route", {200, twoPoints});
  scheduler->advance(1s);
  EXPECT_EQ(describe(resultOfFuture(std::move(future))), "2 points");
  EXPECT_EQ(request.use_count(), 1);
}

}  // namespace
}  // namespace quorvelkit
