// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/MemoryPages_p.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <memory>

namespace quorvelkit::detail {

namespace {

// The memory pages that lie completely inside a block.
struct WholePages {
  WholePages(void* block, std::size_t room) noexcept {
    static const auto pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    if (!std::align(pageSize, pageSize, block, room)) return;
    first = static_cast<char*>(block);
    size = room - room % pageSize;
    last = first + size - pageSize;
  }

  char* first = nullptr;
  char* last = nullptr;
  std::size_t size = 0;
};

}  // namespace

void preferLargePages(void* block, std::size_t size) noexcept {
  constexpr std::size_t hugeBlock = 32 << 20;
  if (size < hugeBlock) return;
  // Includes the page in which the block begins, where the header of the C library is. If the block
  // had two kinds of pages, realloc() could not move the pages and would copy the block.
  static const auto pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  const std::size_t before = address % pageSize;
  const std::size_t all = (before + size + pageSize - 1) / pageSize * pageSize;
  madvise(static_cast<char*>(block) - before, all, MADV_HUGEPAGE);
}

void populatePages([[maybe_unused]] void* block, [[maybe_unused]] std::size_t size) noexcept {
#ifdef MADV_POPULATE_WRITE
  const WholePages pages(block, size);
  if (pages.size == 0) return;
  // Memory that was used before mostly has its pages already. The call would then only cost time.
  unsigned char isPresent = 0;
  const bool isKnown = mincore(pages.last, 1, &isPresent) == 0;
  if (!isKnown || isPresent == 0) madvise(pages.first, pages.size, MADV_POPULATE_WRITE);
#endif
}

}  // namespace quorvelkit::detail
