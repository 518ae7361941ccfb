// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstddef>

namespace quorvelkit::detail {

/// Lets the system back a huge block of memory, of 32 MB and more, by large pages where it can: to
/// touch memory the first time costs a fault for each page. Smaller blocks are left as they are,
/// since the C library keeps them for the next one that asks. Any thread; never fails visibly.
QUORVELKIT_EXPORT void preferLargePages(void* block, std::size_t size) noexcept;

}  // namespace quorvelkit::detail
