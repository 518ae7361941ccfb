// SPDX-License-Identifier: Apache-2.0
#include "FakeServer.h"

#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelKit/QuorvelKit.h>

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

  // Makes a call with a handler, and waits for what that is given: later, on the main thread.
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

// What failures deliver, and what stays silent, is in the fault table.
TEST_F(ServiceTest, firstCallLogsInLoadsTheConfigurationAndAsks) {
  const auto request = routeRequest();
  std::shared_ptr<URLSessionDataTask> task;
  const auto ask = [&](const auto& handler) { task = QVNavigation::route(request, handler); };
  const auto first = answerOf<QVRouteResponse>(ask);
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

  const auto second = answerOf<QVRouteResponse>(ask);
  ASSERT_NE(task, nullptr);
  EXPECT_EQ(second->task(), task);
  EXPECT_EQ(second->request(), request);
  EXPECT_EQ(server.requests().size(), 4U);

  server.set(routePath, {500, "out of order"});
  EXPECT_TRUE(answerOf<QVRouteResponse>(ask)->error());
  EXPECT_EQ(request->retryCount(), 0);
  EXPECT_EQ(server.requests().size(), 5U) << "it was tried again";
}

// --- login and configuration

// That a failed login leaves no token is in the fault table.
TEST_F(ServiceTest, loginKeepsATokenOf36CharactersOnly) {
  std::string letters;
  for (int i = 0; i < 36; ++i)
    letters += "é";
  const auto good = [](const std::string& token) { return "{\"user-token\":\"" + token + "\"}"; };
  const std::string x35(35, 'x');
  const std::tuple<int, std::string, std::string, bool> cases[] = {
      {200, good(test::token36), test::token36, true},
      {200, good(letters), letters, true},
      {200, good(x35), x35, false},
      {200, good(x35 + "xx"), x35 + "xx", false},
      {200, R"({"objectId":1,"user-token":123456})", "", false},
      {500, good(x35), x35, false}};
  for (const auto& [status, body, token, isHeld] : cases) {
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
    EXPECT_EQ(task == nullptr, isHeld);
    EXPECT_EQ(second->request(), request);
    EXPECT_EQ(second->data().has_value(), !isHeld);
    EXPECT_EQ(QVBackendless::userToken(), token);
    EXPECT_EQ(server.requests().size(), before + (isHeld ? 1 : 2));
  }
}

TEST_F(ServiceTest, configurationIsCachedEvenWhenItFailed) {
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

TEST_F(ServiceTest, racingFirstCallsEachLoadTheConfiguration) {
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
  EXPECT_EQ(server.requests().size(), 7U) << "the token was held: only the file is fetched";
}

// --- an application's own facade, and what dies where

// Notes on which thread it dies.
struct Witness {
  std::atomic<int>* deaths;
  std::thread::id home = std::this_thread::get_id();
  explicit Witness(std::atomic<int>& count) : deaths(&count) {}
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() {
    EXPECT_EQ(std::this_thread::get_id(), home);
    ++*deaths;
  }
};

class WeatherRequest : public QVBaseRequest {
 public:
  explicit WeatherRequest(std::atomic<int>& deaths) : witness_(deaths) {
    setParameters(ValueMap{{"days", 3}});
  }
  std::optional<URL> url() override { return resourceURL("http://weather.test", "/v1", {}); }

 private:
  Witness witness_;
};
class WeatherResponse : public QVRouteResponse {
 public:
  using QVRouteResponse::QVRouteResponse;
  std::optional<std::string> sky;
  std::thread::id home;
  ~WeatherResponse() override { EXPECT_EQ(std::this_thread::get_id(), home); }

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
    QVCallDifferences<WeatherResponse> differences;
    differences.before = [](const auto& goOn) { goOn(); };
    differences.httpRequest = [request] { return request->postRequest(); };
    return call(std::move(request), std::move(completionHandler), std::move(differences));
  }
};

TEST_F(ServiceTest, carriesAnApplicationsOwnFacade) {
  std::atomic<int> deaths{0};
  server.set("/v1", {200, R"({"sky":"blue","points":[{}]})"});
  const auto weatherOf = [&](const auto& call) {
    const auto answer = answerOf<WeatherResponse>(
        [&](const auto& handler) { call(std::make_shared<WeatherRequest>(deaths), handler); });
    answer->home = mainThread;
    return answer;
  };
  weatherOf(Weather::report);
  EXPECT_EQ(server.requests().at(0).httpMethod(), "POST");
  const auto answer = weatherOf(Weather::today);
  EXPECT_EQ(server.requests().size(), 4U);
  EXPECT_EQ(server.requests().back().httpMethod(), "GET");
  EXPECT_EQ(answer->sky, "blue");
  EXPECT_EQ(answer->route()->points().size(), 1U);
  server.set("/v1", {418, ""});
  EXPECT_EQ(weatherOf(Weather::today)->error()->domain(), "QuorvelKit.WeatherResponse");
}

TEST_F(ServiceTest, everythingOfTheApplicationDiesOnTheMainThread) {
  constexpr int calls = 300;
  std::atomic<int> deaths{0};
  int delivered = 0;
  server.set("/v1", {200, "{}"});
  for (int i = 0; i < calls; ++i) {
    auto request = std::make_shared<WeatherRequest>(deaths);
    // The handler owns the last reference to itself, its request and, when it ends, its response.
    auto handler = [&, i, witness = std::make_shared<Witness>(deaths)](
                       std::shared_ptr<WeatherResponse> response) mutable {
      EXPECT_EQ(response->data().has_value(), !response->isCancelled());
      response->home = mainThread;
      if (i % 3 == 0) response->setRequest(nullptr);
      response.reset();
      ++delivered;
    };
    const auto task = i % 2 == 0 ? Weather::report(std::move(request), std::move(handler))
                                 : Weather::today(std::move(request), std::move(handler));
    if (task && i % 5 == 0) task->cancel();
    if (i % 7 == 0) MainQueue::main().runPending();
  }
  EXPECT_TRUE(runMainQueueUntil([&] { return delivered == calls; }));
  EXPECT_TRUE(runMainQueueUntil([&] { return deaths == 2 * calls; }));
}

// Also in a child made by fork, as this is one: it has a session of its own.
TEST_F(ServiceTest, processMayEndWithCallsUnderWay) {
  EXPECT_EXIT(
      {
        static std::atomic<int> deaths{0};
        server.set(routePath, {200, "{}", true});
        loadConfiguration();
        for (int i = 0; i < 20; ++i) {
          QVNavigation::route(routeRequest(), [w = std::make_shared<Witness>(deaths)](auto&&) {});
          Weather::report(std::make_shared<WeatherRequest>(deaths), [](auto&&) {});
        }
        server.requests(12);
        std::exit(deaths);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ServiceTest, processWideValuesStandUpToManyThreads) {
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
