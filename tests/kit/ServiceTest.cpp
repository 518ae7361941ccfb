// SPDX-License-Identifier: Apache-2.0
#include "FakeServer.h"

#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVFind.h>
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
auto suggestRequest(std::string text) {
  return std::make_shared<QVSuggestRequest>(std::move(text), Coordinate{1, 2});
}

// A server, and a place for the responses of route calls.
class ServiceTest : public testing::Test {
 protected:
  FakeServer server;
  std::vector<std::shared_ptr<QVRouteResponse>> routes;
  const std::thread::id mainThread = std::this_thread::get_id();

  ServiceTest() { server.set(routePath, {200, R"({"points":[{"node":1}]})"}); }

  auto collect() {
    return [this](std::shared_ptr<QVRouteResponse> response) {
      EXPECT_EQ(std::this_thread::get_id(), mainThread);
      routes.push_back(std::move(response));
    };
  }
  bool waitForRoutes(std::size_t count) {
    return runMainQueueUntil([&] { return routes.size() >= count; });
  }
  void loadConfiguration() {
    bool loaded = false;
    QVBaseService::loadConfiguration([&] { loaded = true; });
    ASSERT_TRUE(runMainQueueUntil([&] { return loaded; }));
  }
};

TEST_F(ServiceTest, firstCallLogsInLoadsTheConfigurationAndAsks) {
  const auto request = routeRequest();
  EXPECT_EQ(QVNavigation::route(request, collect()), nullptr);
  ASSERT_TRUE(waitForRoutes(1));
  EXPECT_EQ(routes[0]->route()->points().size(), 1U);
  EXPECT_EQ(routes[0]->request(), request);
  EXPECT_EQ(routes[0]->task()->state(), URLSessionDataTask::State::completed);
  EXPECT_EQ(server.paths(),
            test::loginPath + ' ' + test::configurationPath + ' ' + routePath + ' ');
  EXPECT_EQ(server.requests()[1].value("user-token"), test::token36);
  EXPECT_EQ(server.requests()[2].value("user-token"), std::nullopt);

  const auto task = QVNavigation::route(request, collect());
  ASSERT_NE(task, nullptr);
  EXPECT_EQ(routes.size(), 1U) << "delivered inside the call";
  ASSERT_TRUE(waitForRoutes(2));
  EXPECT_EQ(routes[1]->task(), task);
  EXPECT_EQ(routes[1]->request(), request);
  EXPECT_EQ(server.requests().size(), 4U);
  EXPECT_EQ(QVBaseService::sharedSession(), QVBaseService::sharedSession());

  // What else a failure delivers is in the fault table.
  server.set(routePath, {500, "out of order"});
  QVNavigation::route(request, collect());
  ASSERT_TRUE(waitForRoutes(3));
  EXPECT_EQ(request->retryCount(), 0);
  EXPECT_EQ(server.requests().size(), 5U) << "it was tried again";
}

TEST_F(ServiceTest, requestWithoutAddressEndsSilently) {
  const auto dropped = std::make_shared<int>();
  const auto never = [dropped](const auto&) { ADD_FAILURE() << "the handler ran"; };
  // The first while the configuration is on its way, the second with it at hand.
  EXPECT_EQ(QVFind::suggest(suggestRequest("two words"), never), nullptr);
  loadConfiguration();
  EXPECT_EQ(QVFind::suggest(suggestRequest("two words"), never), nullptr);
  QVNavigation::route(routeRequest(), collect());
  ASSERT_TRUE(waitForRoutes(1));
  ASSERT_TRUE(runMainQueueUntil([&] { return dropped.use_count() == 2; }));
  EXPECT_EQ(server.paths().find("suggest"), std::string::npos);
}

// --- login and configuration

