// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/MainQueue.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;

class MainQueueTest : public testing::Test {
 protected:
  using Ran = std::vector<int>;

  void add(int number) {
    queue.async([this, number] { ran.push_back(number); });
  }

  MainQueue& queue = MainQueue::main();
  Ran ran;
};

TEST_F(MainQueueTest, KeepsOrderOfEachThread) {
  constexpr int threads = 4, each = 1000;
  std::vector<int> last(threads, -1);
  int count = 0;
  std::vector<std::jthread> senders;
  for (int t = 0; t < threads; ++t) {
    senders.emplace_back([&, t] {
      for (int i = 0; i < each; ++i) {
        queue.async([&, t, i] {
          EXPECT_EQ(last[static_cast<std::size_t>(t)], i - 1);
          last[static_cast<std::size_t>(t)] = i;
          if (++count == threads * each) queue.stop();
        });
      }
    });
  }
  queue.run();
  EXPECT_EQ(count, threads * each);
}

TEST_F(MainQueueTest, RunOnceWaitsForOneBlock) {
  EXPECT_FALSE(queue.runOnce(1ms));
  const std::jthread sender([&] {
    add(1);
    add(2);
  });
  EXPECT_TRUE(queue.runOnce(30s));
  EXPECT_EQ(ran, Ran{1});
  EXPECT_TRUE(queue.runOnce(30s));
  EXPECT_EQ(ran, (Ran{1, 2}));
}

TEST_F(MainQueueTest, RunPendingLeavesNewBlocksForNextCall) {
  queue.async([&] { add(2); });
  add(1);
  queue.runPending();
  EXPECT_EQ(ran, Ran{1});
  queue.runPending();
  queue.runPending();
  EXPECT_EQ(ran, (Ran{1, 2}));
}

TEST_F(MainQueueTest, NestedRunPendingRunsFollowingBlocks) {
  queue.async([&] {
    queue.runPending();
    ran.push_back(3);
  });
  add(1);
  add(2);
  queue.runPending();
  EXPECT_EQ(ran, (Ran{1, 2, 3}));
}

TEST_F(MainQueueTest, QueueStaysUsableAfterException) {
  int woken = 0;
  queue.setWakeUpHook([&] { ++woken; });
  const auto fill = [&] {
    queue.async([] { throw std::runtime_error("block"); });
    add(1);
  };
  fill();
  EXPECT_THROW(queue.runPending(), std::runtime_error);
  EXPECT_EQ(woken, 2);  // For the first block and for the remaining one.
  queue.runPending();
  EXPECT_EQ(ran.size(), 1U);
  fill();
  EXPECT_THROW(queue.runOnce(30s), std::runtime_error);
  EXPECT_TRUE(queue.runOnce(30s));
  fill();
  EXPECT_THROW(queue.run(), std::runtime_error);
  queue.async([] { MainQueue::main().stop(); });
  queue.run();
  EXPECT_EQ(ran.size(), 3U);
  queue.setWakeUpHook(nullptr);
}

TEST_F(MainQueueTest, StopEndsCurrentOrNextRun) {
  queue.stop();
  queue.async([&] { queue.stop(); });
  add(1);
  queue.run();
  queue.run();
  EXPECT_EQ(ran, Ran());
  queue.runPending();
  EXPECT_EQ(ran, Ran{1});
}

TEST_F(MainQueueTest, HookIsCalledWhenQueueStopsBeingEmpty) {
  int first = 0, second = 0;
  EXPECT_FALSE(queue.hasWakeUpHook());
  queue.async([] {});
  // The hook may use the queue: no mutex is locked.
  queue.setWakeUpHook([&] { first += queue.hasWakeUpHook() ? 1 : 100; });
  EXPECT_TRUE(queue.hasWakeUpHook());
  EXPECT_EQ(first, 1);
  queue.async([] {});
  EXPECT_EQ(first, 1);
  queue.runPending();  // One call before the first of two blocks.
  EXPECT_EQ(first, 2);
  queue.async([&] { queue.async([] {}); });
  EXPECT_EQ(first, 3);
  queue.runPending();  // The new block causes one call.
  EXPECT_EQ(first, 4);
  queue.setWakeUpHook([&] { ++second; });
  EXPECT_EQ(second, 1);
  queue.runPending();
  queue.setWakeUpHook(nullptr);
  EXPECT_FALSE(queue.hasWakeUpHook());
  queue.async([] {});
  EXPECT_EQ(first, 4);
  EXPECT_EQ(second, 1);
}

TEST_F(MainQueueTest, BlockIsDestroyedOnThreadThatRanIt) {
  struct Tracker {
    std::thread::id* destroyedOn = nullptr;
    ~Tracker() { *destroyedOn = std::this_thread::get_id(); }
  };
  std::thread::id destroyedOn;
  bool nextSawIt = false;
  std::jthread([&] {
    auto tracker = std::make_shared<Tracker>();
    tracker->destroyedOn = &destroyedOn;
    queue.async([tracker = std::move(tracker)] {});
    queue.async([&] { nextSawIt = destroyedOn == std::this_thread::get_id(); });
  }).join();
  queue.runPending();
  EXPECT_TRUE(nextSawIt);
}

}  // namespace
}  // namespace quorvelkit
