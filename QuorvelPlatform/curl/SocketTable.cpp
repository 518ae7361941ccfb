// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/curl/SocketTable_p.h>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

namespace quorvelkit {

namespace {

int localPortOf(int socket) {
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (::getsockname(socket, generic, &size) != 0) return 0;
  // IPv4 and IPv6 addresses have the port at the same offset.
  return ntohs(reinterpret_cast<const sockaddr_in*>(&address)->sin_port);
}

}  // namespace

int SocketTable::open(int family, int type, int protocol, int remotePort) {
  entries_.push_back({-1, remotePort, 0, false});
  const int socket = ::socket(family, type | SOCK_CLOEXEC, protocol);
  entries_.back().socket = socket;
  if (socket < 0) entries_.pop_back();
  return socket;
}

void SocketTable::close(int socket) {
  std::erase_if(entries_, [&](const Entry& entry) { return entry.socket == socket; });
  ::close(socket);
}

SocketTable::Entry* SocketTable::find(const ConnectionPorts& ports) {
  for (Entry& entry : entries_) {
    if (entry.remotePort != ports.remote) continue;
    if (entry.localPort == 0) entry.localPort = localPortOf(entry.socket);
    if (entry.localPort == ports.local) return &entry;
  }
  return nullptr;
}

void SocketTable::markAsHTTP1(const ConnectionPorts& ports) {
  if (Entry* const entry = find(ports)) entry->isHTTP1 = true;
}

bool SocketTable::hasStaleInput(const ConnectionPorts& ports) {
  const Entry* const entry = find(ports);
  if (entry == nullptr || !entry->isHTTP1) return false;
  char byte = 0;
  return ::recv(entry->socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) >= 0;
}

}  // namespace quorvelkit
