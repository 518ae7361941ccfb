// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/URL.h>
#include <QuorvelPlatform/curl/HostConnectionLimiter_p.h>

#include <utility>

namespace quorvelkit {

namespace {

std::string hostAndPort(const URL& url) {
  constexpr int httpPort = 80;
  std::string text(url.host().value_or(""));
  for (char& c : text)
    c = asciiLowered(c);
  return text.append(":").append(std::to_string(url.port().value_or(httpPort)));
}

}  // namespace

void HostConnectionLimiter::acquire(Client& client, const URL& url) {
  if (equalsIgnoringASCIICase(url.scheme().value_or(""), "http")) {
    const auto found = hosts_.try_emplace(hostAndPort(url)).first;
    Host& host = found->second;
    const bool isFull = host.connected == connectionsPerHost;
    if (isFull) client.waiting_ = host.waiting.insert(host.waiting.end(), &client);
    client.host_ = found;
    if (isFull) return;
    ++host.connected;
  }
  client.didAcquireConnection();
}

void HostConnectionLimiter::release(Client& client) {
  const auto found = std::exchange(client.host_, std::nullopt);
  if (!found) return;
  Host& host = (*found)->second;
  if (const auto waiting = std::exchange(client.waiting_, std::nullopt)) {
    host.waiting.erase(*waiting);
  } else if (host.waiting.empty()) {
    if (--host.connected == 0) hosts_.erase(*found);
  } else {
    Client& next = *host.waiting.front();
    host.waiting.pop_front();
    next.waiting_.reset();
    next.didAcquireConnection();
  }
}

}  // namespace quorvelkit
