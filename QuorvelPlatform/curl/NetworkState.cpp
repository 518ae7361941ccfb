// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/curl/NetworkState_p.h>

#include <new>
#include <utility>

namespace quorvelkit {

namespace {

constexpr std::size_t maximumIdleTransfers = 128;

CURLSH* makeShare() {
  CURLSH* const share = curl_share_init();
  if (share == nullptr) throw std::bad_alloc();
  for (const curl_lock_data shared : {CURL_LOCK_DATA_COOKIE, CURL_LOCK_DATA_SSL_SESSION}) {
    if (curl_share_setopt(share, CURLSHOPT_SHARE, shared) == CURLSHE_OK) continue;
    curl_share_cleanup(share);
    throw std::bad_alloc();
  }
  return share;
}

}  // namespace

std::shared_ptr<NetworkState> NetworkState::of(SessionState& session, OpenSockets& sockets) {
  const int generation = SessionEngine::processGeneration();
  if (session.networkGeneration != generation) session.leaveNetwork();
  if (!session.network) {
    session.network = std::make_shared<NetworkState>(session.configuration, sockets);
  }
  session.networkGeneration = generation;
  return session.network;
}

NetworkState::NetworkState(const URLSessionConfiguration& configuration, OpenSockets& sockets)
    : configuration_(configuration), share_(makeShare()), sockets_(sockets) {}

NetworkState::~NetworkState() {
  idle_.clear();
  curl_share_cleanup(share_);
}

std::unique_ptr<Transfer> NetworkState::takeTransfer() {
  if (idle_.empty()) return std::make_unique<Transfer>(configuration_, share_, sockets_);
  auto transfer = std::move(idle_.back());
  idle_.pop_back();
  return transfer;
}

void NetworkState::giveBack(std::unique_ptr<Transfer> transfer) {
  // libcurl stores trailers of a proxy's answer, though not its head, without showing them before.
  if (!configuration_.proxy.empty() || idle_.size() >= maximumIdleTransfers) return;
  transfer->clear();
  try {
    idle_.push_back(std::move(transfer));
  } catch (const std::bad_alloc&) {
    return;  // The next exchange makes a new one.
  }
}

}  // namespace quorvelkit
