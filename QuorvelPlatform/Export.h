// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks what applications may use; everything else stays hidden inside the shared library.
#define QUORVELKIT_EXPORT __attribute__((visibility("default")))
