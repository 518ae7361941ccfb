// SPDX-License-Identifier: Apache-2.0
// The threads that wait for results and run the main queue.
#include "tests/calls/CallForms.h"

#include <QuorvelPlatform/MainQueueThread.h>
#include <QuorvelPlatform/WakeUpHook.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvelkit {
namespace {

using namespace test;
using namespace std::chrono_literals;

bool isMainQueueThread() { return MainQueue::main().isCurrentThread(); }

TEST(WaitingTest, KnowsTheThreadOfTheMainQueue) {
  const auto onOtherThread = [](const std::function<void()>& function) {
    std::thread(function).join();
  };
  EXPECT_TRUE(isMainQueueThread()) << "It is the initial thread at first.";
  onOtherThread([] { EXPECT_FALSE(isMainQueueThread()); });
  const std::function<void()> runs[] = {
      [] { MainQueue::main().runPending(); },
      [] { MainQueue::main().runOnce(0ms); },
      [] { MainQueue::main().bindToCurrentThread(); },
      [] { const WakeUpHook hook([] {}); },
      [] {
        MainQueue::main().stop();
        MainQueue::main().run();
      },
  };
  for (const auto& run : runs) {
    onOtherThread([&] {
      run();
      EXPECT_TRUE(isMainQueueThread());
      onOtherThread([] { EXPECT_FALSE(isMainQueueThread()); });
    });
    EXPECT_TRUE(isMainQueueThread()) << "The other thread has ended.";
  }
  onOtherThread([] {
    MainQueue::main().bindToCurrentThread();
    const pid_t child = fork();
    if (child == 0) _exit(isMainQueueThread() ? 0 : 1);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << "The only thread of the child.";
  });
}

TEST(WaitingTest, WaitInsideAHandlerRunsOtherHandlers) {
  FakeServer server;
  server.set("/v4/route", {200, twoPoints});
  std::string inner;
  RouteCall outer(QVNavigation::route, routeRequest());
  outer.onResult([&](const RouteResult&) {
    inner = describe(RouteCall(QVNavigation::route, routeRequest()).wait());
  });
  EXPECT_TRUE(runUntil([&] { return !inner.empty(); }));
  EXPECT_EQ(inner, "2 points");
}

TEST(WaitingTest, TimeOutLeavesTheCallRunning) {
  FakeServer server;
  server.set("/v4/route", {200, twoPoints});
  server.hold("/v4/route");
  RouteCall call(QVNavigation::route, routeRequest());
  EXPECT_FALSE(call.waitFor(0ms));
  EXPECT_FALSE(call.waitFor(1ms));
  std::thread([&] { EXPECT_FALSE(call.waitFor(1ms)); }).join();
  runUntil([&] { return server.requests().size() == 3; });
  server.release();
  EXPECT_TRUE(call.waitFor(1h));
}

// A response that waits for another call where it is made: on a thread of the session.
struct WaitingResponse : QVRouteResponse {
  using QVRouteResponse::QVRouteResponse;
  void processResponse() override { RouteCall(QVNavigation::route, routeRequest()).wait(); }
};
struct WaitingFacade : QVBaseService {
  static std::shared_ptr<URLSessionDataTask> route(std::shared_ptr<QVRouteRequest> request,
                                                   QVCompletionHandler<WaitingResponse> handler) {
    return call<WaitingResponse>(std::move(request), std::move(handler));
  }
};

TEST(WaitingTest, RefusesAWaitThatCannotEnd) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  FakeServer server;
  EXPECT_DEATH(QVCall(WaitingFacade::route, routeRequest()).wait(),
               "A thread of the URL session must not wait for a call");
  // Constructed before the session starts, so destroyed after its threads have stopped.
  struct WaitsAtExit {
    std::optional<RouteCall> call;
    ~WaitsAtExit() { call->wait(); }
  };
  EXPECT_DEATH(
      {
        static WaitsAtExit waits;
        server.set("/v4/route", {});
        server.hold("/v4/route");
        waits.call.emplace(QVNavigation::route, routeRequest());
        exit(0);
      },
      "a wait for a call would never end");
}

TEST(WaitingTest, ThreadEndsAfterTheBlockThatDestroysItsObject) {
  auto thread = std::make_unique<MainQueueThread>();
  std::promise<void> destroyed;
  MainQueue::main().async([&] {
    thread.reset();
    destroyed.set_value();
  });
  destroyed.get_future().get();
  EXPECT_TRUE(runUntil(isMainQueueThread));
  MainQueueThread();
}

