// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/SessionState_p.h>
#include <QuorvelPlatform/curl/Transfer_p.h>

#include <memory>
#include <vector>

namespace quorvelkit {

/// What the network keeps for one session: its cookies, its TLS sessions and the transfers that
/// wait for their next use. Belongs to the IO thread.
class NetworkState {
 public:
  /// The state of a session in this process.
  static std::shared_ptr<NetworkState> of(SessionState& session, OpenSockets& sockets);

  NetworkState(const URLSessionConfiguration& configuration, OpenSockets& sockets);
  NetworkState(const NetworkState&) = delete;
  NetworkState& operator=(const NetworkState&) = delete;
  ~NetworkState();

  std::unique_ptr<Transfer> takeTransfer();
  void giveBack(std::unique_ptr<Transfer> transfer);

 private:
  const URLSessionConfiguration configuration_;
  CURLSH* const share_;
  OpenSockets& sockets_;
  std::vector<std::unique_ptr<Transfer>> idle_;
};

}  // namespace quorvelkit
