// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/SessionState_p.h>
#include <QuorvelPlatform/curl/Transfer_p.h>

#include <memory>
#include <vector>

namespace quorvelkit {

/// The idle transfers of one session, with the cookies and TLS sessions that all its transfers
/// share. Used on the IO thread.
class TransferPool {
 public:
  /// Returns the pool of a session in this process. Creates it if there is none.
  static std::shared_ptr<TransferPool> of(SessionState& session, SocketTable& sockets);

  TransferPool(const URLSessionConfiguration& configuration, SocketTable& sockets);
  TransferPool(const TransferPool&) = delete;
  TransferPool& operator=(const TransferPool&) = delete;
  ~TransferPool();

  /// Returns an idle transfer, or a new one if none is idle.
  std::unique_ptr<Transfer> take();
  /// Stores an ended transfer for further use. Destroys it if the pool is full or the session has a
  /// proxy.
  void recycle(std::unique_ptr<Transfer> transfer);

 private:
  const URLSessionConfiguration configuration_;
  CURLSH* const share_;
  SocketTable& sockets_;
  std::vector<std::unique_ptr<Transfer>> idle_;
};

}  // namespace quorvelkit
