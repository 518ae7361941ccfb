// SPDX-License-Identifier: Apache-2.0
// A network that goes down and comes up again, in a separate network namespace.
#include "tests/support/Call.h"
#include "tests/support/TestServer.h"

#include <gmock/gmock.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;
using namespace quorvelkit::test;

// Switches the loopback interface of the namespace on or off. Returns true on success.
bool setLoopback(bool up) {
  const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request{};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = up ? IFF_UP : 0;
  const bool done = ::ioctl(socket, SIOCSIFFLAGS, &request) == 0;
  ::close(socket);
  return done;
}

// The threads of the session inherit the namespace of this thread, because it starts the first
// task.
TEST(NetworkTest, SessionWorksAgainAfterNetworkOutage) {
  if (::unshare(CLONE_NEWNET) != 0 || !setLoopback(true)) {
    GTEST_SKIP() << "creating a network namespace requires root";
  }
  const TestServer server([](const ReceivedRequest& received, Connection& connection) {
    received.target == "/stall" ? connection.stall() : connection.answer(200, "ok");
  });
  const auto session = URLSession::make();
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(send(requestFor(server.url()), session).body(), "ok");
    const auto requestWithShortTimeout = [&](const char* path) {
      URLRequest request = requestFor(server.url(path));
      request.setTimeoutInterval(100ms);
      return request;
    };
    const Call running(requestWithShortTimeout("/stall"), session);
    running.task->resume();
    ASSERT_TRUE(setLoopback(false));
    EXPECT_EQ(running.result().code(), URLError::timedOut);
    // Some kernels report an unreachable network, others drop the packets.
    EXPECT_THAT(send(requestWithShortTimeout("/"), session).code(),
                testing::AnyOf(URLError::notConnectedToInternet, URLError::timedOut));
    ASSERT_TRUE(setLoopback(true));
    EXPECT_EQ(send(requestFor(server.url()), session).body(), "ok");
  }
}

}  // namespace
}  // namespace quorvelkit