TEST(WaitingTest, RefusesAWaitInAForkedChild) {
  FakeServer server;
  RouteCall call(QVNavigation::route, routeRequest());
  EXPECT_DEATH(call.wait(), "must not wait for a call of its parent");
}

TEST(WaitingTest, ThreadOfTheLibraryRunsHandlers) {
  FakeServer server;
  server.set("/v4/route", {200, twoPoints});
  std::vector<std::future<RouteResult>> results;
  std::thread::id thread;
  for (int round = 0; round < 2; ++round) {
    const MainQueueThread mainQueue;
    EXPECT_FALSE(isMainQueueThread());
    RouteCall call(QVNavigation::route, routeRequest());
    std::promise<bool> wasOnOwnThread;
    call.onResult([&](const RouteResult&) {
      MainQueue::main().stop();  // Has no effect.
      RouteCall(QVNavigation::route, routeRequest()).wait();
      wasOnOwnThread.set_value(isMainQueueThread());
    });
    EXPECT_EQ(describe(call.future().get()), "2 points");
    EXPECT_TRUE(wasOnOwnThread.get_future().get());
  }
  EXPECT_TRUE(isMainQueueThread()) << "The thread has ended.";
  MainQueue::main().async([] { MainQueue::main().stop(); });
  MainQueue::main().run();
}

TEST(WaitingTest, ThreadOfTheLibraryAtExitAndFork) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  FakeServer server;
  const std::function<void()> exits[] = {
      [] { exit(3); },
      [] { MainQueue::main().async([] { exit(3); }); },
      [&] {  // A handler waits for a call.
        server.set("/v4/route", {});
        server.hold("/v4/route");
        MainQueue::main().async([] { RouteCall(QVNavigation::route, routeRequest()).wait(); });
        while (server.requests(3).size() < 3) {
        }
        exit(3);
      },
  };
  for (const auto& exitNow : exits) {
    EXPECT_EXIT(
        {
          static const MainQueueThread thread;
          for (int i = 0; i < 100; ++i)
            MainQueue::main().async([] { std::this_thread::yield(); });
          exitNow();
          while (true)
            pause();
        },
        testing::ExitedWithCode(3), "");
  }
  EXPECT_EXIT(
      {
        {
          const MainQueueThread thread;
          MainQueue::main().async([] {
            for (int i = 0; i < 1000; ++i)
              std::this_thread::yield();
            exit(3);
          });
        }
        pause();
      },
      testing::ExitedWithCode(3), "")
      << "The destructor waits for the handler that exits.";
  EXPECT_EXIT(
      {
        auto parents = std::make_unique<MainQueueThread>();
        const pid_t child = fork();
        if (child == 0) {
          parents.reset();
          const MainQueueThread own;
          for (int i = 0; i < 10; ++i) {
            std::promise<void> ran;
            MainQueue::main().async([&] { ran.set_value(); });
            ran.get_future().get();
          }
          _exit(0);
        }
        int status = -1;
        waitpid(child, &status, 0);
        parents.reset();
        _exit(status == 0 ? 4 : 5);
      },
      testing::ExitedWithCode(4), "");
  EXPECT_DEATH(
      {
        const MainQueueThread first;
        MainQueueThread();
      },
      "has a MainQueueThread already");
  EXPECT_DEATH(
      {
        const WakeUpHook hook([] {});
        MainQueueThread();
      },
      "has a wake-up hook");
}

TEST(WakeUpHookTest, RestoresThePreviousHookAndCallsNoneAfterItsDestructor) {
  MainQueue& queue = MainQueue::main();
  std::string calls;
  queue.setWakeUpHook([&] { calls += 'a'; });
  {
    const WakeUpHook second([&] { calls += 'b'; });
    queue.async([] {});
    EXPECT_EQ(calls, "b");
  }
  EXPECT_EQ(calls, "ba") << "A block waits for the previous hook.";
  queue.runPending();
  queue.async([] {});
  EXPECT_EQ(calls, "baa");
  auto replaced = std::make_unique<WakeUpHook>([&] { calls += 'c'; });
  queue.setWakeUpHook([&] { calls += 'd'; });
  replaced.reset();
  queue.runPending();
  queue.async([] {});
  EXPECT_EQ(calls, "baacdd") << "The destructor keeps a hook of somebody else.";
  queue.setWakeUpHook(nullptr);
  queue.runPending();
}

}  // namespace
}  // namespace quorvelkit
