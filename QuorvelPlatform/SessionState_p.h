// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLSessionConfiguration.h>

#include <memory>

namespace quorvelkit {

class TransferPool;

/// The settings and the transfer pool that a session shares with its data tasks.
class SessionState {
 public:
  explicit SessionState(URLSessionConfiguration settings) : configuration(std::move(settings)) {}
  SessionState(const SessionState&) = delete;
  SessionState& operator=(const SessionState&) = delete;
  ~SessionState();

  /// Leaks the transfer pool of a parent process. Its IO thread may have been using it at the fork.
  void leakTransferPool();

  const URLSessionConfiguration configuration;
  /// Used on the IO thread of the process that created it, and by no other process. Destroyed on
  /// the thread that releases the session or its last task. Null until the first network request.
  std::shared_ptr<TransferPool> transferPool;
  /// SessionEngine::processGeneration() of the process that created the pool.
  int transferPoolGeneration = 0;
};

}  // namespace quorvelkit
