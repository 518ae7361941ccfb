// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/WakeUpHook.h>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

namespace quorvelkit {

/// Runs MainQueue::main() in an event loop that waits with poll(), epoll or select().
///
///  - The loop waits until descriptor() is readable, and then calls handle() (level-triggered and
///    edge-triggered modes both work).
///  - Threads: construct it, call its functions and destroy it on the thread of the loop.
///  - Lifetime: it may be destroyed inside a block, and with blocks in the queue: they stay there.
///    Remove the descriptor from the loop before.
///  - Exceptions: an exception of a block leaves handle(). The constructor throws
///    std::system_error if the process has no more file descriptors.
///  - Cost: one descriptor. For all blocks that are waiting: one or two wake-ups, each with two
///    system calls.
class PollEventLoop {
 public:
  PollEventLoop() = default;
  PollEventLoop(const PollEventLoop&) = delete;
  PollEventLoop& operator=(const PollEventLoop&) = delete;

  /// The file descriptor, which this object owns.
  int descriptor() const noexcept { return descriptor_.value; }
  /// Returns the entry for an array that poll() takes.
  pollfd pollable() const noexcept { return {descriptor(), POLLIN, 0}; }

  /// Runs the blocks that are in the queue now. Returns at once if there are none.
  void handle() {
    std::uint64_t wakeUps = 0;
    [[maybe_unused]] const auto size = read(descriptor(), &wakeUps, sizeof wakeUps);
    MainQueue::main().runPending();  // A block may destroy this object.
  }

 private:
  struct Descriptor {
    Descriptor() : value(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
      if (value == -1) throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(value); }
    const int value;
  };

  Descriptor descriptor_;
  WakeUpHook hook_{[descriptor = descriptor_.value] {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto size = write(descriptor, &one, sizeof one);
  }};
};

}  // namespace quorvelkit
