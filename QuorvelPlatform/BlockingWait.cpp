// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/BlockingWait_p.h>
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/MainQueueThread_p.h>
#include <QuorvelPlatform/ProcessExit_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>

#include <unistd.h>

namespace quorvelkit {

void requireThreadThatMayWait() {
  if (SessionEngine::isEngineThread())
    fatalError(
        "A thread of the URL session must not wait for a call, because it completes the call.");
  if (isProcessExiting) fatalError("The process exits: a wait for a call would never end.");
}

void sleepIfProcessIsExiting() {
  if (!isProcessExiting) return;
  markSleepingMainQueueThread();
  for (;;)
    pause();
}

}  // namespace quorvelkit
