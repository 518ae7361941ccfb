// SPDX-License-Identifier: Apache-2.0
#include "FakeServer.h"

#include <QuorvelKit/QuorvelKitAll.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace quorvelkit {
namespace {

using test::FakeServer;
using test::runMainQueueUntil;

const std::string routePath = "/v4/route";

auto routeRequest() { return std::make_shared<QVRouteRequest>(Coordinate{1, 2}, Coordinate{3, 4}); }

class ServiceTest : public testing::Test {
 protected:
  FakeServer server;
  const std::thread::id mainThread = std::this_thread::get_id();

  ServiceTest() { server.set(routePath, {200, R"({"points":[{"node":1}]})"}); }

  // Makes a call and returns its response, which must arrive on the main thread after the call.
  template <class Response, class MakeCall>
  std::shared_ptr<Response> answerOf(const MakeCall& makeCall) {
    std::shared_ptr<Response> answer;
    makeCall([&](std::shared_ptr<Response> response) {
      EXPECT_EQ(std::this_thread::get_id(), mainThread);
      answer = std::move(response);
    });
    EXPECT_EQ(answer, nullptr) << "delivered inside the call";
    EXPECT_TRUE(runMainQueueUntil([&] { return answer != nullptr; }));
    return answer;
  }
  void loadConfiguration() {
    bool loaded = false;
    QVBaseService::loadConfiguration([&] { loaded = true; });
    ASSERT_TRUE(runMainQueueUntil([&] { return loaded; }));
  }
};

// The fault table tests failures and dropped handlers.
TEST_F(ServiceTest, FirstCallLogsInAndLoadsTheConfiguration) {
  const auto request = routeRequest();
  std::shared_ptr<URLSessionDataTask> task;
  const auto requestRoute = [&](const auto& handler) {
    task = QVNavigation::route(request, handler);
  };
  const auto first = answerOf<QVRouteResponse>(requestRoute);
  EXPECT_EQ(task, nullptr);
  EXPECT_EQ(first->route()->points().size(), 1U);
  EXPECT_EQ(first->request(), request);
  EXPECT_EQ(first->task()->state(), URLSessionDataTask::State::completed);
  const auto requests = server.requests();
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_EQ(requests[0].url().path(), test::loginPath);
  EXPECT_EQ(requests[1].url().path(), test::configurationPath);
  EXPECT_EQ(requests[1].value("user-token"), test::token36);
  EXPECT_EQ(requests[2].url().path(), routePath);
  EXPECT_EQ(requests[2].value("user-token"), std::nullopt);

  const auto second = answerOf<QVRouteResponse>(requestRoute);
  ASSERT_NE(task, nullptr);
  EXPECT_EQ(second->task(), task);
  EXPECT_EQ(second->request(), request);
  EXPECT_EQ(server.requests().size(), 4U);
}

// --- login and configuration

// The fault table tests that a failed login leaves no token.
TEST_F(ServiceTest, LoginIsSkippedOnlyWithATokenOf36Characters) {
  std::string letters;
  for (int i = 0; i < 36; ++i)
    letters += "é";
  const auto bodyWithToken = [](const std::string& token) {
    return "{\"user-token\":\"" + token + "\"}";
  };
  const std::string x35(35, 'x');
  // Status, body, stored token, and whether the next login is skipped.
  const std::tuple<int, std::string, std::string, bool> cases[] = {
      {200, bodyWithToken(test::token36), test::token36, true},
      {200, bodyWithToken(letters), letters, true},
      {200, bodyWithToken(x35), x35, false},
      {200, bodyWithToken(x35 + "xx"), x35 + "xx", false},
      {200, R"({"objectId":1,"user-token":123456})", "", false},
      {500, bodyWithToken(x35), x35, false}};
  for (const auto& [status, body, token, isSkipped] : cases) {
    SCOPED_TRACE(body);
    QVBackendless::setUserToken("stale");
    server.set(test::loginPath, {status, body});
    const auto before = server.requests().size();
    std::shared_ptr<QVLoginRequest> request;
    std::shared_ptr<URLSessionDataTask> task;
    const auto logIn = [&](const auto& handler) {
      request = std::make_shared<QVLoginRequest>();
      task = QVBackendless::login(request, handler);
    };
    const auto first = answerOf<QVLoginResponse>(logIn);
    EXPECT_NE(task, nullptr);
    EXPECT_EQ(first->error().has_value(), status >= 400);
    EXPECT_EQ(QVBackendless::userToken(), token);

    const auto second = answerOf<QVLoginResponse>(logIn);
    EXPECT_EQ(task == nullptr, isSkipped);
    EXPECT_EQ(second->request(), request);
    EXPECT_EQ(second->data().has_value(), !isSkipped);
    EXPECT_EQ(QVBackendless::userToken(), token);
    EXPECT_EQ(server.requests().size(), before + (isSkipped ? 1 : 2));
  }
}

TEST_F(ServiceTest, FailedConfigurationIsCached) {
  server.set(test::loginPath, {401, "{}"});
  server.set(test::configurationPath, {401, "Invalid token"});
  EXPECT_EQ(QVConfiguration::cachedResponse(), nullptr);
  const auto first = answerOf<QVConfigurationResponse>(
      [](const auto& handler) { EXPECT_EQ(QVConfiguration::get(handler), nullptr); });
  EXPECT_EQ(server.requests()[1].value("user-token"), "");
  EXPECT_EQ(first->error()->code(), 401);
  EXPECT_EQ(QVConfiguration::cachedResponse(), first);
  std::thread([&] {
    std::shared_ptr<QVConfigurationResponse> second;
    EXPECT_EQ(QVConfiguration::get([&](const auto& response) { second = response; }), nullptr);
    EXPECT_EQ(second, first) << "not delivered inside the call";
  }).join();
  EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(ServiceTest, ConcurrentFirstCallsEachLoadTheConfiguration) {
  server.hold(test::loginPath);
  int ended = 0;
  for (int i = 0; i < 2; ++i)
    QVNavigation::route(routeRequest(), [&](const auto& response) { ended += !response->error(); });
  server.requests(2);
  server.release();
  ASSERT_TRUE(runMainQueueUntil([&] { return ended == 2; }));
  EXPECT_EQ(server.requests().size(), 6U);

  QVConfiguration::setCachedResponse(nullptr);
  loadConfiguration();
  EXPECT_EQ(server.requests().size(), 7U) << "the stored token was not used";
}

// --- facades of an application, and the thread that destroys its objects

// Checks that it is destroyed on the thread that made it, and counts.
struct DestructionChecker {
  std::atomic<int>* destructions;
  std::thread::id owner = std::this_thread::get_id();
  explicit DestructionChecker(std::atomic<int>& count) : destructions(&count) {}
  DestructionChecker(const DestructionChecker&) = delete;
  DestructionChecker& operator=(const DestructionChecker&) = delete;
  ~DestructionChecker() {
    EXPECT_EQ(std::this_thread::get_id(), owner);
    ++*destructions;
  }
};

class WeatherRequest : public QVBaseRequest {
 public:
  explicit WeatherRequest(std::atomic<int>& destructions) : checker_(destructions) {
    setParameters(ValueMap{{"days", 3}});
  }
  std::optional<URL> url() override { return resourceURL("http://weather.test", "/v1", {}); }

 private:
  DestructionChecker checker_;
};
class WeatherResponse : public QVRouteResponse {
 public:
  using QVRouteResponse::QVRouteResponse;
  std::optional<std::string> sky;
  std::thread::id owner;
  ~WeatherResponse() override { EXPECT_EQ(std::this_thread::get_id(), owner); }

 protected:
  void buildModel() override {
    QVRouteResponse::buildModel();
    sky = read<std::string>("sky");
  }
};
class Weather : public QVBaseService {
 public:
  static auto today(std::shared_ptr<WeatherRequest> request,
                    QVCompletionHandler<WeatherResponse> completionHandler) {
    return call(std::move(request), std::move(completionHandler));
  }
  static auto report(std::shared_ptr<WeatherRequest> request,
                     QVCompletionHandler<WeatherResponse> completionHandler) {
    QVCallSteps<WeatherResponse> steps;
    steps.prepare = [](const auto& proceed) { proceed(); };
    steps.makeHTTPRequest = [request] { return request->postRequest(); };
    return call(std::move(request), std::move(completionHandler), std::move(steps));
  }
};

TEST_F(ServiceTest, FacadeOfAnApplicationUsesThePipelineAndDestroysObjectsOnTheMainThread) {
  constexpr int calls = 300;
  std::atomic<int> destructions{0};
  int delivered = 0;
  server.set("/v1", {200, R"({"sky":"blue","points":[{}]})"});
  for (int i = 0; i < calls; ++i) {
    auto request = std::make_shared<WeatherRequest>(destructions);
    // The handler owns the last reference to its request and, until it returns, to its response.
    auto handler = [&, i, checker = std::make_shared<DestructionChecker>(destructions)](
                       std::shared_ptr<WeatherResponse> response) mutable {
      EXPECT_EQ(response->data().has_value(), !response->isCancelled());
      if (response->data()) {
        EXPECT_EQ(response->sky, "blue");
        EXPECT_EQ(response->route()->points().size(), 1U);
        EXPECT_EQ(response->task()->originalRequest().httpMethod(), i % 2 == 0 ? "POST" : "GET");
      }
      response->owner = mainThread;
      if (i % 3 == 0) response->setRequest(nullptr);
      response.reset();
      ++delivered;
    };
    const auto task = i % 2 == 0 ? Weather::report(std::move(request), std::move(handler))
                                 : Weather::today(std::move(request), std::move(handler));
    if (i < 2) {
      EXPECT_EQ(task == nullptr, i == 1) << "only Weather::today loads the configuration";
    }
    if (task && i % 5 == 0) task->cancel();
    if (i % 7 == 0) MainQueue::main().runPending();
  }
  EXPECT_TRUE(runMainQueueUntil([&] { return delivered == calls; }));
  EXPECT_TRUE(runMainQueueUntil([&] { return destructions == 2 * calls; }));
}

// EXPECT_EXIT forks, so this also tests the session of a child process.
TEST_F(ServiceTest, ProcessMayExitDuringCalls) {
  EXPECT_EXIT(
      {
        static std::atomic<int> destructions{0};
        server.set(routePath, {200, "{}", true});
        loadConfiguration();
        for (int i = 0; i < 20; ++i) {
          QVNavigation::route(routeRequest(),
                              [w = std::make_shared<DestructionChecker>(destructions)](auto&&) {});
          Weather::report(std::make_shared<WeatherRequest>(destructions), [](auto&&) {});
        }
        server.requests(12);
        std::exit(destructions);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ServiceTest, ProcessWideValuesAreThreadSafe) {
  int ended = 0;
  std::vector<std::jthread> threads;
  for (const char letter : {'a', 'b', 'c', 'd'}) {
    threads.emplace_back([&, mine = std::string(36, letter)] {
      for (int i = 0; i < 100; ++i) {
        QuorvelKit::setAccessToken(mine);
        const auto token = QuorvelKit::accessToken();
        EXPECT_EQ(token->find_first_not_of(token->front()), std::string::npos);
        QVBackendless::setUserToken(mine);
        EXPECT_EQ(QVBackendless::userToken().size(), 36U);
        QVBackendless::setBaseURL(QVBackendless::baseURL());
        EXPECT_NE(QVBaseService::sharedSession(), nullptr);
        if (i % 10 == 0) QVConfiguration::setCachedResponse(nullptr);
        QVNavigation::route(routeRequest(), [](const auto&) {});  // may be unsent
        (void)routeRequest()->url();
      }
      MainQueue::main().async([&] { ++ended; });
    });
  }
  EXPECT_TRUE(runMainQueueUntil([&] { return ended == 4; }));
  answerOf<QVRouteResponse>(
      [](const auto& handler) { QVNavigation::route(routeRequest(), handler); });
}

}  // namespace
}  // namespace quorvelkit
