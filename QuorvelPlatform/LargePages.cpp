// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/LargePages.h>

#include <sys/mman.h>

#include <memory>

namespace quorvelkit::detail {

void preferLargePages(void* block, std::size_t size) noexcept {
  constexpr std::size_t hugeBlock = 32 << 20;
  constexpr std::size_t pageSize = 4096;
  if (size < hugeBlock) return;
  void* first = block;
  // What lies before the first whole page is left as it is.
  std::size_t room = size;
  if (std::align(pageSize, pageSize, first, room)) madvise(first, room, MADV_HUGEPAGE);
}

}  // namespace quorvelkit::detail
