// SPDX-License-Identifier: Apache-2.0
// A process that cannot start threads, or only one, and host names that are slow or have several
// addresses.
#include "tests/support/Call.h"
#include "tests/support/Resolver.h"
#include "tests/support/TestServer.h"
#include "tests/support/ThreadStart.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelPlatform/MainQueue.h>

#include <gmock/gmock.h>

#include <vector>

namespace quorvelkit {
namespace {

using namespace quorvelkit::test;
using testing::HasSubstr;

// The parameter is the number of session threads that can start: 0 or 1.
class ThreadStartTest : public testing::TestWithParam<int> {
 protected:
  const TestServer server{
      [](const ReceivedRequest&, Connection& connection) { connection.answer(200, "{}"); }};
  const std::shared_ptr<URLSession> session = URLSession::make();
  const std::thread::id mainThread = std::this_thread::get_id();

  void expectFailure(const Call& call, std::int64_t code) {
    if (GetParam() == 0) {
      EXPECT_FALSE(call.isDone()) << "completed inside the call";
      MainQueue::main().runPending();
    }
    const Result result = call.result();
    EXPECT_EQ(result.code(), code);
    EXPECT_FALSE(result.data || result.response);
    EXPECT_EQ(result.thread == mainThread, GetParam() == 0);
  }
};

TEST_P(ThreadStartTest, TasksFailOnceAndLaterTasksTryAgain) {
  const Call first(requestFor(server.url()), session), second(requestFor(server.url()), session),
      cancelled(requestFor(server.url()), session), last(requestFor(server.url()), session);
  threadsLeft = GetParam();
  for (const Call* call : {&first, &second}) {
    call->task->resume();
    expectFailure(*call, URLError::unknown);
    EXPECT_THAT(call->result().error->technicalDescription().value_or(""), HasSubstr("thread"));
  }
  cancelled.task->cancel();
  expectFailure(cancelled, URLError::cancelled);

  std::vector<std::optional<Error>> errors;
  const auto logIn = [&] {
    QVBackendless::setBaseURL(server.url(""));
    QVBackendless::login([&](const std::shared_ptr<QVLoginResponse>& response) {
      EXPECT_EQ(std::this_thread::get_id(), mainThread);
      errors.push_back(response->error());
    });
    const std::size_t before = errors.size();
    while (errors.size() == before && MainQueue::main().runOnce(std::chrono::seconds(20))) {
    }
  };
  logIn();
  threadsLeft = INT_MAX;
  last.task->resume();
  EXPECT_EQ(last.result().body(), "{}");
  EXPECT_NE(last.result().thread, mainThread);
  logIn();
  MainQueue::main().runPending();
  ASSERT_EQ(errors.size(), 2U);
  EXPECT_EQ(errors[0].value().code(), URLError::unknown);
  EXPECT_EQ(errors[1], std::nullopt);
  for (const Call* call : {&first, &second, &cancelled, &last})
    EXPECT_EQ(call->completions(), 1);
}

TEST_P(ThreadStartTest, ConcurrentTasksCompleteOnceWhenThreadsStart) {
  std::atomic<int> running = 0, done = 0;
  const auto inHandler = [&] {
    EXPECT_EQ(running++, 0) << "two handlers at the same time";
    --running;
    ++done;
  };
  std::vector<std::unique_ptr<Call>> calls;
  for (int i = 0; i < 120; ++i)
    calls.push_back(std::make_unique<Call>(requestFor(server.url()), session, inHandler));
  const Awaited<bool> go;
  std::vector<std::jthread> callers;
  for (std::size_t first : {0U, 1U, 2U}) {
    callers.emplace_back([&calls, &go, first] {
      go.get();
      for (std::size_t i = first; i < calls.size(); i += 3)
        calls[i]->task->resume();
    });
  }
  threadsLeft = GetParam();
  go.set(true);
  calls[0]->isDone(std::chrono::milliseconds(1));
  threadsLeft = INT_MAX;
  callers.clear();
  while (done < 120)
    MainQueue::main().runOnce(std::chrono::milliseconds(5));
  for (const auto& call : calls) {
    EXPECT_THAT(call->result().code(), testing::AnyOf(0, URLError::unknown));
    EXPECT_EQ(call->completions(), 1);
  }
}

INSTANTIATE_TEST_SUITE_P(StartedThreads, ThreadStartTest, testing::Values(0, 1));

// libcurl starts a thread for each host name.
TEST(ResolverTest, HostIsNotFoundWithoutResolverThread) {
  const TestServer server([](const auto&, auto& connection) { connection.answer(200); });
  const auto session = URLSession::make();
  EXPECT_EQ(send(requestFor(server.url()), session).code(), 0);
  const std::string named = "http://one.test:" + std::to_string(server.port());
  threadsLeft = 0;
  const Result failed = send(requestFor(named), session);
  EXPECT_EQ(failed.code(), URLError::cannotFindHost);
  EXPECT_THAT(failed.error->technicalDescription().value_or(""), HasSubstr("thread"));
  threadsLeft = INT_MAX;
  EXPECT_EQ(send(requestFor(named), session).code(), 0);
}

TEST(ResolverTest, RefusedAddressDoesNotChangeNextError) {
  const TestServer server([](const auto& request, auto& connection) {
    if (request.target == "/good") return connection.answer(200);
    connection.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nno size\r\n");
  });
  const auto session = URLSession::make();
  const std::string twoAddresses = "http://second.test:" + std::to_string(server.port());
  EXPECT_EQ(send(requestFor(twoAddresses + "/good"), session).code(), 0);
  EXPECT_EQ(send(requestFor(server.url("/bad")), session).code(), URLError::cannotParseResponse);
}

TEST(ResolverTest, CancelledTaskDoesNotWaitForResolver) {
  const Call call(requestFor("http://slow.test/"));
  call.task->resume();
  slowName->asked.get();
  call.task->cancel();
  EXPECT_EQ(call.result().code(), URLError::cancelled);
  const TestServer server([](const auto&, auto& connection) { connection.answer(200, "ok"); });
  EXPECT_EQ(send(requestFor(server.url())).body(), "ok");
  slowName->mayAnswer.set(true);
}

}  // namespace
}  // namespace quorvelkit
