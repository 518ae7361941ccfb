// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

/// Runs the main queue inside the poll() loop of a program.
class MainQueueEvents {
 public:
  MainQueueEvents() {
    quorvelkit::MainQueue::main().setWakeUpHook([fd = fd_] {
      const std::uint64_t one = 1;
      [[maybe_unused]] const auto result = write(fd, &one, sizeof one);
    });
  }
  MainQueueEvents(const MainQueueEvents&) = delete;
  MainQueueEvents& operator=(const MainQueueEvents&) = delete;

  /// The loop polls this descriptor for reading.
  pollfd pollable() const { return {fd_, POLLIN, 0}; }
  /// The loop calls this function when the descriptor is readable.
  void handle() {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto result = read(fd_, &count, sizeof count);
    quorvelkit::MainQueue::main().runPending();
  }

 private:
  const int fd_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
};
