// SPDX-License-Identifier: Apache-2.0
// The first access to a memory page causes a page fault, which costs more than filling the page.
#pragma once

#include <cstddef>

namespace quorvelkit::detail {

/// Asks the system to use large pages for a block of 32 MB or more. Ignores smaller blocks, because
/// the C library reuses them. Thread-safe. Failures are ignored.
void preferLargePages(void* block, std::size_t size) noexcept;

/// Populates the pages of a block with one system call, before the block is filled. Thread-safe.
/// Failures are ignored. Has no effect on Linux before 5.14.
void populatePages(void* block, std::size_t size) noexcept;

}  // namespace quorvelkit::detail
