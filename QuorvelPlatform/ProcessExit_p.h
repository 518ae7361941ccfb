// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>

namespace quorvelkit {

/// True once exit() has begun to stop the threads of the library. The exit handlers that stop
/// threads set it.
inline std::atomic<bool> isProcessExiting = false;

}  // namespace quorvelkit
