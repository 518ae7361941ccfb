// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace quorvelkit {

/// Stops the process if the current thread must not wait for a data task, because the task could
/// never complete: on the threads of the session and after exit() has stopped them.
void requireThreadThatMayWait();

}  // namespace quorvelkit
