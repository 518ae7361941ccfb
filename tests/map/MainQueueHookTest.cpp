// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"

#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelPlatform/MainQueue.h>

#include <thread>

namespace quorvelkit::test {

namespace {

using Screen = TestApplication::Screen;

TEST(MainQueueHookTest, BlocksRunInTheEventLoopOfTheCurrentApplication) {
  int late = 0;
  for (int round = 0; round < 2; ++round) {
    const TestApplication application(Screen::none);
    installMainQueueHook();
    bool ran = false;
    std::thread([&] { MainQueue::main().async([&] { ran = true; }); }).join();
    EXPECT_TRUE(waitUntil([&] { return ran; }));
    // The block of the first round runs in the second application.
    EXPECT_EQ(late, round);
    MainQueue::main().async([&] { ++late; });
  }
}

TEST(MainQueueHookTest, DoesNotReplaceTheHookOfAnApplication) {
  const TestApplication application(Screen::none);
  int calls = 0;
  MainQueue::main().setWakeUpHook([&] { ++calls; });
  const MGLMapView view;
  MainQueue::main().async([] {});
  EXPECT_EQ(calls, 1);
  MainQueue::main().setWakeUpHook({});
}

}  // namespace

}  // namespace quorvelkit::test
