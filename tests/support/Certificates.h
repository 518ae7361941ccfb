// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/TestServer.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace quorvelkit::test {

/// Throw-away certificates for the loopback interface in a directory of their own, made by the
/// openssl program: good, expired, not-yet-valid, other-host, untrusted and self-signed.
class Certificates {
 public:
  Certificates() {
    const bool made = mkdtemp(directory_.data()) != nullptr;
    const std::string command = "'" QUORVELKIT_MAKE_CERTIFICATES "' '" + directory_ + "'";
    if (!made || std::system(command.c_str()) != 0)
      throw std::runtime_error("No certificates could be made.");
  }
  Certificates(const Certificates&) = delete;
  Certificates& operator=(const Certificates&) = delete;
  ~Certificates() { std::filesystem::remove_all(directory_); }

  /// What a server is to be started with.
  TestServer::TLS tls(const std::string& name) const {
    return {directory_ + '/' + name + ".pem", directory_ + '/' + name + ".key"};
  }
  /// The authority behind all but the untrusted and the self-signed one.
  std::string caFile() const { return directory_ + "/trusted-authority.pem"; }

 private:
  std::string directory_ =
      std::filesystem::temp_directory_path() / "quorvelkit-certificates-XXXXXX";
};

}  // namespace quorvelkit::test
