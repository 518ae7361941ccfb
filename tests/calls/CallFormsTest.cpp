// SPDX-License-Identifier: Apache-2.0
// Each outcome of a call in each form of waiting.
#include "tests/calls/CallForms.h"
#include "tests/support/ManualScheduler.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVFind.h>

#include <gtest/gtest.h>

#include <random>

namespace quorvelkit {
namespace {

using namespace test;
using namespace std::chrono_literals;

struct Outcome {
  const char* name;
  std::string expected;
  std::size_t requests;  // that are sent, login and configuration included
  std::function<void(FakeServer& server)> prepare = [](FakeServer&) {};
  // Runs after the start of the call.
  std::function<void(FakeServer& server, RouteCall& call)> act = [](FakeServer&, RouteCall&) {};
};

// A facade of an application. It replaces the loading of the configuration.
struct OwnFacade : QVBaseService {
  static std::shared_ptr<URLSessionDataTask> proceeding(
      std::shared_ptr<QVRouteRequest> request, QVCompletionHandler<QVRouteResponse> handler) {
    return call<QVRouteResponse>(std::move(request), std::move(handler),
                                 {.prepare = [](const auto& proceed) { proceed(); },
                                  .makeHTTPRequest = nullptr,
                                  .inspectResponse = nullptr});
  }
  static std::shared_ptr<URLSessionDataTask> dropping(
      std::shared_ptr<QVRouteRequest> request, QVCompletionHandler<QVRouteResponse> handler) {
    return call<QVRouteResponse>(
        std::move(request), std::move(handler),
        {.prepare = [](const auto&) {}, .makeHTTPRequest = nullptr, .inspectResponse = nullptr});
  }
};

class CallFormsTest : public testing::Test {
 protected:
  static constexpr auto cancelled = "QuorvelKit.URLError -999";
  static constexpr auto timedOut = "QuorvelKit.URLError -1001";

  // Every test case begins like a new process.
  void reset() {
    QVConfiguration::setCachedResponse(nullptr);
    QVBackendless::setUserToken("");
    QVBackendless::setBaseURL("http://backend.test");
    server.clearRequests();
    server.set(loginPath, {200, R"({"user-token":")" + token36 + "\"}"});
    server.set(configurationPath, {200, roots("http://nav.test", "http://find.test")});
    server.set("/v4/route", {200, twoPoints});
    scheduler = std::make_shared<ManualScheduler>();
    stop = std::stop_source();
  }
  QVCallOptions options() const {
    return with({.deadline = 10s, .stopToken = stop.get_token(), .scheduler = scheduler});
  }
  // Waits in each form for each outcome.
  template <class Facade>
  void run(const std::vector<Outcome>& outcomes, Facade facade) {
    for (const Form& form : forms) {
      for (const Outcome& outcome : outcomes) {
        SCOPED_TRACE(std::string(outcome.name) + ", " + form.name);
        reset();
        outcome.prepare(server);
        RouteCall call(facade, routeRequest(), options());
        outcome.act(server, call);
        EXPECT_EQ(describe(form.resultOf(call)), outcome.expected);
        // What happens after the result does not change it.
        scheduler->advance(1h);
        stop.request_stop();
        call.cancel();
        server.release();
        // A login or a load of the configuration that was running continues.
        if (outcome.requests > 1)
          runUntil([] { return QVConfiguration::cachedResponse() != nullptr; });
        MainQueue::main().runPending();
        EXPECT_EQ(describe(*call.result()), outcome.expected);
        EXPECT_EQ(server.requests().size(), outcome.requests);
        EXPECT_EQ(scheduler->waiting(), 0U);
      }
    }
  }

