// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <utility>

namespace quorvelkit {

/// The one serial queue on which completion handlers run. Any thread hands blocks in; the
/// application's main thread takes them out, in the order they came, by one of two ways:
///
///  - a program without an event loop of its own calls run() (or runOnce() in turns);
///  - a program with one sets a wake-up hook that arranges for runPending() on the main thread.
///
/// A block that throws leaves the queue usable; the exception leaves the run function that was
/// running it. A block is destroyed right after it ran, on the thread that ran it. The queue is
/// made on first use and never destroyed; blocks that have not run at exit are never run.
class QUORVELKIT_EXPORT MainQueue {
 public:
  using Block = std::function<void()>;

  /// A block that has its place in the queue from the beginning, so that handing it in takes no
  /// memory. Not handed in, it is destroyed with this object.
  class Prepared {
   public:
    /// No block.
    Prepared() = default;
    explicit Prepared(Block block) { place_.push_back(std::move(block)); }

   private:
    friend MainQueue;
    std::list<Block> place_;
  };

  static MainQueue& main();

  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  /// Hands a block in. Returns at once; the block never runs inside this call. Any thread.
  void async(Block block);
  void async(Prepared block);

  /// Runs blocks as they come until stop(). Main thread.
  void run();
  /// Waits for a block, at most as long as given, and runs it. Returns whether one ran.
  bool runOnce(std::chrono::milliseconds timeout);
  /// Runs the blocks that are in the queue now, without waiting; those they add wait for the next
  /// call. Called inside a block (a dialog's own event loop, say) it runs the blocks that follow.
  void runPending();
  /// Makes run() return after the block it is running; with no run() under way, the next one
  /// returns at once. Any thread.
  void stop();

  /// Sets what is called whenever the queue stops being empty, and when it still holds blocks at
  /// the end of a runPending(). Called on whichever thread handed the block in, outside all
  /// locks; it should only signal the main thread's event loop. Replaces an earlier hook; an
  /// empty function removes it. When blocks are waiting already the hook is called at once. A hook
  /// that was replaced may be called once more by a thread that is at it: what it uses must outlive
  /// that.
  void setWakeUpHook(std::function<void()> hook);
  bool hasWakeUpHook() const;

 private:
  struct State;

  explicit MainQueue(State& state);
  ~MainQueue() = default;

  State& state_;
};

}  // namespace quorvelkit
