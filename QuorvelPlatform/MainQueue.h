// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <utility>

namespace quorvelkit {

/// The serial queue on which completion handlers run. Any thread adds blocks; the application's
/// main thread runs them in order. There are two ways to do so:
///
///  - A program without an event loop calls run(), or runOnce() repeatedly.
///  - A program with an event loop sets a wake-up hook that causes a call of runPending() on the
///    main thread.
///
/// If a block throws, the run function that called it throws the same exception; the queue stays
/// usable. A block is destroyed on the thread that ran it, right after it ran. The queue is created
/// on first use and never destroyed. Blocks that have not run at exit never run.
class QUORVELKIT_EXPORT MainQueue {
 public:
  /// A function that the queue runs once.
  using Block = std::function<void()>;

  /// A block with a preallocated queue entry: async() then allocates no memory. If it is not added
  /// to the queue, the block is destroyed with this object.
  class Prepared {
   public:
    /// No block.
    Prepared() = default;
    /// Allocates the entry of a block.
    explicit Prepared(Block block) { place_.push_back(std::move(block)); }
    /// Runs the block on the calling thread. Without a block this is undefined.
    void operator()() const { place_.front()(); }

   private:
    friend MainQueue;
    std::list<Block> place_;
  };

  /// The queue of the process.
  static MainQueue& main();

  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  /// Adds a block. Returns at once; the block never runs inside this call. Thread-safe.
  void async(Block block);
  void async(Prepared block);

  /// Runs blocks and waits for further ones until stop(). Main thread.
  void run();
  /// Runs one block; waits for it until the time-out. Returns true if a block ran. Main thread.
  bool runOnce(std::chrono::milliseconds timeout);
  /// Runs the blocks that are in the queue now, without waiting. Blocks that they add run in the
  /// next call. May be called inside a block, for example by the event loop of a dialog; it then
  /// runs the blocks that follow. Main thread.
  void runPending();
  /// Makes run() return after its current block. If run() is not active, its next call returns at
  /// once. Thread-safe.
  void stop();

  /// Sets a function that is called when the queue stops being empty, and during runPending() if
  /// blocks are left: at the end, or before a block, because that may run an event loop, such as
  /// that of a dialog. Replaces an earlier hook; an empty function removes it. If blocks are
  /// waiting, the hook is called inside this call. Thread-safe.
  ///
  /// The hook runs on the thread that added the block, or on the main thread. It may use the queue,
  /// but should only signal the event loop of the main thread. Another thread may call the old hook
  /// once more after this call returned: keep the objects that it uses.
  void setWakeUpHook(std::function<void()> hook);
  /// Returns true if a hook is set.
  bool hasWakeUpHook() const;

  /// Returns true on the thread that runs the blocks: the last one that called a run function or
  /// bindToCurrentThread(). Before that, and after the end of that thread, it is the initial thread
  /// of the process. Thread-safe.
  bool isCurrentThread() const;
  /// Tells the queue that the calling thread is going to run its blocks.
  void bindToCurrentThread();

 private:
  friend class WakeUpHook;
  struct State;

  explicit MainQueue(State& state);
  ~MainQueue() = default;

  State& state_;
};

}  // namespace quorvelkit
