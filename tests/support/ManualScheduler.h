// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Scheduler.h>

#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace quorvelkit::test {

/// A scheduler whose time only advance() changes. Thread-safe.
class ManualScheduler : public Scheduler {
 public:
  TimePoint now() const override {
    const std::lock_guard lock(state_->mutex);
    return state_->now;
  }
  std::unique_ptr<Timer> schedule(TimePoint time, Block block) override {
    const std::lock_guard lock(state_->mutex);
    const Key key(time, ++state_->count);
    state_->blocks.emplace(key, std::move(block));
    return std::make_unique<ManualTimer>(state_, key);
  }

  /// Runs the blocks whose time comes meanwhile, on this thread.
  void advance(TimePoint::duration duration) {
    const TimePoint end = now() + duration;
    while (const Block block = takeDue(end))
      block();
  }
  /// Returns the number of blocks that wait.
  std::size_t waiting() const {
    const std::lock_guard lock(state_->mutex);
    return state_->blocks.size();
  }

 private:
  using Key = std::pair<TimePoint, int>;
  struct State {
    std::mutex mutex;
    TimePoint now;
    std::map<Key, Block> blocks;
    int count = 0;
  };
  class ManualTimer : public Timer {
   public:
    ManualTimer(std::shared_ptr<State> state, Key key) : state_(std::move(state)), key_(key) {}
    ~ManualTimer() override {
      std::map<Key, Block>::node_type removed;
      const std::lock_guard lock(state_->mutex);
      removed = state_->blocks.extract(key_);
    }

   private:
    std::shared_ptr<State> state_;
    Key key_;
  };

  // Sets the time to that of the first block, or to `end` if none is due.
  Block takeDue(TimePoint end) {
    const std::lock_guard lock(state_->mutex);
    auto& blocks = state_->blocks;
    const bool isDue = !blocks.empty() && blocks.begin()->first.first <= end;
    state_->now = isDue ? std::max(state_->now, blocks.begin()->first.first) : end;
    return isDue ? std::move(blocks.extract(blocks.begin()).mapped()) : nullptr;
  }

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace quorvelkit::test