TEST_F(ServiceTest, loginKeepsATokenOf36CharactersOnly) {
  struct Row {
    int status;
    std::string body, token;
    bool isHeld;
  };
  std::string letters;
  for (int i = 0; i < 36; ++i)
    letters += "é";
  const auto good = [](const std::string& token) { return "{\"user-token\":\"" + token + "\"}"; };
  const std::string x35(35, 'x');
  for (const auto& [status, body, token, isHeld] : {
           Row{200, good(test::token36), test::token36, true},
           Row{200, good(letters), letters, true},
           Row{200, good(x35), x35, false},
           Row{200, good(x35 + "xx"), x35 + "xx", false},
           Row{200, R"({"objectId":1,"user-token":123456})", "", false},
           Row{200, "", "", false},
           Row{401, R"({"code":3003,"message":"Invalid login or password"})", "", false},
           Row{502, "<html>Bad Gateway</html>", "", false},
           Row{500, good(x35), x35, false},
       }) {
    QVBackendless::setUserToken("stale");
    server.set(test::loginPath, {status, body});
    const auto before = server.requests().size();
    std::shared_ptr<QVLoginResponse> answer;
    const auto keep = [&](std::shared_ptr<QVLoginResponse> response) {
      EXPECT_EQ(std::this_thread::get_id(), mainThread);
      answer = std::move(response);
    };
    EXPECT_NE(QVBackendless::login(keep), nullptr);
    ASSERT_TRUE(runMainQueueUntil([&] { return answer != nullptr; }));
    EXPECT_EQ(answer->error().has_value(), status >= 400) << body;
    EXPECT_EQ(QVBackendless::userToken(), token);

    answer = nullptr;
    const auto request = std::make_shared<QVLoginRequest>();
    EXPECT_EQ(QVBackendless::login(request, keep) == nullptr, isHeld) << body;
    EXPECT_EQ(answer, nullptr) << "delivered inside the call";
    ASSERT_TRUE(runMainQueueUntil([&] { return answer != nullptr; }));
    EXPECT_EQ(answer->request(), request);
    EXPECT_EQ(answer->data().has_value(), !isHeld);
    EXPECT_EQ(QVBackendless::userToken(), token);
    EXPECT_EQ(server.requests().size(), before + (isHeld ? 1 : 2));
  }
}

TEST_F(ServiceTest, configurationIsCachedEvenWhenItFailed) {
  const std::string refused = R"({"code":3048,"message":"Invalid token"})";
  server.set(test::loginPath, {401, "{}"});
  server.set(test::configurationPath, {401, refused});
  std::shared_ptr<QVConfigurationResponse> first;
  EXPECT_EQ(QVConfiguration::cachedResponse(), nullptr);
  EXPECT_EQ(QVConfiguration::get([&](auto response) { first = std::move(response); }), nullptr);
  ASSERT_TRUE(runMainQueueUntil([&] { return first != nullptr; }));
  EXPECT_EQ(server.requests()[1].value("user-token"), "");
  EXPECT_EQ(first->error()->localizedDescription(), refused);
  EXPECT_EQ(QVConfiguration::cachedResponse(), first);

  server.set(test::loginPath, {200, "{}"});
  bool delivered = false;
  std::thread([&] {
    EXPECT_EQ(QVConfiguration::get([&, caller = std::this_thread::get_id()](const auto& response) {
                EXPECT_EQ(std::this_thread::get_id(), caller);
                EXPECT_EQ(response, first);
                delivered = true;
              }),
              nullptr);
    EXPECT_TRUE(delivered) << "not delivered inside the call";
  }).join();
  EXPECT_EQ(server.requests().size(), 2U);
  EXPECT_EQ(routeRequest()->url(), std::nullopt);
}

TEST_F(ServiceTest, racingFirstCallsEachLoadTheConfiguration) {
  server.hold(test::loginPath);
  QVNavigation::route(routeRequest(), collect());
  QVNavigation::route(routeRequest(), collect());
  server.requests(2);
  server.release();
  ASSERT_TRUE(waitForRoutes(2));
  EXPECT_EQ(server.requests().size(), 6U);
  EXPECT_EQ(routes[0]->error(), std::nullopt);

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
  const auto answerOf = [&](const auto& call) {
    std::shared_ptr<WeatherResponse> answer;
    call(std::make_shared<WeatherRequest>(deaths), [&](auto response) {
      response->home = mainThread;
      answer = std::move(response);
    });
    EXPECT_TRUE(runMainQueueUntil([&] { return answer != nullptr; }));
    return answer;
  };
  answerOf(Weather::report);
  EXPECT_EQ(server.requests().at(0).httpMethod(), "POST");
  const auto answer = answerOf(Weather::today);
  EXPECT_EQ(server.requests().size(), 4U);
  EXPECT_EQ(server.requests().back().httpMethod(), "GET");
  EXPECT_EQ(answer->sky, "blue");
  EXPECT_EQ(answer->route()->points().size(), 1U);
  server.set("/v1", {418, ""});
  EXPECT_EQ(answerOf(Weather::today)->error()->domain(), "QuorvelKit.WeatherResponse");
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
  QVNavigation::route(routeRequest(), collect());
  EXPECT_TRUE(waitForRoutes(1));
}

}  // namespace
}  // namespace quorvelkit
