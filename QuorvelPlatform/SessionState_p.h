// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLSessionConfiguration.h>

#include <memory>

namespace quorvelkit {

class NetworkState;

/// What a session and its tasks share.
class SessionState {
 public:
  explicit SessionState(URLSessionConfiguration settings) : configuration(std::move(settings)) {}
  SessionState(const SessionState&) = delete;
  SessionState& operator=(const SessionState&) = delete;
  ~SessionState();

  /// Lets go of what the network of another process keeps, without touching it.
  void leaveNetwork();

  const URLSessionConfiguration configuration;
  /// What the network keeps for this session: cookies and handles. Belongs to the IO thread of the
  /// process that made it; another process must not touch it.
  std::shared_ptr<NetworkState> network;
  int networkGeneration = 0;
};

}  // namespace quorvelkit
