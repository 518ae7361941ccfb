// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLProtocol.h>

#include <memory>
#include <mutex>

namespace quorvelkit {

/// The protocol of the factory registered last that wants the request; null when none does.
std::unique_ptr<URLProtocol> makeRegisteredProtocol(const URLRequest& request);

/// Held across a fork.
std::mutex& protocolRegistryMutex();

}  // namespace quorvelkit
