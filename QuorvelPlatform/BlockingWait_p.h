// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace quorvelkit {

/// Stops the process if the current thread must not wait for a data task, because the task could
/// never complete: on the threads of the session and during exit().
void requireThreadThatMayWait();

/// Called repeatedly by a function that waits and runs the main queue. During exit() it never
/// returns: no result comes any more, so the thread sleeps until the process ends.
void sleepIfProcessIsExiting();

}  // namespace quorvelkit
