// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Call.h"

#include <QuorvelPlatform/URLProtocol.h>
#include <QuorvelPlatform/URLSession.h>

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace quorvelkit {
namespace {

using namespace quorvelkit::test;
using State = URLSessionDataTask::State;

// Records the calls of a protocol.
struct ProtocolCalls {
  std::atomic<int> started = 0, stopped = 0;
  std::thread::id startThread, stopThread;
  Awaited<bool> destroyed;
};

// A protocol that runs a function.
using Script = std::function<void(const URLRequest&, std::shared_ptr<URLProtocolClient>)>;
class ScriptedProtocol : public URLProtocol {
 public:
  ScriptedProtocol(Script script, std::shared_ptr<ProtocolCalls> calls)
      : script_(std::move(script)), calls_(std::move(calls)) {}
  ~ScriptedProtocol() override { calls_->destroyed.set(true); }
  void startLoading(const URLRequest& request, std::shared_ptr<URLProtocolClient> client) override {
    ++calls_->started;
    calls_->startThread = std::this_thread::get_id();
    script_(request, std::move(client));
  }
  void stopLoading() override {
    ++calls_->stopped;
    calls_->stopThread = std::this_thread::get_id();
  }

 private:
  const Script script_;
  const std::shared_ptr<ProtocolCalls> calls_;
};

class URLProtocolTest : public testing::Test {
 protected:
  std::shared_ptr<ProtocolCalls> calls = std::make_shared<ProtocolCalls>();

  URLProtocol::Registration install(Script script) {
    return URLProtocol::registerFactory([script = std::move(script), calls = calls](const auto&) {
      return std::make_unique<ScriptedProtocol>(script, calls);
    });
  }
};

std::shared_ptr<const URLResponse> someResponse(const URLRequest& request) {
  return std::make_shared<URLResponse>(request.url(), "text/plain", 2, std::nullopt);
}

TEST_F(URLProtocolTest, AnswersInsteadOfNetwork) {
  install([](const URLRequest& request, auto client) {
    client->didReceive(someResponse(request));
    for (const char* piece : {"", "a", "", "b", "c"})
      client->didLoad(Data(piece));
    client->didFinishLoading();
    client->didLoad(Data("late"));
    client->didFail(URLError::make(URLError::unknown, request.url()));
  });
  Call call(requestFor("anything:at-all"));
  EXPECT_EQ(call.task->state(), State::suspended);
  call.task->resume();
  call.task->resume();
  const Result result = call.result();
  EXPECT_EQ(result.data->view(), "abc");
  EXPECT_EQ(result.response->mimeType(), "text/plain");
  EXPECT_FALSE(result.error);
  EXPECT_EQ(call.task->state(), State::completed);
  call.task->cancel();
  call.task->resume();
  EXPECT_EQ(call.task->state(), State::completed);
  calls->destroyed.get();
  EXPECT_EQ(calls->started, 1);
  EXPECT_EQ(calls->stopped, 1);
  EXPECT_EQ(calls->startThread, calls->stopThread);
  EXPECT_NE(std::this_thread::get_id(), result.thread);
  EXPECT_EQ(call.completions(), 1);
}

TEST_F(URLProtocolTest, LastRegisteredFactoryIsAskedFirst) {
  const auto answering = [](const char* text) {
    return [text](const URLRequest&, auto client) {
      client->didLoad(Data(text));
      client->didFinishLoading();
    };
  };
  install(answering("first"));
  const auto registration = install(answering("second"));
  URLProtocol::registerFactory([](const URLRequest&) { return nullptr; });
  const auto answer = [] { return std::string(send(requestFor("a:b")).body()); };
  EXPECT_EQ(answer(), "second");
  URLProtocol::unregister(registration);
  URLProtocol::unregister(registration);
  EXPECT_EQ(answer(), "first");
}

TEST_F(URLProtocolTest, FailedTaskHasNoBodyAndNoResponse) {
  const Error failure = URLError::make(URLError::badServerResponse, *URL::parse("a:b"));
  for (const bool isTooLong : {false, true}) {
    install([=](const URLRequest& request, auto client) {
      client->didReceive(someResponse(request));
      client->didLoad(Data("part"));
      isTooLong ? client->didLoad(Data("1234567")) : client->didFail(failure);
    });
    const Result result = send(requestFor("a:b"), URLSession::make({.maximumBodySize = 10}));
    EXPECT_FALSE(result.data || result.response);
    EXPECT_EQ(result.code(), isTooLong ? URLError::dataLengthExceedsMaximum : failure.code());
  }
}

TEST_F(URLProtocolTest, CancelWorksInEveryState) {
  const Awaited<std::shared_ptr<URLProtocolClient>> started;
  install([started](const URLRequest&, auto client) { started.set(client); });

  Call before(requestFor("a:b"));
  before.task->cancel();
  before.task->cancel();
  before.task->resume();
  EXPECT_EQ(before.result().error->code(), URLError::cancelled);
  EXPECT_EQ(before.task->state(), State::completed);

  Call inFlight(requestFor("a:b"));
  inFlight.task->resume();
  const auto client = started.get();
  EXPECT_EQ(inFlight.task->state(), State::running);
  inFlight.task->cancel();
  EXPECT_EQ(inFlight.result().error->code(), URLError::cancelled);
  client->didFinishLoading();
  calls->destroyed.get();
  EXPECT_EQ(calls->started, 1);
  EXPECT_EQ(before.completions() + inFlight.completions(), 2);
}

// While the first handler runs, the second task has ended but cannot complete. A cancel() at that
// time must still be seen.
TEST_F(URLProtocolTest, CancelBeforeHandlerGivesCancelledError) {
  install([](const URLRequest&, auto client) { client->didFinishLoading(); });
  const auto session = URLSession::make();
  Call second(requestFor("a:b"), session);
  Call first(requestFor("a:b"), session, [&] {
    second.task->resume();
    while (calls->stopped < 2)
      std::this_thread::yield();
    second.task->cancel();
    EXPECT_EQ(second.task->state(), State::canceling);
    first.task->cancel();
  });
  first.task->resume();
  EXPECT_FALSE(first.result().error);
  EXPECT_EQ(second.result().error->code(), URLError::cancelled);
}

TEST_F(URLProtocolTest, HandlerIsDestroyedAfterItRan) {
  install([](const URLRequest&, auto client) { client->didFinishLoading(); });
  // The handler owns its session and, as a reference cycle, its own task.
  struct Owned {
    std::shared_ptr<URLSession> session = URLSession::make();
    std::shared_ptr<URLSessionDataTask> task;
    Awaited<std::thread::id> gone;
    ~Owned() { gone.set(std::this_thread::get_id()); }
  };
  auto owned = std::make_shared<Owned>();
  const auto gone = owned->gone;
  const Awaited<std::thread::id> ran;
  auto task = owned->session->dataTask(
      requestFor("a:b"), [owned, ran](auto, auto, auto) { ran.set(std::this_thread::get_id()); });
  owned->task = task;
  owned.reset();
  task->resume();
  task.reset();
  EXPECT_EQ(gone.get(), ran.get());

  auto dropped = std::make_shared<Owned>();
  const auto droppedGone = dropped->gone;
  URLSession::make()->dataTask(requestFor("a:b"), [dropped](auto, auto, auto) {});
  dropped.reset();
  EXPECT_EQ(droppedGone.get(), std::this_thread::get_id());
}

TEST(URLProtocolDeathTest, ProgrammingErrorsStopProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(URLSession::make()->dataTask(requestFor("a:b"), nullptr), "completion handler");
  EXPECT_DEATH(URLProtocol::registerFactory(nullptr), "factory");
  EXPECT_DEATH(
      {
        Call call(requestFor("a:b"), URLSession::make(), [] { throw 1; });
        call.task->cancel();
        call.result();
      },
      "completion handler .* threw an exception");
}

}  // namespace
}  // namespace quorvelkit
