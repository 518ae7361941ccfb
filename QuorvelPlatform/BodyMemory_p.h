// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Data.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

namespace quorvelkit {

/// Keeps the memory of large bodies that are no longer used, for the next bodies. New memory costs
/// a page fault for each page, because the C library returns freed blocks of this size to the
/// system.
///
/// Keeps at most 16 MiB. The session frees all of it one second after the last large body, or when
/// its running tasks have ended. Thread-safe. Blocks no thread: if another thread uses it at the
/// same moment, memory is allocated and freed as usual.
class BodyMemory {
 public:
  using Clock = std::chrono::steady_clock;
  /// The size in bytes of the smallest body whose memory is kept.
  static constexpr std::size_t minimumSize = 128 << 10;
  static constexpr std::chrono::seconds maximumIdleTime{1};

  /// The instance of the process. It is never destroyed.
  static BodyMemory& shared();

  /// Returns an empty string with room for `size` bytes, and for at most a quarter more. Throws
  /// std::bad_alloc.
  std::string take(std::size_t size);
  /// Makes a value whose memory is kept when its last copy is destroyed, if it is large. Throws
  /// std::bad_alloc.
  static Data makeData(std::string bytes);
  /// Frees the memory if the last call of take() is older than a second. Until the next call of
  /// take(), memory is then no longer kept.
  void freeIfIdle(Clock::time_point now);
  /// Returns true if freeIfIdle() must be called later.
  bool isOpen() const { return isOpen_; }

  /// For fork(): a thread that locks this mutex locks no other one.
  std::mutex& mutex() { return mutex_; }

 private:
  struct Owner;
  std::string takeKept(std::size_t size);
  void keep(std::string bytes) noexcept;

  std::mutex mutex_;
  using Blocks = std::array<std::string, 64>;
  Blocks kept_;  // The first `count_` strings.
  std::size_t count_ = 0;
  std::size_t keptSize_ = 0;
  std::atomic<bool> isOpen_ = false;
  Clock::time_point lastUse_;
};

}  // namespace quorvelkit
