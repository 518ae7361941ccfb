// SPDX-License-Identifier: Apache-2.0
// The forms of waiting for a call beside its completion handler: calls of 1 kB from nginx over
// loopback, 64 in flight, on the thread that runs the main queue.
#include "NginxServer.h"

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelPlatform/MainQueue.h>

#include <benchmark/benchmark.h>

#include <coroutine>
#include <deque>
#include <exception>
#include <stdexcept>

namespace quorvelkit::bench {
namespace {

constexpr std::size_t inFlight = 64;
constexpr std::size_t callsPerIteration = 256;

const NginxServer& server() {
  static const NginxServer nginx;
  return nginx;
}

struct KilobyteRequest : QVBaseRequest {
  std::optional<URL> url() override { return URL::parse(server().baseURL() + "/1kB"); }
};
struct KilobyteResponse : QVBaseResponse {
  using QVBaseResponse::QVBaseResponse;
};
// Needs no configuration.
struct Kilobytes : QVBaseService {
  static std::shared_ptr<URLSessionDataTask> get(std::shared_ptr<KilobyteRequest> request,
                                                 QVCompletionHandler<KilobyteResponse> handler) {
    QVCallSteps<KilobyteResponse> steps;
    steps.prepare = [](const auto& proceed) { proceed(); };
    return call(std::move(request), std::move(handler), std::move(steps));
  }
};

using Call = QVCall<KilobyteResponse>;

void check(const QVBaseResponse& response) {
  if (!response.data() || response.data()->size() != 1024) throw std::runtime_error("wrong body");
}
void runMainQueueOnce() {
  if (!MainQueue::main().runOnce(std::chrono::seconds(20)))
    throw std::runtime_error("no completion within 20 seconds");
}

// Starts calls with a function and runs the main queue until all have ended. The function is given
// what to do at the end of its call.
template <class StartCall>
void runAll(const StartCall& startCall) {
  std::size_t started = 0, ended = 0;
  std::function<void()> startNext = [&] {
    if (started == callsPerIteration) return;
    ++started;
    startCall([&](const QVBaseResponse& response) {
      check(response);
      ++ended;
      startNext();
    });
  };
  for (std::size_t i = 0; i < inFlight; ++i)
    startNext();
  while (ended < callsPerIteration)
    runMainQueueOnce();
}

void handlerForm() {
  runAll([](auto atEnd) {
    Kilobytes::get(std::make_shared<KilobyteRequest>(),
                   [atEnd](const auto& response) { atEnd(*response); });
  });
}

void onResultForm() {
  runAll([](auto atEnd) {
    Call(Kilobytes::get, std::make_shared<KilobyteRequest>())
        .onResult([atEnd](const Call::Result& result) { atEnd(*result); });
  });
}

struct Coroutine {
  struct promise_type {
    Coroutine get_return_object() { return {}; }
    std::suspend_never initial_suspend() noexcept { return {}; }
    std::suspend_never final_suspend() noexcept { return {}; }
    void return_void() {}
    void unhandled_exception() { std::terminate(); }
  };
};

template <class AtEnd>
Coroutine await(AtEnd atEnd) {
  const auto result = co_await Call(Kilobytes::get, std::make_shared<KilobyteRequest>());
  atEnd(*result);
}

void coroutineForm() {
  runAll([](auto atEnd) { await(atEnd); });
}

// Keeps the calls in a line and takes the result of the oldest one.
template <class Waiting, class TakeResult>
void runInLine(Waiting (*start)(Call call), const TakeResult& takeResult) {
  std::deque<Waiting> waiting;
  for (std::size_t started = 0; started < callsPerIteration || !waiting.empty();) {
    if (started < callsPerIteration && waiting.size() < inFlight) {
      waiting.push_back(start(Call(Kilobytes::get, std::make_shared<KilobyteRequest>())));
      ++started;
    } else {
      check(*takeResult(waiting.front()));
      waiting.pop_front();
    }
  }
}

void waitForm() {
  runInLine<Call>([](Call call) { return call; }, [](Call& call) { return call.wait(); });
}

void futureForm() {
  using Future = std::future<Call::Result>;
  runInLine<Future>([](Call call) { return call.future(); },
                    [](Future& future) {
                      while (future.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
                        runMainQueueOnce();
                      return future.get();
                    });
}

template <void (*form)()>
void calls(benchmark::State& state) {
  form();
  for (auto _ : state)
    form();
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(callsPerIteration));
}

void realTime(benchmark::internal::Benchmark* benchmark) {
  benchmark->UseRealTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(calls<handlerForm>)->Name("call_64/handler")->Apply(realTime);
BENCHMARK(calls<onResultForm>)->Name("call_64/onResult")->Apply(realTime);
BENCHMARK(calls<coroutineForm>)->Name("call_64/co_await")->Apply(realTime);
BENCHMARK(calls<waitForm>)->Name("call_64/wait")->Apply(realTime);
BENCHMARK(calls<futureForm>)->Name("call_64/future")->Apply(realTime);

}  // namespace
}  // namespace quorvelkit::bench
