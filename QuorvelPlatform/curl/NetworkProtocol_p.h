// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLProtocol.h>

#include <memory>

namespace quorvelkit {

class Load;
class SessionEngine;
class SessionState;

/// The protocol that answers what no registered one wants: HTTP over the network.
std::unique_ptr<URLProtocol> makeNetworkProtocol(SessionEngine& engine, Load& load,
                                                 SessionState& session);

}  // namespace quorvelkit
