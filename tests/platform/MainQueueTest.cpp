// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/MainQueue.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
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

// The tests of the event loops check the order of the blocks, and blocks that run others.
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
  std::string calls;
  EXPECT_FALSE(queue.hasWakeUpHook());
  queue.async([] {});
  // The hook may use the queue: no mutex is locked.
  queue.setWakeUpHook([&] { calls += queue.hasWakeUpHook() ? 'a' : 'x'; });
  queue.async([] {});
  EXPECT_EQ(calls, "a");
  queue.runPending();  // One call before the first of two blocks.
  EXPECT_EQ(calls, "aa");
  queue.async([&] { queue.async([] {}); });
  EXPECT_EQ(calls, "aaa");
  queue.runPending();  // The new block causes one call.
  EXPECT_EQ(calls, "aaaa");
  queue.setWakeUpHook([&] { calls += 'b'; });
  EXPECT_EQ(calls, "aaaab");
  queue.runPending();
  queue.setWakeUpHook(nullptr);
  EXPECT_FALSE(queue.hasWakeUpHook());
  queue.async([] {});
  EXPECT_EQ(calls, "aaaab");
}

TEST_F(MainQueueTest, BlockIsDestroyedOnThreadThatRanIt) {
  std::thread::id destroyedOn;
  bool nextSawIt = false;
  std::jthread([&] {
    const auto destroy = [&](const int*) { destroyedOn = std::this_thread::get_id(); };
    queue.async([captured = std::shared_ptr<const int>(nullptr, destroy)] {});
    queue.async([&] { nextSawIt = destroyedOn == std::this_thread::get_id(); });
  }).join();
  queue.runPending();
  EXPECT_TRUE(nextSawIt);
}

}  // namespace
}  // namespace quorvelkit
