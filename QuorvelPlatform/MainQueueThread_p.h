// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace quorvelkit {

/// If the current thread is that of a MainQueueThread, exit() does not wait for it any more.
void markSleepingMainQueueThread();

}  // namespace quorvelkit
