// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLProtocol.h>

#include <memory>

namespace quorvelkit {

class SessionEngine;
class SessionState;
class TaskLoader;

/// Creates the URL protocol that sends the loader's request over HTTP and follows redirects. Used
/// if no registered protocol accepts the request.
std::unique_ptr<URLProtocol> makeNetworkProtocol(SessionEngine& engine, TaskLoader& loader,
                                                 SessionState& session);

}  // namespace quorvelkit
