// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"

#include <functional>
#include <memory>
#include <string>

namespace quorvelkit::sandbox {

/// An HTTP server on the loopback interface with threads of its own.
class HTTPServer {
 public:
  /// Takes one line about each answered request: method, path, status, time. Parameters, header
  /// fields and bodies stay out, so that nothing secret can get in. Called on any thread.
  using Log = std::function<void(const std::string& line)>;

  explicit HTTPServer(HTTPHandler handler, Log log = nullptr);
  /// Stops.
  ~HTTPServer();
  HTTPServer(const HTTPServer&) = delete;
  HTTPServer& operator=(const HTTPServer&) = delete;

  /// Takes a port, 0 for any free one. Returns the port; 0 when it cannot be had. To be called
  /// once. Clients may connect from now on, and wait.
  int bind(int port);
  /// Starts to answer.
  void start();
  /// Waits for the answers under way, then closes. Idle connections delay it by a second at most.
  void stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quorvelkit::sandbox
