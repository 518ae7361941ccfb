// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace quorvelkit::bench {

/// Counts the heap memory of the whole program during its lifetime: every malloc, realloc and
/// operator new of every library, by the usable size of the block. Only one meter may exist at a
/// time. Slows the program down, so benchmarks count in a separate run without timing.
class MemoryMeter {
 public:
  MemoryMeter() noexcept;
  ~MemoryMeter();
  MemoryMeter(const MemoryMeter&) = delete;
  MemoryMeter& operator=(const MemoryMeter&) = delete;

  /// The bytes that were allocated since the construction and not freed.
  std::int64_t alive() const noexcept;
  /// The maximum of alive().
  std::int64_t peak() const noexcept;
  std::int64_t allocations() const noexcept;
};

}  // namespace quorvelkit::bench
