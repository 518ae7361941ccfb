// SPDX-License-Identifier: Apache-2.0
#include "tests/kit/FakeServer.h"
#include "tests/loops/AsioLoop.h"
#include "tests/support/Awaited.h"

#include <QuorvelKit/QVNavigation.h>
#include <QuorvelPlatform/MainQueueThread.h>

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace quorvelkit::test {
namespace {

using Result = QVCallResult<QVRouteResponse>;

class AsioCallTest : public testing::Test {
 protected:
  AsioCallTest() { server.set("/v4/route", {200, R"({"points":[{"lat":1,"lon":2}]})"}); }

  static QVCall<QVRouteResponse> call() {
    return {QVNavigation::route,
            std::make_shared<QVRouteRequest>(Coordinate{1, 2}, Coordinate{3, 4})};
  }
  static std::size_t points(const Result& result) { return result->route()->points().size(); }
  static std::int64_t code(const Result& result) { return result.error()->code(); }

  FakeServer server;
  net::io_context context;
};

// The context has no other work: it runs until the handler has run.
TEST_F(AsioCallTest, HandlerRunsOnItsExecutorAndIsWorkOfTheContext) {
  const NetEventLoop loop(context);
  std::unique_ptr<std::size_t> found;
  netResult(call(), net::bind_executor(context, [&, owned = std::make_unique<std::size_t>()](
                                                    const Result& result) mutable {
              *owned = points(result);
              found = std::move(owned);
            }));
  EXPECT_EQ(found, nullptr);
  context.run();
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(*found, 1U);
}

TEST_F(AsioCallTest, HandlerRunsOnItsExecutorWhileAnotherThreadRunsTheMainQueue) {
  const MainQueueThread thread;
  const auto strand = net::make_strand(context);
  std::thread::id ranOn;
  bool isOnStrand = false;
  netResult(call(), net::bind_executor(strand, [&](const Result&) {
              ranOn = std::this_thread::get_id();
              isOnStrand = strand.running_in_this_thread();
            }));
  context.run();
  EXPECT_EQ(ranOn, std::this_thread::get_id());
  EXPECT_TRUE(isOnStrand);
  EXPECT_EQ(points(netResult(call(), net::use_future).get()), 1U);
  const Awaited<bool> isOnMainQueue;
  netResult(call(), [isOnMainQueue](const Result&) {
    isOnMainQueue.set(MainQueue::main().isCurrentThread());
  });
  EXPECT_TRUE(isOnMainQueue.get());
}

TEST_F(AsioCallTest, ResultSaysWhyNothingWasSent) {
  const MainQueueThread thread;
  QVBackendless::setBaseURL("127.0.0.1:8080");
  const Result result = netResult(call(), net::use_future).get();
  ASSERT_TRUE(result.notSent());
  EXPECT_EQ(result.notSent()->reason(), QVNotSent::Reason::unusableBaseURL);
}

// The handler is destroyed with the context. The answer that arrives later is ignored.
TEST_F(AsioCallTest, ContextMayEndBeforeTheCall) {
  server.hold(loginPath);
  auto pending = call();
  const auto owned = std::make_shared<int>();
  {
    net::io_context ending;
    netResult(pending, net::bind_executor(net::make_strand(ending), [owned](const Result&) {
                ADD_FAILURE() << "The handler ran.";
              }));
    server.requests(1);
    EXPECT_EQ(owned.use_count(), 2);
  }
  EXPECT_EQ(owned.use_count(), 1);
  server.release();
  EXPECT_EQ(points(pending.wait()), 1U);
}

// Contexts end while another thread passes results to them.
TEST_F(AsioCallTest, ContextsMayEndAtAnyMoment) {
  const MainQueueThread thread;
  int ran = 0;
  for (int i = 0; i < 200; ++i) {
    net::io_context ending;
    const NetEventLoop::Executor executor(net::make_strand(ending));
    auto pending = call();
    for (int handlers = 0; handlers < 3; ++handlers)
      netResult(pending, net::bind_executor(executor, [&](const Result&) { ++ran; }));
    if (i % 2 == 0) pending.wait();
    ending.poll();
  }
  EXPECT_LE(ran, 600);
}

#if defined(ASIO_HAS_CO_AWAIT) || defined(BOOST_ASIO_HAS_CO_AWAIT)
TEST_F(AsioCallTest, CoroutineIsResumedWithTheResult) {
  const NetEventLoop loop(context);
  std::size_t found = 0;
  std::int64_t errorCode = 0;
  const auto coroutine = [&]() -> net::awaitable<void> {
    found = points(co_await netResult(call(), net::use_awaitable));
    server.set("/v4/route", {0, ""});
    errorCode = code(co_await netResult(call(), net::use_awaitable));
  };
  net::co_spawn(context, coroutine, net::detached);
  context.run();
  EXPECT_EQ(found, 1U);
  EXPECT_EQ(errorCode, URLError::notConnectedToInternet);
}
#endif

#if NET_VERSION >= 101900
TEST_F(AsioCallTest, EachTypeOfCancellationSignalCancelsTheCall) {
  const NetEventLoop loop(context);
  server.hold(loginPath);
  for (const auto type : {net::cancellation_type::terminal, net::cancellation_type::partial,
                          net::cancellation_type::total}) {
    net::cancellation_signal signal;
    auto pending = call();
    std::int64_t errorCode = 0;
    netResult(pending, net::bind_cancellation_slot(
                           signal.slot(), net::bind_executor(context, [&](const Result& result) {
                             errorCode = code(result);
                           })));
    net::post(context, [&] { signal.emit(type); });
    context.restart();
    context.run();
    EXPECT_EQ(errorCode, URLError::cancelled);
    EXPECT_FALSE(signal.slot().has_handler());
  }
  server.release();
}
#endif

TEST_F(AsioCallTest, LoopKeepsItsContextRunningOnlyIfAsked) {
  int ran = 0;
  std::unique_ptr<NetEventLoop> loop;
  const auto addBlock = [&] {
    MainQueue::main().async([&] {
      ++ran;
      loop.reset();
    });
  };
  loop = std::make_unique<NetEventLoop>(context, NetEventLoop::Work::tracked);
  {
    const std::jthread thread(addBlock);
    context.run();
  }
  EXPECT_EQ(ran, 1);
  loop = std::make_unique<NetEventLoop>(context);
  context.restart();
  context.run();
  addBlock();
  context.restart();
  context.run();
  EXPECT_EQ(ran, 2);
}

}  // namespace
}  // namespace quorvelkit::test
