// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/curl/TransferPool_p.h>

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

std::shared_ptr<TransferPool> TransferPool::of(SessionState& session, SocketTable& sockets) {
  const int generation = SessionEngine::processGeneration();
  if (session.transferPoolGeneration != generation) session.leakTransferPool();
  if (!session.transferPool) {
    session.transferPool = std::make_shared<TransferPool>(session.configuration, sockets);
  }
  session.transferPoolGeneration = generation;
  return session.transferPool;
}

TransferPool::TransferPool(const URLSessionConfiguration& configuration, SocketTable& sockets)
    : configuration_(configuration), share_(makeShare()), sockets_(sockets) {}

TransferPool::~TransferPool() {
  idle_.clear();
  curl_share_cleanup(share_);
}

std::unique_ptr<Transfer> TransferPool::take() {
  if (idle_.empty()) return std::make_unique<Transfer>(configuration_, share_, sockets_);
  auto transfer = std::move(idle_.back());
  idle_.pop_back();
  return transfer;
}

void TransferPool::recycle(std::unique_ptr<Transfer> transfer) {
  // With a proxy, a handle may still refer to a trailer of the proxy's answer: libcurl stores such
  // trailers without calling the debug function first (Transfer::trackFirstField).
  if (!configuration_.proxy.empty() || idle_.size() >= maximumIdleTransfers) return;
  transfer->clear();
  try {
    idle_.push_back(std::move(transfer));
  } catch (const std::bad_alloc&) {
    return;  // The next exchange creates a new transfer.
  }
}

}  // namespace quorvelkit
