// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Call.h"
#include "tests/support/Certificates.h"
#include "tests/support/TestServer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;
using namespace quorvelkit::test;

class TLSTest : public testing::Test {
 protected:
  std::shared_ptr<URLSession> session() const {
    return URLSession::make({.timeoutIntervalForRequest = 5s, .caFile = certificates.caFile()});
  }
  static void answer(const ReceivedRequest&, Connection& connection) {
    connection.answer(200, "ok");
  }

  const Certificates certificates;
};

// The fault table checks the errors.
TEST_F(TLSTest, ServerWithBadCertificateGetsNoRequest) {
  for (const char* certificate : {"expired", "other-host", "untrusted", "self-signed"}) {
    SCOPED_TRACE(certificate);
    std::atomic<bool> served = false;
    const TestServer server([&](Connection& connection) { served = connection.read().has_value(); },
                            certificates.tls(certificate));
    EXPECT_NE(send(requestFor(server.url()), session()).code(), 0);
    EXPECT_FALSE(served);
  }
}

// libcurl would write the TLS keys of its connections to this file.
TEST_F(TLSTest, KeyLogVariableIsIgnored) {
  const std::string file = testing::TempDir() + "/keys-" + std::to_string(getpid());
  setenv("SSLKEYLOGFILE", file.c_str(), 1);
  const TestServer server(answer, certificates.tls("good"));
  EXPECT_EQ(send(requestFor(server.url()), session()).body(), "ok");
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(std::getenv("SSLKEYLOGFILE"), file);
}

// TechnicalTextTest has CA files that cannot be read.
TEST_F(TLSTest, FailsWithoutTrustedAuthority) {
  const TestServer server(answer, certificates.tls("good"));
  EXPECT_EQ(send(requestFor(server.url())).code(), URLError::serverCertificateHasUnknownRoot);
}

// Writing to a closed TLS connection raises SIGPIPE, which would end this process.
TEST_F(TLSTest, BrokenPipeRaisesNoSignal) {
  const TestServer server(
      [](Connection& connection) {
        connection.readHeaderBlock();
        connection.reset();
      },
      certificates.tls("good"));
  const URLRequest request = requestFor(server.url(), "POST", std::string(5'000'000, 'x'));
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(send(request, session()).code(), URLError::networkConnectionLost);
}

}  // namespace
}  // namespace quorvelkit
