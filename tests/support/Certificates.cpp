// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Certificates.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace quorvelkit::test {

Certificates::Certificates()
    : directory_(std::filesystem::temp_directory_path() / "quorvelkit-certificates-XXXXXX") {
  const bool made = mkdtemp(directory_.data()) != nullptr;
  const std::string command =
      "'" QUORVELKIT_TEST_SUPPORT "/make-certificates' '" + directory_ + "'";
  if (!made || std::system(command.c_str()) != 0) {
    throw std::runtime_error("No certificates could be made.");
  }
}

Certificates::~Certificates() { std::filesystem::remove_all(directory_); }

TestServer::TLS Certificates::tls(const std::string& name) const {
  return {directory_ + '/' + name + ".pem", directory_ + '/' + name + ".key"};
}

}  // namespace quorvelkit::test
