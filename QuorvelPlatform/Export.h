// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Exports a class or function from the shared library. All other symbols are hidden.
#define QUORVELKIT_EXPORT __attribute__((visibility("default")))
