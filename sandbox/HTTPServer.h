// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"

#include <functional>
#include <memory>
#include <string>

namespace quorvelkit::sandbox {

/// An HTTP server on the loopback interface. Calls the handler on its own threads.
class HTTPServer {
 public:
  /// Receives one line for each answered request: method, path, status, size, time. The line has no
  /// parameters, header fields or bodies, and therefore no secrets. Called on the server's threads.
  using Log = std::function<void(const std::string& line)>;

  explicit HTTPServer(HTTPHandler handler, Log log = nullptr);
  /// Calls stop().
  ~HTTPServer();
  HTTPServer(const HTTPServer&) = delete;
  HTTPServer& operator=(const HTTPServer&) = delete;

  /// Binds to a port, 0 for any free one. Returns the port, or 0 on failure. Call it once. From
  /// then on clients can connect; they wait until start().
  int bind(int port);
  /// Starts to answer requests.
  void start();
  /// Waits for running requests, then closes all connections. Idle connections delay it by at most
  /// one second.
  void stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quorvelkit::sandbox
