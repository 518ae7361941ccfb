// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLProtocol.h>

#include <memory>
#include <mutex>

namespace quorvelkit {

/// Asks the registered factories, the last one first, and returns the first protocol that is not
/// null. Returns null if there is none.
std::unique_ptr<URLProtocol> makeRegisteredProtocol(const URLRequest& request);

/// Locked during fork().
std::mutex& protocolRegistryMutex();

}  // namespace quorvelkit
