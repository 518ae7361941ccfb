// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/MemoryPages.h>

#include <sys/mman.h>

#include <memory>

namespace quorvelkit::detail {

namespace {

// Gives advice for the whole pages of a block; what lies before and behind them is left as it is.
void advise(void* block, std::size_t size, int advice) noexcept {
  constexpr std::size_t pageSize = 4096;
  void* first = block;
  std::size_t room = size;
  if (std::align(pageSize, pageSize, first, room)) madvise(first, room - room % pageSize, advice);
}

}  // namespace

void preferLargePages(void* block, std::size_t size) noexcept {
  constexpr std::size_t hugeBlock = 32 << 20;
  if (size >= hugeBlock) advise(block, size, MADV_HUGEPAGE);
}

void populatePages(void* block, std::size_t size) noexcept {
#ifdef MADV_POPULATE_WRITE
  advise(block, size, MADV_POPULATE_WRITE);
#endif
}

}  // namespace quorvelkit::detail
