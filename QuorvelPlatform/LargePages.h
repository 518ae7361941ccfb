// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstddef>

namespace quorvelkit::detail {

/// Lets the system back a huge block of memory by large pages where it can: to touch it the first
/// time costs a fault for each page. Smaller blocks are left as they are; the C library keeps those
/// for the next one that asks, where it maps blocks of this size by themselves.
QUORVELKIT_EXPORT void preferLargePages(void* block, std::size_t size) noexcept;

}  // namespace quorvelkit::detail
