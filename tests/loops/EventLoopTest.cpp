// SPDX-License-Identifier: Apache-2.0
#include QUORVELKIT_TESTS_LOOP
#include "tests/kit/FakeServer.h"
#include "tests/support/Awaited.h"

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/QVNavigation.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace quorvelkit::test {
namespace {

// This program tests the adapter of one event loop.
template <class Loop>
class EventLoopTest : public testing::Test {
 protected:
  ~EventLoopTest() override {
    adapter.reset();
    EXPECT_FALSE(queue.hasWakeUpHook());
  }

  void add(int number) {
    queue.async([this, number] { ran.push_back(number); });
  }
  void addStop() {
    queue.async([this] { loop->stop(); });
  }
  // Keeps the queue busy until the loop has run an event of its own.
  void addUntilStopped() {
    if (!isStopped) queue.async([this] { addUntilStopped(); });
  }
  void stopByEvent() {
    isStopped = false;
    loop->later([this] {
      isStopped = true;
      loop->stop();
    });
  }

  MainQueue& queue = MainQueue::main();
  std::unique_ptr<Loop> loop = std::make_unique<Loop>();
  std::unique_ptr<typename Loop::Adapter> adapter;
  std::vector<int> ran;
  bool isStopped = false;
};

struct Names {
  template <class Loop>
  static std::string GetName(int /*index*/) {
    return Loop::name;
  }
};
TYPED_TEST_SUITE(EventLoopTest, testing::Types<Loop>, Names);

TYPED_TEST(EventLoopTest, RunsBlocksInOrderBetweenItsOwnEvents) {
  this->add(1);
  this->queue.async([&] { this->add(3); });
  this->adapter = this->loop->attach();
  this->add(2);
  this->addUntilStopped();
  this->stopByEvent();
  this->loop->run();
  this->addStop();
  this->loop->run();
  EXPECT_EQ(this->ran, (std::vector{1, 2, 3}));
}

TYPED_TEST(EventLoopTest, IsWokenByOtherThreads) {
  this->adapter = this->loop->attach();
  std::jthread thread([&] {
    for (int round = 0; round < 100; ++round) {
      const Awaited<std::thread::id> ranOn;
      this->queue.async([ranOn] { ranOn.set(std::this_thread::get_id()); });
      EXPECT_NE(ranOn.get(), std::this_thread::get_id());
    }
    this->addStop();
  });
  this->loop->run();
}

TYPED_TEST(EventLoopTest, KeepsOrderOfEachThreadWhileAdaptersAreReplaced) {
  this->adapter = this->loop->attach();
  constexpr int threads = 4, each = 250;
  std::vector<int> last(threads, -1);
  int count = 0;
  std::vector<std::jthread> senders;
  for (std::size_t t = 0; t < threads; ++t) {
    senders.emplace_back([&, t] {
      for (int i = 0; i < each; ++i) {
        this->queue.async([&, t, i] {
          EXPECT_EQ(std::exchange(last[t], i), i - 1);
          ++count;
          if (count % 50 == 0) {
            this->adapter.reset();
            this->adapter = this->loop->attach();
          }
          if (count == threads * each) this->loop->stop();
        });
      }
    });
  }
  this->loop->run();
  EXPECT_EQ(count, threads * each);
}

TYPED_TEST(EventLoopTest, LoopInsideBlockRunsBlocksThatFollow) {
  if constexpr (TypeParam::nests) {
    this->adapter = this->loop->attach();
    this->add(1);
    this->queue.async([&] {
      this->loop->run();  // until block 3
      this->add(4);
      this->addStop();
    });
    this->add(2);
    this->queue.async([&] {
      this->add(3);
      this->addStop();
      this->loop->run();
      this->loop->stop();
    });
    this->loop->run();
    EXPECT_EQ(this->ran, (std::vector{1, 2, 3, 4}));
  }
}

TYPED_TEST(EventLoopTest, DestroyedAdapterLeavesBlocksToTheEarlierOneOrInTheQueue) {
  this->adapter = this->loop->attach();
  auto second = this->loop->attach();
  this->add(1);
  second.reset();
  this->addStop();
  this->loop->run();
  EXPECT_EQ(this->ran, std::vector{1});

  this->queue.async([&] {
    this->adapter.reset();
    this->stopByEvent();
  });
  this->loop->run();
  EXPECT_FALSE(this->queue.hasWakeUpHook());
  this->adapter = this->loop->attach();
  this->add(2);
  this->adapter.reset();
  this->stopByEvent();
  this->loop->run();
  EXPECT_EQ(this->ran, std::vector{1});
  this->adapter = this->loop->attach();
  this->addStop();
  this->loop->run();
  EXPECT_EQ(this->ran, (std::vector{1, 2}));
}

TYPED_TEST(EventLoopTest, LoopMayEndBeforeAdapter) {
  if constexpr (TypeParam::mayEndFirst) {
    this->adapter = this->loop->attach();
    {
      const std::jthread thread([&] {
        for (int i = 0; i < 1000; ++i) {
          this->add(i);
          this->queue.runPending();  // The next block calls the hook again.
        }
      });
      this->loop.reset();
    }
    this->add(1000);
    this->adapter.reset();
    this->queue.runPending();
    EXPECT_EQ(this->ran.size(), 1001U);
  }
}

TYPED_TEST(EventLoopTest, ExceptionLeavesTheLoopOrEndsTheProcess) {
  if constexpr (TypeParam::passesExceptions.has_value()) {
    this->adapter = this->loop->attach();
    this->queue.async([] { throw std::runtime_error("block"); });
    this->addStop();
    if constexpr (*TypeParam::passesExceptions) {
      EXPECT_THROW(this->loop->run(), std::runtime_error);
      this->loop->run();
    } else {
      EXPECT_DEATH(this->loop->run(), "terminate");
    }
  }
}

TYPED_TEST(EventLoopTest, RouteArrives) {
  FakeServer server;
  server.set("/v4/route", {200, R"({"points":[{"lat":1,"lon":2}]})"});
  this->adapter = this->loop->attach();
  std::size_t points = 0;
  QVCall(QVNavigation::route, std::make_shared<QVRouteRequest>(Coordinate{1, 2}, Coordinate{3, 4}))
      .onResult([&](const QVCallResult<QVRouteResponse>& result) {
        points = result->route()->points().size();
        this->loop->stop();
      });
  this->loop->run();
  EXPECT_EQ(points, 1U);
}

}  // namespace
}  // namespace quorvelkit::test
