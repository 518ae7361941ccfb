// SPDX-License-Identifier: Apache-2.0
// Names that do not resolve, or not yet. This program has a resolver and a list of interfaces of
// its own, which the network library finds in place of the system's.
#include "tests/support/Call.h"
#include "tests/support/TestServer.h"

#include <QuorvelPlatform/NeverDestroyed.h>
#include <QuorvelPlatform/URLError.h>

#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>

#include <atomic>
#include <cstring>

namespace {

std::atomic<bool> online = true;
// The resolver's thread may outlive the test.
const quorvelkit::NeverDestroyed<quorvelkit::test::Awaited<bool>> asked, mayAnswer;

}  // namespace

extern "C" int getaddrinfo(const char* host, const char*, const addrinfo*, addrinfo**) {
  if (std::strcmp(host, "slow.test") == 0) {
    asked->set(true);
    mayAnswer->get();
  }
  return EAI_NONAME;
}

extern "C" int getifaddrs(ifaddrs** interfaces) noexcept {
  static sockaddr_in address{AF_INET, 0, {}, {}};
  static ifaddrs loopback{}, ethernet{};
  loopback.ifa_flags = IFF_UP | IFF_LOOPBACK;
  loopback.ifa_addr = ethernet.ifa_addr = reinterpret_cast<sockaddr*>(&address);
  ethernet.ifa_flags = IFF_UP;
  loopback.ifa_next = online ? &ethernet : nullptr;
  *interfaces = &loopback;
  return 0;
}

extern "C" void freeifaddrs(ifaddrs*) noexcept {}

namespace quorvelkit {
namespace {

using namespace quorvelkit::test;

TEST(ResolverTest, AnUnknownNameIsNotAMissingNetwork) {
  EXPECT_EQ(send(requestFor("http://unknown.test/")).code(), URLError::cannotFindHost);
  URLSessionConfiguration configuration;
  configuration.proxy = "http://unknown.test:1";
  EXPECT_EQ(send(requestFor("http://127.0.0.1/"), URLSession::make(configuration)).code(),
            URLError::cannotFindHost);
  online = false;
  EXPECT_EQ(send(requestFor("http://unknown.test/")).code(), URLError::notConnectedToInternet);
}

TEST(ResolverTest, ACancelledTaskDoesNotWaitForItsName) {
  const Call call(requestFor("http://slow.test/"));
  call.task->resume();
  asked->get();
  call.task->cancel();
  EXPECT_EQ(call.result().code(), URLError::cancelled);
  const TestServer server(TestServer::answeringOnce("HTTP/1.1 200 OK\r\n\r\nok"));
  EXPECT_EQ(send(requestFor(server.url())).body(), "ok");
  mayAnswer->set(true);
}

}  // namespace
}  // namespace quorvelkit
