// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace quorvelkit::bench {

/// Counts what the whole program takes from the heap while it lives: every malloc, realloc and
/// operator new of every library, by the size that the allocator really gives. One at a time, and
/// outside what is timed: benchmarks count in a run of their own.
class MemoryMeter {
 public:
  MemoryMeter() noexcept;
  ~MemoryMeter();
  MemoryMeter(const MemoryMeter&) = delete;
  MemoryMeter& operator=(const MemoryMeter&) = delete;

  /// Bytes taken and not given back since the meter was made, and the most that this ever was.
  std::int64_t alive() const noexcept;
  std::int64_t peak() const noexcept;
  std::int64_t allocations() const noexcept;
};

}  // namespace quorvelkit::bench
