// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

namespace quorvelkit {

/// The two ports of a connection, by which the network library names one.
struct ConnectionPorts {
  int local = 0;
  int remote = 0;
};

/// The sockets of the network library. It (7.88) takes bytes that came on a kept connection before
/// a request was sent for the answer to that request; what this list tells keeps such a connection
/// from being used. Belongs to the IO thread.
class OpenSockets {
 public:
  /// A new socket, not inherited by other programs; -1 when none can be had.
  int open(int family, int type, int protocol, int remotePort);
  void close(int socket);

  /// Notes that answers come in turn on this connection, each after its request, as those of
  /// HTTP/1.1 do.
  void answersInTurn(const ConnectionPorts& ports);
  /// Whether something came out of turn: bytes, or the end of the connection.
  bool hasStrayInput(const ConnectionPorts& ports);

 private:
  struct Entry {
    int socket;
    int remotePort;
    int localPort;  // 0 until it is asked for.
    bool inTurn;
  };

  Entry* find(const ConnectionPorts& ports);

  std::vector<Entry> entries_;
};

}  // namespace quorvelkit
