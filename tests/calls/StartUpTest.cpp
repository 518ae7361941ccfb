// SPDX-License-Identifier: Apache-2.0
#include "tests/calls/CallForms.h"
#include "tests/support/ManualScheduler.h"

#include <QuorvelKit/Calls/QVStartUp.h>

#include <gtest/gtest.h>

namespace quorvelkit {
namespace {

using namespace test;
using namespace std::chrono_literals;

class StartUpTest : public testing::Test {
 protected:
  using Call = QVCall<QVConfigurationResponse>;

  static std::string errorOf(const Call::Result& result) {
    const auto error = result.error();
    return error ? error->domain() + ' ' + std::to_string(error->code()) : "none";
  }
  std::size_t requestsTo(const std::string& path) {
    const auto all = server.requests();
    return static_cast<std::size_t>(std::count_if(
        all.begin(), all.end(), [&](const auto& sent) { return sent.url().path() == path; }));
  }

  FakeServer server;
  std::shared_ptr<ManualScheduler> scheduler = std::make_shared<ManualScheduler>();
};

TEST_F(StartUpTest, ReportsEachFailureAndCanBeRepeated) {
  struct Row {
    const char* name;
    FakeServer::Answer login, configuration;
    const char* error;
  };
  const FakeServer::Answer goodLogin{200, R"({"user-token":")" + token36 + "\"}"};
  const FakeServer::Answer goodConfiguration{200, roots("http://nav.test", "http://find.test")};
  const Row rows[] = {
      {"no network", {0, ""}, {0, ""}, "QuorvelKit.URLError -1009"},
      {"login failed", {503, "busy"}, {401, "no token"}, "QuorvelKit.QVLoginResponse 503"},
      {"only the login failed", {503, "busy"}, goodConfiguration, "none"},
      {"configuration failed", goodLogin, {500, "no"}, "QuorvelKit.QVConfigurationResponse 500"},
      {"a page", goodLogin, {200, "<html>Log in</html>"}, "QuorvelKit.QVStartUp 1"},
      {"no roots", goodLogin, {200, "{}"}, "QuorvelKit.QVStartUp 1"},
      {"empty body", goodLogin, {204, ""}, "QuorvelKit.QVStartUp 1"},
  };
  for (const auto& [name, login, configuration, error] : rows) {
    SCOPED_TRACE(name);
    QVConfiguration::setCachedResponse(nullptr);
    QVBackendless::setUserToken("");
    server.set(loginPath, login);
    server.set(configurationPath, configuration);
    const auto failed = QVStartUp::loadConfiguration().wait();
    EXPECT_EQ(errorOf(failed), error);
    EXPECT_FALSE(failed.notSent());
    server.set(loginPath, goodLogin);
    server.set(configurationPath, goodConfiguration);
    EXPECT_EQ(errorOf(QVStartUp::loadConfiguration().wait()), "none");
    server.clearRequests();
    EXPECT_EQ(errorOf(QVStartUp::loadConfiguration().wait()), "none");
    EXPECT_TRUE(server.requests().empty()) << "The configuration is cached.";
  }
  QVConfiguration::setCachedResponse(nullptr);
  QVBackendless::setUserToken("");
  QVBackendless::setBaseURL("127.0.0.1:80");
  const auto notSent = QVStartUp::loadConfiguration().wait().notSent();
  ASSERT_TRUE(notSent);
  EXPECT_EQ(notSent->reason(), QVNotSent::Reason::unusableBaseURL);
}

TEST_F(StartUpTest, RemovesARefusedToken) {
  QVBackendless::setUserToken("22222222-2222-4333-8444-555555555555");
  server.set(configurationPath, {401, "expired"});
  EXPECT_EQ(errorOf(QVStartUp::loadConfiguration().wait()),
            "QuorvelKit.QVConfigurationResponse 401");
  EXPECT_EQ(requestsTo(loginPath), 0U);
  server.set(configurationPath, {200, roots("http://nav.test", "http://find.test")});
  EXPECT_EQ(errorOf(QVStartUp::loadConfiguration().wait()), "none");
  EXPECT_EQ(requestsTo(loginPath), 1U);
  EXPECT_EQ(QVBackendless::userToken(), token36);
}

TEST_F(StartUpTest, CallersThatRaceShareOneAttempt) {
  server.hold(configurationPath);
  std::vector<std::future<Call::Result>> results;
  {
    std::vector<std::jthread> threads;
    std::mutex mutex;
    for (int i = 0; i < 8; ++i) {
      threads.emplace_back([&] {
        auto result = QVStartUp::loadConfiguration().future();
        const std::lock_guard lock(mutex);
        results.push_back(std::move(result));
      });
    }
  }
  auto cancelled = QVStartUp::loadConfiguration();
  auto limited = QVStartUp::loadConfiguration(with({.deadline = 1s, .scheduler = scheduler}));
  EXPECT_TRUE(runUntil([&] { return requestsTo(configurationPath) == 1; }));
  cancelled.cancel();
  scheduler->advance(1s);
  EXPECT_EQ(errorOf(cancelled.wait()), "QuorvelKit.URLError -999");
  EXPECT_EQ(errorOf(limited.wait()), "QuorvelKit.URLError -1001");
  server.release();
  for (auto& result : results) {
    EXPECT_TRUE(runUntil([&] { return result.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(errorOf(result.get()), "none");
  }
  EXPECT_EQ(requestsTo(loginPath), 1U);
  EXPECT_EQ(requestsTo(configurationPath), 1U);
}

// Five callers wait for each attempt, more than the retries that a request allows by default.
TEST_F(StartUpTest, RepeatsTransientErrorsUntilTheDeadline) {
  server.set(configurationPath, {503, "busy"});
  std::vector<Call> calls;
  for (int i = 0; i < 5; ++i) {
    calls.push_back(QVStartUp::loadConfiguration(
        with({.deadline = 100s,
              .retry = QVRetryPolicy{.initialBackoff = 1s, .multiplier = 1, .jitter = 0},
              .scheduler = scheduler})));
  }
  for (std::size_t attempt = 1; attempt < 10; ++attempt) {
    ASSERT_TRUE(runUntil([&] { return scheduler->waiting() == 10; })) << attempt;
    EXPECT_EQ(requestsTo(configurationPath), attempt);
    scheduler->advance(1s);
  }
  ASSERT_TRUE(runUntil([&] { return scheduler->waiting() == 10; }));
  scheduler->advance(200s);
  for (Call& call : calls)
    EXPECT_EQ(errorOf(call.wait()), "QuorvelKit.URLError -1001");
}

}  // namespace
}  // namespace quorvelkit
