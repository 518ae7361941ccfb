// SPDX-License-Identifier: Apache-2.0
#pragma once

#if __cplusplus < 202002L
#error "QuorvelKit needs C++20. Compile with -std=c++20 or later."
#endif

/// Exports a class or function from the shared library. All other symbols are hidden.
#define QUORVELKIT_EXPORT __attribute__((visibility("default")))
