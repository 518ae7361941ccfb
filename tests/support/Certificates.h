// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/TestServer.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace quorvelkit::test {

/// Test certificates for the loopback interface, created by the openssl program in a temporary
/// directory: good, expired, not-yet-valid, other-host, untrusted and self-signed.
class Certificates {
 public:
  Certificates() {
    const bool made = mkdtemp(directory_.data()) != nullptr;
    const std::string command = "'" QUORVELKIT_MAKE_CERTIFICATES "' '" + directory_ + "'";
    if (!made || std::system(command.c_str()) != 0)
      throw std::runtime_error("The test certificates could not be created.");
  }
  Certificates(const Certificates&) = delete;
  Certificates& operator=(const Certificates&) = delete;
  ~Certificates() { std::filesystem::remove_all(directory_); }

  /// The TLS settings of a server with this certificate.
  TestServer::TLS tls(const std::string& name) const {
    return {directory_ + '/' + name + ".pem", directory_ + '/' + name + ".key"};
  }
  /// The CA file that verifies all certificates except untrusted and self-signed.
  std::string caFile() const { return directory_ + "/trusted-authority.pem"; }

 private:
  std::string directory_ =
      std::filesystem::temp_directory_path() / "quorvelkit-certificates-XXXXXX";
};

}  // namespace quorvelkit::test
