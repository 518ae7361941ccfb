// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <climits>

namespace quorvelkit::test {

/// The number of threads that can still start in a test program. The program must be built with
/// ThreadStart.cpp and must export its symbols.
inline std::atomic<int> threadsLeft = INT_MAX;

}  // namespace quorvelkit::test
