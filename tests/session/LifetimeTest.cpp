// SPDX-License-Identifier: Apache-2.0
// Cancellation, destruction, process exit, fork and loss of the network while tasks are running.
#include "tests/support/Call.h"
#include "tests/support/Certificates.h"
#include "tests/support/TestServer.h"

#include <gmock/gmock.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;
using namespace quorvelkit::test;

// Answers "/quick", sends nothing for "/stall", resets for "/reset". For other paths, sends a part
// of the body and then nothing.
TestServer::Script script() {
  return TestServer::answering([](const ReceivedRequest& received, Connection& connection) {
    if (received.target == "/stall") return connection.stall();
    if (received.target == "/reset") return connection.reset();
    if (received.target == "/quick") return connection.answer(200, "quick");
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n{");
    connection.stall();
  });
}

TEST(LifetimeTest, HandlerMayCancelStartAndDestroyOtherCalls) {
  const TestServer server(script());
  auto session = URLSession::make();
  auto stalled = std::make_unique<Call>(requestFor(server.url("/stall")), session);
  auto next = std::make_unique<Call>(requestFor(server.url("/quick")), session);
  const Awaited<bool> dropped;
  const auto nextTask = next->task;
  auto first = std::make_unique<Call>(requestFor(server.url("/quick")), session, [&] {
    stalled->task->cancel();
    nextTask->resume();
    stalled.reset();
    session.reset();
    dropped.set(true);
  });
  stalled->task->resume();
  first->task->resume();
  EXPECT_EQ(first->result().code(), 0);
  EXPECT_TRUE(dropped.get());
  EXPECT_EQ(next->result().body(), "quick");
}

// One thread cancels while another starts.
TEST(LifetimeTest, RandomCancellationsCompleteOnce) {
  const TestServer server(script());
  const auto session = URLSession::make();
  std::minstd_rand random(7);
  const char* const paths[] = {"/quick", "/stall", "/reset", "/half"};
  std::vector<std::unique_ptr<Call>> calls;
  for (int i = 0; i < 1000; ++i)
    calls.push_back(std::make_unique<Call>(requestFor(server.url(paths[random() % 4])), session));
  std::atomic<std::size_t> started = 0;
  std::jthread canceller([&] {
    std::minstd_rand cancelRandom(1);
    for (std::size_t i = 0; i < calls.size(); ++i) {
      while (started <= i)
        std::this_thread::yield();
      // A task that was started recently or starts soon.
      const std::size_t last = std::min(i + 5, calls.size() - 1);
      calls[last - cancelRandom() % std::min<std::size_t>(last, 25)]->task->cancel();
    }
  });
  for (const auto& call : calls) {
    call->task->resume();
    if (random() % 4 == 0) std::this_thread::yield();
    ++started;
  }
  canceller.join();
  for (const auto& call : calls)
    call->task->cancel();
  for (const auto& call : calls) {
    const Result result = call->result();
    EXPECT_THAT(result.code(),
                testing::AnyOf(0, URLError::cancelled, URLError::networkConnectionLost));
    EXPECT_EQ(result.data.has_value(), result.code() == 0);
  }
  // The session still works, and no handler ran twice.
  EXPECT_EQ(send(requestFor(server.url("/quick")), session).body(), "quick");
  for (const auto& call : calls)
    EXPECT_EQ(call->completions(), 1);
}

// AddressSanitizer (Clang 14) does not support fork() in a process with threads: it may deadlock,
// and it reports memory of the parent's threads as leaks of the child.
const std::vector<const char*> exitScenarios = {
    "main", "handler",   "protocol",        "late", "idle", "name", "threadless",
#ifndef QUORVELKIT_TESTS_ADDRESSES
    "fork", "fork-name", "fork-threadless",
#endif
};

TEST(LifetimeTest, ProcessExitsCleanlyWithRunningTasks) {
  const Certificates certificates;
  const TestServer plain(script()), secure(script(), certificates.tls("good"));
  for (const char* scenario : exitScenarios) {
    for (const TestServer* server : {&plain, &secure}) {
      for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(std::string(scenario) + ' ' + server->url());
        const std::string command = std::string("exec '" QUORVELKIT_EXIT_PROGRAM "' ") + scenario +
                                    ' ' + server->url() + ' ' + certificates.caFile();
        const int status = std::system(command.c_str());
        ASSERT_TRUE(WIFEXITED(status));
        ASSERT_EQ(WEXITSTATUS(status), 0);
      }
    }
  }
}

// --- a network that goes down and comes up again, in a separate network namespace

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
