// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/TestServer.h"

#include <string>

namespace quorvelkit::test {

/// Throw-away certificates for the loopback interface in a directory of their own, made by the
/// openssl program: good, expired, not-yet-valid, other-host, untrusted and self-signed.
class Certificates {
 public:
  Certificates();
  Certificates(const Certificates&) = delete;
  Certificates& operator=(const Certificates&) = delete;
  ~Certificates();

  /// What a server is to be started with.
  TestServer::TLS tls(const std::string& name) const;
  /// The authority behind all but the untrusted and the self-signed one.
  std::string caFile() const { return directory_ + "/trusted-authority.pem"; }

 private:
  std::string directory_;
};

}  // namespace quorvelkit::test
