// SPDX-License-Identifier: Apache-2.0
#include "MemoryMeter.h"

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <new>

namespace quorvelkit::bench {

namespace {

std::atomic<bool> isCounting{false};
std::atomic<std::int64_t> aliveBytes{0};
std::atomic<std::int64_t> peakBytes{0};
std::atomic<std::int64_t> calls{0};

void count(std::int64_t change) noexcept {
  const std::int64_t now = aliveBytes.fetch_add(change, std::memory_order_relaxed) + change;
  std::int64_t peak = peakBytes.load(std::memory_order_relaxed);
  while (now > peak && !peakBytes.compare_exchange_weak(peak, now, std::memory_order_relaxed)) {
  }
  if (change > 0) calls.fetch_add(1, std::memory_order_relaxed);
}

std::int64_t sizeOf(void* block) noexcept {
  return static_cast<std::int64_t>(malloc_usable_size(block));
}

void* counted(void* block) noexcept {
  if (block && isCounting.load(std::memory_order_relaxed)) count(sizeOf(block));
  return block;
}

}  // namespace

MemoryMeter::MemoryMeter() noexcept {
  aliveBytes = 0;
  peakBytes = 0;
  calls = 0;
  isCounting = true;
}
MemoryMeter::~MemoryMeter() { isCounting = false; }

std::int64_t MemoryMeter::alive() const noexcept { return aliveBytes; }
std::int64_t MemoryMeter::peak() const noexcept { return peakBytes; }
std::int64_t MemoryMeter::allocations() const noexcept { return calls; }

}  // namespace quorvelkit::bench

// These definitions replace those of the C library for the program and all its libraries. operator
// new calls malloc.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) noexcept { return quorvelkit::bench::counted(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) noexcept {
  return quorvelkit::bench::counted(__libc_calloc(count, size));
}
void* realloc(void* block, std::size_t size) noexcept {
  using namespace quorvelkit::bench;
  const bool counting = isCounting.load(std::memory_order_relaxed);
  const std::int64_t before = counting && block ? sizeOf(block) : 0;
  void* const moved = __libc_realloc(block, size);
  if (counting && (moved || size == 0)) count((moved ? sizeOf(moved) : 0) - before);
  return moved;
}
void free(void* block) noexcept {
  using namespace quorvelkit::bench;
  if (block && isCounting.load(std::memory_order_relaxed)) count(-sizeOf(block));
  __libc_free(block);
}
void* memalign(std::size_t alignment, std::size_t size) noexcept {
  return quorvelkit::bench::counted(__libc_memalign(alignment, size));
}
void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return memalign(alignment, size);
}
int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
  *block = memalign(alignment, size);
  return *block ? 0 : ENOMEM;
}

}  // extern "C"
