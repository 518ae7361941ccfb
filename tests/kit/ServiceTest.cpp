// SPDX-License-Identifier: Apache-2.0
#include "FakeServer.h"

#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVFind.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelKit/QuorvelKit.h>
#include <QuorvelPlatform/URLError.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace quorvelkit {
namespace {

using test::FakeServer;
using test::runMainQueueUntil;

const std::string routePath = "/v4/route";
const std::string suggestPath = "/api/v1/suggest";

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
}

// What else a failure delivers is in the fault table.
TEST_F(ServiceTest, failureIsNotRetried) {
  server.set(routePath, {500, "out of order"});
  const auto request = routeRequest();
  QVNavigation::route(request, collect());
  ASSERT_TRUE(waitForRoutes(1));
  EXPECT_EQ(request->retryCount(), 0);
  EXPECT_EQ(server.requests().size(), 3U);
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
  EXPECT_EQ(server.paths().find(suggestPath), std::string::npos);
}

TEST_F(ServiceTest, misuseStopsTheProcess) {
  EXPECT_DEATH(QVNavigation::route(nullptr, collect()), "needs a request");
  EXPECT_DEATH(QVFind::suggest(suggestRequest("a"), nullptr), "needs a completion handler");
  EXPECT_DEATH(QVBackendless::login(nullptr, [](const auto&) {}), "needs a request");
  EXPECT_DEATH(QVConfiguration::get(nullptr), "needs a completion handler");
  EXPECT_DEATH(QVBaseService::loadConfiguration(nullptr), "needs a completion handler");
}

TEST_F(ServiceTest, supersededSuggestionsAreCancelled) {
  loadConfiguration();
  server.set(suggestPath, {200, R"({"suggestions":[{"text":"Fells Point"}]})", true});
  std::shared_ptr<URLSessionDataTask> latest;
  std::vector<std::string> seen;
  for (const char* typed : {"f", "fe", "fel", "fell"}) {
    if (latest) latest->cancel();
    latest = QVFind::suggest(suggestRequest(typed), [&](const auto& response) {
      seen.push_back(response->isCancelled() ? "cancelled" : *response->suggestions().at(0).text());
      EXPECT_EQ(response->error().has_value(), response->isCancelled());
      EXPECT_EQ(response->data().has_value(), !response->isCancelled());
    });
  }
  // A task cancelled early enough never reaches the server; the last one does.
  while (server.requests().back().url().absoluteString().find("=fell&") == std::string::npos) {
    server.requests(server.requests().size() + 1);
  }
  server.release();
  ASSERT_TRUE(runMainQueueUntil([&] { return seen.size() == 4; }));
  EXPECT_EQ(std::count(seen.begin(), seen.end(), "cancelled"), 3);
  EXPECT_EQ(seen.back(), "Fells Point");
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
           Row{200, "{}", "", false},
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
  FakeServer::Answer login = server.answer(test::loginPath);
  login.isHeld = true;
  server.set(test::loginPath, login);
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
  std::vector<std::shared_ptr<WeatherResponse>> answers;
  const auto keep = [&](std::shared_ptr<WeatherResponse> response) {
    response->home = mainThread;
    answers.push_back(std::move(response));
  };
  Weather::report(std::make_shared<WeatherRequest>(deaths), keep);
  ASSERT_TRUE(runMainQueueUntil([&] { return answers.size() == 1; }));
  EXPECT_EQ(server.requests().at(0).httpMethod(), "POST");
  Weather::today(std::make_shared<WeatherRequest>(deaths), keep);
  ASSERT_TRUE(runMainQueueUntil([&] { return answers.size() == 2; }));
  EXPECT_EQ(server.requests().size(), 4U);
  EXPECT_EQ(server.requests().back().httpMethod(), "GET");
  EXPECT_EQ(answers[1]->sky, "blue");
  EXPECT_EQ(answers[1]->route()->points().size(), 1U);
  server.set("/v1", {418, ""});
  Weather::today(std::make_shared<WeatherRequest>(deaths), keep);
  ASSERT_TRUE(runMainQueueUntil([&] { return answers.size() == 3; }));
  EXPECT_EQ(answers[2]->error()->domain(), "QuorvelKit.WeatherResponse");
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
  std::vector<std::thread> threads;
  std::atomic<int> delivered{0};
  constexpr int rounds = 100;
  threads.reserve(4);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      const std::string mine(static_cast<std::size_t>(30 + t), static_cast<char>('a' + t));
      for (int i = 0; i < rounds; ++i) {
        QuorvelKit::setAccessToken(mine);
        const auto token = QuorvelKit::accessToken();
        EXPECT_EQ(token->find_first_not_of(token->front()), std::string::npos);
        QVBackendless::setUserToken(mine);
        EXPECT_GE(QVBackendless::userToken().size(), 0U);
        QVBackendless::setBaseURL(QVBackendless::baseURL());
        EXPECT_NE(QVBaseService::sharedSession(), nullptr);
        if (i % 10 == 0) QVConfiguration::setCachedResponse(nullptr);
        QVNavigation::route(routeRequest(), [&](const auto&) { ++delivered; });  // may be unsent
        (void)routeRequest()->url();
      }
    });
  }
  std::atomic<bool> over{false};
  std::thread joiner([&] {
    for (std::thread& thread : threads)
      thread.join();
    over = true;
    MainQueue::main().async([] {});
  });
  EXPECT_TRUE(runMainQueueUntil([&] { return over.load(); }));
  joiner.join();
  QVNavigation::route(routeRequest(), collect());
  EXPECT_TRUE(waitForRoutes(1));
}

}  // namespace
}  // namespace quorvelkit
