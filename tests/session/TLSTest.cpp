// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Call.h"
#include "tests/support/Certificates.h"
#include "tests/support/TestServer.h"

#include <QuorvelPlatform/URLError.h>

#include <gtest/gtest.h>
#include <openssl/ssl.h>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;
using namespace quorvelkit::test;

class TLSTest : public testing::Test {
 protected:
  std::shared_ptr<URLSession> session() const {
    URLSessionConfiguration configuration;
    configuration.caFile = certificates.caFile();
    configuration.timeoutIntervalForRequest = 5s;
    return URLSession::make(configuration);
  }
  static TestServer::Script answering() {
    return TestServer::answering(
        [](const auto&, auto& connection) { connection.answer(200, "ok"); });
  }

  const Certificates certificates;
};

TEST_F(TLSTest, CertificatesAndHostNamesAreVerified) {
  const struct {
    const char* certificate;
    std::int64_t code;
  } cases[] = {
      {"good", 0},
      {"expired", URLError::serverCertificateHasBadDate},
      {"not-yet-valid", URLError::serverCertificateNotYetValid},
      {"other-host", URLError::serverCertificateUntrusted},
      {"untrusted", URLError::serverCertificateHasUnknownRoot},
      {"self-signed", URLError::serverCertificateUntrusted},
  };
  for (const auto& [certificate, code] : cases) {
    SCOPED_TRACE(certificate);
    std::atomic<bool> served = false;
    const TestServer server(TestServer::answering([&](const auto&, auto& connection) {
                              served = true;
                              connection.answer(200, "ok");
                            }),
                            certificates.tls(certificate));
    const Result result = send(requestFor(server.url()), session());
    EXPECT_EQ(result.code(), code);
    EXPECT_EQ(served, code == 0);
  }
}

TEST_F(TLSTest, TheSystemsAuthoritiesDoNotKnowTheTests) {
  const TestServer server(answering(), certificates.tls("good"));
  EXPECT_EQ(send(requestFor(server.url())).code(), URLError::serverCertificateHasUnknownRoot);
  URLSessionConfiguration configuration;
  configuration.caFile = "/nonexistent.pem";
  EXPECT_EQ(send(requestFor(server.url()), URLSession::make(configuration)).code(),
            URLError::secureConnectionFailed);
}

TEST_F(TLSTest, HandshakesThatFail) {
  TestServer::TLS old = certificates.tls("good");
  old.highestVersion = TLS1_1_VERSION;
  const TestServer outdated(answering(), old);
  EXPECT_EQ(send(requestFor(outdated.url()), session()).code(), URLError::secureConnectionFailed);
  const auto https = [](const TestServer& server) {
    return requestFor("https://127.0.0.1:" + std::to_string(server.port()));
  };
  const TestServer plain([](Connection& connection) { connection.answer(200); });
  EXPECT_EQ(send(https(plain), session()).code(), URLError::secureConnectionFailed);
  const TestServer silent([](Connection& connection) { connection.stall(); });
  URLRequest request = https(silent);
  request.setTimeoutInterval(100ms);
  EXPECT_EQ(send(request, session()).code(), URLError::timedOut);
}

TEST_F(TLSTest, NoRedirectLeadsDownToHTTP) {
  const TestServer plain(answering());
  const TestServer secure(TestServer::answering([&](const auto& received, auto& connection) {
                            connection.answer(302, "stay",
                                              "Location: " + plain.url(received.target) + "\r\n");
                          }),
                          certificates.tls("good"));
  const TestServer upward(TestServer::answering([&](const auto&, auto& connection) {
    connection.answer(302, "", "Location: " + secure.url() + "\r\n");
  }));
  for (const TestServer* first : {&secure, &upward}) {
    const Result result = send(requestFor(first->url()), session());
    EXPECT_EQ(result.status(), 302);
    EXPECT_EQ(result.body(), "stay");
  }
  EXPECT_EQ(plain.connectionCount(), 0);
}

// A connection that dies while TLS still writes raises SIGPIPE, which would end this process.
TEST_F(TLSTest, BrokenPipesReachNobody) {
  const TestServer server(
      [](Connection& connection) {
        connection.readHead();
        connection.reset();
      },
      certificates.tls("good"));
  URLRequest request = requestFor(server.url());
  request.setHTTPMethod("POST");
  request.setHTTPBody(Data(std::string(5'000'000, 'x')));
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(send(request, session()).code(), URLError::networkConnectionLost);
  }
}

}  // namespace
}  // namespace quorvelkit
