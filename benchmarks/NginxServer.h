// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace quorvelkit::bench {

/// One nginx worker on a free loopback port, with everything it writes in a temporary folder. It
/// serves "/1kB" and "/1MB", and stands in for the three servers of the library: login,
/// configuration, and "/v4/route" with a route of 1,000 points. Throws where nginx does not start.
class NginxServer {
 public:
  NginxServer();
  ~NginxServer();
  NginxServer(const NginxServer&) = delete;
  NginxServer& operator=(const NginxServer&) = delete;

  /// "http://127.0.0.1:PORT"
  std::string baseURL() const;

 private:
  void writeFiles() const;
  bool answers() const;

  std::filesystem::path folder_;
  std::uint16_t port_ = 0;
  pid_t process_ = -1;
};

}  // namespace quorvelkit::bench
