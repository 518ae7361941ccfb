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

MainQueue& queue() { return MainQueue::main(); }

TEST(MainQueueTest, KeepsTheOrderOfEachThread) {
  constexpr int threads = 4, each = 1000;
  std::vector<int> last(threads, -1);
  int ran = 0;
  std::vector<std::jthread> senders;
  for (int t = 0; t < threads; ++t) {
    senders.emplace_back([&, t] {
      for (int i = 0; i < each; ++i) {
        queue().async([&, t, i] {
          EXPECT_EQ(last[static_cast<std::size_t>(t)], i - 1);
          last[static_cast<std::size_t>(t)] = i;
          if (++ran == threads * each) queue().stop();
        });
      }
    });
  }
  queue().run();
  EXPECT_EQ(ran, threads * each);
}

TEST(MainQueueTest, RunOnceWaitsForOneBlock) {
  EXPECT_FALSE(queue().runOnce(1ms));
  int ran = 0;
  std::jthread sender([&] {
    queue().async([&] { ++ran; });
    queue().async([&] { ++ran; });
  });
  EXPECT_TRUE(queue().runOnce(30s));
  EXPECT_EQ(ran, 1);
  EXPECT_TRUE(queue().runOnce(30s));
  EXPECT_EQ(ran, 2);
}

TEST(MainQueueTest, RunPendingLeavesWhatItsBlocksAdd) {
  std::vector<int> ran;
  queue().async([&] {
    ran.push_back(1);
    queue().async([&] { ran.push_back(3); });
  });
  queue().async([&] { ran.push_back(2); });
  queue().runPending();
  EXPECT_EQ(ran, (std::vector<int>{1, 2}));
  queue().runPending();
  queue().runPending();
  EXPECT_EQ(ran, (std::vector<int>{1, 2, 3}));
}

TEST(MainQueueTest, ANestedRunPendingRunsTheBlocksThatFollow) {
  std::vector<int> ran;
  queue().async([&] {
    ran.push_back(1);
    queue().runPending();
    ran.push_back(4);
  });
  for (const int i : {2, 3})
    queue().async([&, i] { ran.push_back(i); });
  queue().runPending();
  EXPECT_EQ(ran, (std::vector<int>{1, 2, 3, 4}));
}

TEST(MainQueueTest, ABlockThatThrowsLeavesTheQueueUsable) {
  int ran = 0, woken = 0;
  queue().setWakeUpHook([&] { ++woken; });
  const auto fill = [&] {
    queue().async([] { throw std::runtime_error("block"); });
    queue().async([&] { ++ran; });
  };
  fill();
  EXPECT_THROW(queue().runPending(), std::runtime_error);
  EXPECT_EQ(woken, 2);  // For the first block, and for the one left over.
  queue().runPending();
  EXPECT_EQ(ran, 1);
  fill();
  EXPECT_THROW(queue().runOnce(30s), std::runtime_error);
  EXPECT_TRUE(queue().runOnce(30s));
  fill();
  EXPECT_THROW(queue().run(), std::runtime_error);
  queue().async([] { queue().stop(); });
  queue().run();
  EXPECT_EQ(ran, 3);
  queue().setWakeUpHook(nullptr);
}

TEST(MainQueueTest, StopEndsTheRunUnderWayOrTheNext) {
  int ran = 0;
  queue().stop();
  queue().async([&] { ++ran; });
  queue().run();
  EXPECT_EQ(ran, 0);
  queue().async([&] {
    ++ran;
    queue().stop();
  });
  queue().async([&] { ++ran; });
  queue().run();
  EXPECT_EQ(ran, 2);
  queue().runPending();
  EXPECT_EQ(ran, 3);
}

TEST(MainQueueTest, TheHookIsCalledWheneverTheQueueStopsBeingEmpty) {
  int first = 0, second = 0;
  EXPECT_FALSE(queue().hasWakeUpHook());
  queue().async([] {});
  // Called outside all locks: it may use the queue.
  queue().setWakeUpHook([&] { first += queue().hasWakeUpHook() ? 1 : 100; });
  EXPECT_TRUE(queue().hasWakeUpHook());
  EXPECT_EQ(first, 1);
  queue().async([] {});
  EXPECT_EQ(first, 1);
  queue().runPending();
  queue().async([] { queue().async([] {}); });
  EXPECT_EQ(first, 2);
  // The block that this one adds wakes twice: when it comes, and when the call ends without it.
  queue().runPending();
  EXPECT_EQ(first, 4);
  queue().setWakeUpHook([&] { ++second; });
  EXPECT_EQ(second, 1);
  queue().runPending();
  queue().setWakeUpHook(nullptr);
  EXPECT_FALSE(queue().hasWakeUpHook());
  queue().async([] {});
  EXPECT_EQ(first, 4);
  EXPECT_EQ(second, 1);
}

TEST(MainQueueTest, ABlockIsDestroyedWhereItRan) {
  struct Tracker {
    std::thread::id* destroyedOn = nullptr;
    ~Tracker() { *destroyedOn = std::this_thread::get_id(); }
  };
  std::thread::id destroyedOn;
  bool nextSawIt = false;
  std::jthread([&] {
    auto tracker = std::make_shared<Tracker>();
    tracker->destroyedOn = &destroyedOn;
    queue().async([tracker = std::move(tracker)] {});
    queue().async([&] { nextSawIt = destroyedOn == std::this_thread::get_id(); });
  }).join();
  queue().runPending();
  EXPECT_TRUE(nextSawIt);
}

}  // namespace
}  // namespace quorvelkit
