// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

namespace quorvelkit {

/// Lets Qt's event loop on the calling thread run the blocks of MainQueue::main(), so that
/// completion handlers run on this thread. Has no effect if another wake-up hook is set. The
/// constructor of MGLMapView calls this function. A Qt program that calls services before it makes
/// a map view must call it on its GUI thread. Handlers must not throw, because Qt's event loop does
/// not support exceptions.
QUORVELKIT_EXPORT void installMainQueueHook();

}  // namespace quorvelkit
