// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

namespace quorvelkit {

/// Lets Qt's event loop on the calling thread run the blocks of MainQueue::main(), so that
/// completion handlers run there. Does nothing where a wake-up hook is set already. Making a map
/// view does this; a Qt program that calls services before it has one calls it itself, on its GUI
/// thread. Qt allows no exception to leave a handler that is run this way.
QUORVELKIT_EXPORT void installMainQueueHook();

}  // namespace quorvelkit
