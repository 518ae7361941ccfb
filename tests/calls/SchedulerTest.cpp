// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Awaited.h"

#include <QuorvelPlatform/Scheduler.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>
#include <vector>

// The child processes of these tests start threads.
extern "C" const char* __tsan_default_options() { return "die_after_fork=0"; }

namespace quorvelkit {
namespace {

using namespace test;
using namespace std::chrono_literals;

using Timers = std::vector<std::unique_ptr<Scheduler::Timer>>;

TEST(SchedulerTest, RunsBlocksInTheOrderOfTheirTimes) {
  Scheduler& scheduler = Scheduler::shared();
  const auto now = scheduler.now();
  std::vector<int> ran;  // used on the thread of the scheduler
  const Awaited<bool> ended;
  Timers timers;
  const Awaited<bool> mayRun;
  timers.push_back(scheduler.schedule(now, [mayRun] { mayRun.get(); }));
  timers.push_back(scheduler.schedule(now + 4ms, [ended] { ended.set(true); }));
  timers.push_back(scheduler.schedule(now + 3ms, [&] { ran.push_back(3); }));
  timers.push_back(scheduler.schedule(now + 1ms, [&] { ran.push_back(1); }));
  timers.push_back(scheduler.schedule(now + 2ms, [&] { ran.push_back(99); }));
  timers.push_back(scheduler.schedule(now + 1ms, [&] { ran.push_back(2); }));
  timers[4].reset();  // Removes its block.
  mayRun.set(true);
  EXPECT_TRUE(ended.get());
  EXPECT_EQ(ran, (std::vector{1, 2, 3}));
}

TEST(SchedulerTest, BlocksMayScheduleAndRemoveBlocks) {
  Scheduler& scheduler = Scheduler::shared();
  const Awaited<std::thread::id> first, second;
  std::unique_ptr<Scheduler::Timer> other = scheduler.schedule(scheduler.now() + 1h, [] {}), nested;
  const auto timer = scheduler.schedule(scheduler.now() - 1h, [&, first, second] {
    other.reset();
    nested =
        scheduler.schedule(scheduler.now(), [second] { second.set(std::this_thread::get_id()); });
    first.set(std::this_thread::get_id());
  });
  EXPECT_EQ(first.get(), second.get());
  EXPECT_NE(first.get(), std::this_thread::get_id());
}

// The child has neither the blocks nor the thread of its parent; the exit of both joins theirs.
TEST(SchedulerTest, ForkedChildBeginsAnew) {
  Scheduler& scheduler = Scheduler::shared();
  const Awaited<bool> ran;
  auto forbidden = scheduler.schedule(scheduler.now() + 1h, [] { _exit(2); });
  const auto first = scheduler.schedule(scheduler.now(), [ran] { ran.set(true); });
  EXPECT_TRUE(ran.get());
  const pid_t child = fork();
  if (child == 0) {
    forbidden.reset();
    Scheduler& own = Scheduler::shared();
    const Awaited<bool> ranInChild;
    const auto timer = own.schedule(own.now(), [ranInChild] { ranInChild.set(true); });
    const bool isGood = &own != &scheduler && ranInChild.get();
    exit(isGood ? 0 : 1);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace quorvelkit
