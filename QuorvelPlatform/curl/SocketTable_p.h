// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

namespace quorvelkit {

/// The local and the remote port of a connection. libcurl identifies connections by them.
struct ConnectionPorts {
  int local = 0;
  int remote = 0;
};

/// The open sockets of libcurl, to detect stale input. Used on the IO thread.
///
/// libcurl 7.88 takes bytes that arrived on an idle connection for the answer to the next request.
/// A connection for which hasStaleInput() returns true must not be used.
class SocketTable {
 public:
  /// Opens a socket that child programs do not inherit. Returns -1 if that fails.
  int open(int family, int type, int protocol, int remotePort);
  void close(int socket);

  /// Marks a connection as HTTP/1.x: while it is idle, the server must not send anything.
  void markAsHTTP1(const ConnectionPorts& ports);
  /// Returns true if an HTTP/1.x connection has unread bytes or was closed by the server.
  bool hasStaleInput(const ConnectionPorts& ports);

 private:
  struct Entry {
    int socket;
    int remotePort;
    int localPort;  // 0 until find() needs it.
    bool isHTTP1;
  };

  Entry* find(const ConnectionPorts& ports);

  std::vector<Entry> entries_;
};

}  // namespace quorvelkit
