// SPDX-License-Identifier: Apache-2.0
// To touch a page of memory for the first time costs a fault, more than filling the page.
#pragma once

#include <cstddef>

namespace quorvelkit::detail {

/// Lets the system back a huge block of memory, of 32 MB and more, by large pages where it can.
/// Smaller blocks are left as they are, since the C library keeps them for the next one that asks.
/// Any thread; never fails visibly.
void preferLargePages(void* block, std::size_t size) noexcept;

/// Has the system back a block of memory at once that is about to be filled, without a fault for
/// each page. Any thread; never fails visibly (Linux before 5.14 does nothing).
void populatePages(void* block, std::size_t size) noexcept;

}  // namespace quorvelkit::detail
