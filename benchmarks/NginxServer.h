// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace quorvelkit::bench {

/// Runs one nginx worker on a free loopback port, with all its files in a temporary folder. Serves
/// "/1kB" and "/1MB", and as a backend the login, the configuration, and "/v4/route" with a route
/// of 1,000 points.
class NginxServer {
 public:
  /// Throws if nginx does not start within 20 seconds.
  NginxServer();
  ~NginxServer();
  NginxServer(const NginxServer&) = delete;
  NginxServer& operator=(const NginxServer&) = delete;

  /// Example: "http://127.0.0.1:40123".
  std::string baseURL() const;

 private:
  void writeFiles() const;
  bool acceptsConnections() const;

  std::filesystem::path folder_;
  std::uint16_t port_ = 0;
  pid_t process_ = -1;
};

}  // namespace quorvelkit::bench
