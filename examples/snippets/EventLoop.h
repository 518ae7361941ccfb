// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

/// Drains the main queue inside a program's own poll() loop.
class MainQueueEvents {
 public:
  MainQueueEvents() {
    quorvelkit::MainQueue::main().setWakeUpHook([fd = fd_] {
      const std::uint64_t one = 1;
      [[maybe_unused]] const auto written = write(fd, &one, sizeof one);
    });
  }
  MainQueueEvents(const MainQueueEvents&) = delete;
  MainQueueEvents& operator=(const MainQueueEvents&) = delete;

  /// What the loop polls for reading.
  pollfd pollable() const { return {fd_, POLLIN, 0}; }
  /// What the loop calls when there is something to read.
  void handle() {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto got = read(fd_, &count, sizeof count);
    quorvelkit::MainQueue::main().runPending();
  }

 private:
  const int fd_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
};