  FakeServer server;
  std::shared_ptr<ManualScheduler> scheduler;
  std::stop_source stop;
};

TEST_F(CallFormsTest, EveryOutcomeInEveryForm) {
  const auto configurationIs = [](int status, std::string body) {
    return [=](FakeServer& fake) { fake.set(configurationPath, {status, body}); };
  };
  const auto holding = [](const std::string& path) {
    return [path](FakeServer& fake) { fake.hold(path); };
  };
  const auto cancelAfter = [](std::size_t requests) {
    return [requests](FakeServer& fake, RouteCall& call) {
      runUntil([&] { return fake.requests().size() >= requests; });
      call.cancel();
    };
  };
  const auto stopAfter = [this](std::size_t requests) {
    return [this, requests](FakeServer& fake, RouteCall&) {
      runUntil([&] { return fake.requests().size() >= requests; });
      stop.request_stop();
    };
  };
  const auto deadlineAfter = [this](std::size_t requests) {
    return [this, requests](FakeServer& fake, RouteCall&) {
      runUntil([&] { return fake.requests().size() >= requests; });
      scheduler->advance(9s);
      MainQueue::main().runPending();
      scheduler->advance(1s);
    };
  };
  const std::string brokenRoots = roots("http://nav test", "http://find.test");
  const std::vector<Outcome> outcomes = {
      {"good answer", "2 points", 3},
      {"HTTP error", "QuorvelKit.QVRouteResponse 500", 3,
       [](FakeServer& fake) {
         fake.set("/v4/route", {500, "no"});
       }},
      {"transport error", "QuorvelKit.URLError -1009", 3,
       [](FakeServer& fake) {
         fake.set("/v4/route", {0, ""});
       }},
      {"stopped before the start", cancelled, 0, [this](FakeServer&) { stop.request_stop(); }},
      {"cancelled after the start", cancelled, 2, [](FakeServer&) {}, cancelAfter(0)},
      {"cancelled in the login", cancelled, 2, holding(loginPath), cancelAfter(1)},
      {"cancelled while the configuration is loaded", cancelled, 2, holding(configurationPath),
       cancelAfter(2)},
      {"cancelled in the transfer", cancelled, 3, holding("/v4/route"), cancelAfter(3)},
      {"stopped while the configuration is loaded", cancelled, 2, holding(configurationPath),
       stopAfter(2)},
      {"stopped in the transfer", cancelled, 3, holding("/v4/route"), stopAfter(3)},
      {"deadline in the login", timedOut, 2, holding(loginPath), deadlineAfter(1)},
      {"deadline in the transfer", timedOut, 3, holding("/v4/route"), deadlineAfter(3)},
      {"base URL that does not parse", "The base URL of the backend is not usable.", 0,
       [](FakeServer&) { QVBackendless::setBaseURL("127.0.0.1:8080"); }},
      {"failed configuration", "The configuration could not be loaded: closed", 2,
       configurationIs(500, "closed")},
      {"failed configuration without a body", "The configuration could not be loaded: error 500", 2,
       configurationIs(500, "")},
      {"configuration without the root URL",
       "The configuration does not name the server for this request.", 2,
       configurationIs(200, "{}")},
      {"root URL that makes no URL", "The request has no valid URL.", 2,
       configurationIs(200, brokenRoots)},
  };
  run(outcomes, &QVNavigation::route);
}

TEST_F(CallFormsTest, OwnFacadesHaveEveryForm) {
  run({{"no configuration", "No configuration is loaded.", 0},
       {"configuration", "2 points", 1,
        [](FakeServer&) { configure(roots("http://nav.test", "http://find.test")); }}},
      &OwnFacade::proceeding);
  run({{"dropped handler", "The completion handler of the call was dropped.", 0,
        [](FakeServer&) { configure(roots("http://nav.test", "http://find.test")); }}},
      &OwnFacade::dropping);
}

// Facades with overloads, functions that are no facades, and all classes of responses.
TEST_F(CallFormsTest, StartsEveryCallOfTheLibrary) {
  reset();
  server.set("/api/v1/suggest", {200, R"({"suggestions":[{"text":"a"}]})"});
  EXPECT_TRUE(QVCall(QVBackendless::login, std::make_shared<QVLoginRequest>()).wait());
  EXPECT_TRUE(QVCall(QVConfiguration::get, std::make_shared<QVConfigurationRequest>()).wait());
  EXPECT_TRUE(QVCall(QVConfiguration::get, std::make_shared<QVConfigurationRequest>()).wait());
  const auto request = std::make_shared<QVSuggestRequest>("a", Coordinate{1, 2});
  EXPECT_EQ(QVCall(QVFind::suggest, request).wait()->suggestions().size(), 1U);
  const QVCall<QVSuggestResponse> byFunction(
      [&](auto handler) { QVFind::suggest(request, std::move(handler)); });
  EXPECT_TRUE(resultOfFuture(RouteCall(QVNavigation::route, routeRequest()).future()));
  EXPECT_TRUE(byFunction.result());
  // A function may call its handler on another thread.
  std::jthread other;
  const auto response = RouteCall(QVNavigation::route, routeRequest()).wait().response();
  RouteCall late([&](auto handler) { other = std::jthread([=] { handler(response); }); });
  bool wasOnMainQueue = false;
  late.onResult([&](const RouteResult&) { wasOnMainQueue = MainQueue::main().isCurrentThread(); });
  EXPECT_EQ(late.wait().response(), response);
  EXPECT_TRUE(runUntil([&] { return wasOnMainQueue; }));
  // A function that keeps its handler for ever still has a deadline.
  QVCompletionHandler<QVRouteResponse> kept;
  RouteCall endless([&](auto handler) { kept = std::move(handler); }, options());
  scheduler->advance(10s);
  EXPECT_EQ(describe(endless.wait()), timedOut);
}

// GCC 12 destroys some temporaries of a co_await expression twice: aggregates, and lambdas with
// captures. The scheduler counts the references to the options of each call.
QVCallOptions scheduledBy(std::shared_ptr<ManualScheduler> scheduler) {
  return with({.deadline = 5s, .retry = QVRetryPolicy(), .scheduler = scheduler});
}
Coroutine awaitTemporaries(std::shared_ptr<ManualScheduler> scheduler, int& ended) {
  EXPECT_TRUE(co_await QVCall(QVNavigation::route, routeRequest()));
  EXPECT_TRUE(co_await QVCall(QVNavigation::route, routeRequest(), QVDeadline(1h)));
  EXPECT_TRUE(co_await QVCall(QVNavigation::route, routeRequest(), scheduledBy(scheduler)));
  const QVExecutor executor = [scheduler](auto resume) { MainQueue::main().async(resume); };
  EXPECT_TRUE(co_await QVCall(QVNavigation::route, routeRequest(), scheduledBy(scheduler))
                  .resumingOn(executor));
  const QVCallOptions options = scheduledBy(scheduler);
  EXPECT_TRUE(co_await QVCall(QVNavigation::route, routeRequest(), options));
  const RouteCall call(QVNavigation::route, routeRequest(), options);
  EXPECT_TRUE(co_await call);
  const auto awaiter = call.resumingOn(nullptr);
  EXPECT_TRUE(co_await call);
  ++ended;
}

TEST_F(CallFormsTest, CoroutinesDestroyTheirTemporariesOnce) {
  reset();
  int ended = 0;
  awaitTemporaries(scheduler, ended);
  EXPECT_TRUE(runUntil([&] { return ended == 1; }));
  MainQueue::main().runPending();
  EXPECT_EQ(scheduler.use_count(), 1);
}

QVCallOptions abandonable(bool isAbandonable = true) {
  return with({.cancelsWhenAbandoned = isAbandonable});
}

TEST_F(CallFormsTest, DestroyedCoroutineIsNotResumed) {
  for (const bool isAbandonable : {false, true}) {
    reset();
    server.hold("/v4/route");
    std::weak_ptr<int> owner;
    const Coroutine waiting = [](std::weak_ptr<int>& weak, bool cancels) -> Coroutine {
      const auto owned = std::make_shared<int>(1);
      weak = owned;
      co_await QVCall(QVNavigation::route, routeRequest(), abandonable(cancels));
      ADD_FAILURE() << "The coroutine was destroyed.";
    }(owner, isAbandonable);
    runUntil([&] { return server.requests().size() == 3; });
    waiting.handle.destroy();
    EXPECT_TRUE(owner.expired());
    // Ends after the result of the destroyed coroutine.
    QVConfiguration::setCachedResponse(nullptr);
    server.release();
    EXPECT_TRUE(QVCall(QVConfiguration::get, std::make_shared<QVConfigurationRequest>()).wait());
  }
}

TEST_F(CallFormsTest, CancelsWhenTheLastHandleIsDestroyed) {
  reset();
  configure(roots("http://nav.test", "http://find.test"));
  server.hold("/v4/route");
  std::shared_ptr<URLSessionDataTask> task;
  const auto facade = [&](auto handler) {
    task = QVNavigation::route(routeRequest(), std::move(handler));
  };
  std::future<RouteResult> future;
  {
    RouteCall call(facade, abandonable());
    future = call.future();
    const RouteCall copy = call;
  }
  EXPECT_TRUE(runUntil([&] { return server.requests().size() == 1; }));
  EXPECT_EQ(task->state(), URLSessionDataTask::State::running) << "The future waits.";
  server.release();
  EXPECT_TRUE(resultOfFuture(std::move(future)));
  server.hold("/v4/route");
  std::optional<RouteCall> last(std::in_place, facade, abandonable());
  std::optional<RouteCall> copy = last;
  last.reset();
  EXPECT_EQ(task->state(), URLSessionDataTask::State::running) << "A copy exists.";
  copy.reset();
  EXPECT_NE(task->state(), URLSessionDataTask::State::running);
}

TEST_F(CallFormsTest, ExceptionInOneHandlerKeepsTheOthers) {
  reset();
  const RouteCall call(QVNavigation::route, routeRequest());
  int ran = 0;
  for (int i = 0; i < 3; ++i) {
    call.onResult([&, i](const RouteResult&) {
      ++ran;
      if (i < 2) throw std::runtime_error("handler");
    });
  }
  for (int thrown = 0; ran < 3;) {
    try {
      ASSERT_TRUE(runUntil([&] { return ran == 3; }));
    } catch (const std::runtime_error&) {
      ASSERT_LE(++thrown, 2);
    }
  }
}

// Calls in all forms, cancelled by other threads, by deadlines and by dropped handles.
TEST_F(CallFormsTest, ThousandCallsAtRandomMoments) {
  reset();
  constexpr int threads = 4, each = 250;
  std::atomic<int> ended = 0;
  {
    std::vector<std::jthread> workers;
    for (unsigned t = 0; t < threads; ++t) {
      workers.emplace_back([&, t] {
        std::minstd_rand random(t + 1);
        std::vector<std::jthread> cancellers;
        for (int i = 0; i < each; ++i) {
          std::stop_source source;
          RouteCall call(QVNavigation::route, routeRequest(),
                         with({.deadline = std::chrono::microseconds(random() % 3000),
                               .stopToken = source.get_token(),
                               .cancelsWhenAbandoned = random() % 2 == 0,
                               .retry = QVRetryPolicy()}));
          if (random() % 8 == 0) QVConfiguration::setCachedResponse(nullptr);
          if (random() % 4 == 0) cancellers.emplace_back([call]() mutable { call.cancel(); });
          if (random() % 4 == 0) cancellers.emplace_back([source] { source.request_stop(); });
          switch (random() % 4) {
            case 0: call.wait(); break;
            case 1: call.future().wait(); break;
            case 2: call.onResult([&](const RouteResult&) { ++ended; }); continue;
            default:
              [](RouteCall awaited, std::atomic<int>& count) -> Coroutine {
                co_await awaited;
                ++count;
              }(call, ended);
              continue;
          }
          ++ended;
        }
        cancellers.clear();
      });
    }
    EXPECT_TRUE(runUntil([&] { return ended == threads * each; }));
  }
}

}  // namespace
}  // namespace quorvelkit
