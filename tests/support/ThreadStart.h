// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <climits>

namespace quorvelkit::test {

/// How many threads may still start in a test program that is built with ThreadStart.cpp and
/// exports its symbols.
inline std::atomic<int> threadsLeft = INT_MAX;

}  // namespace quorvelkit::test
