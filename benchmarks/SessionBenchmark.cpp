// SPDX-License-Identifier: Apache-2.0
// Fetches from nginx over loopback, from the creation of the data task to the handler on the main
// queue. Measures whole calls of QVNavigation::route as well.
#include "ModelSums.h"
#include "NginxServer.h"
#include "SessionPeers.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/URLSession.h>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <stdexcept>

namespace quorvelkit::bench {
namespace {

const NginxServer& server() {
  static const NginxServer nginx;
  return nginx;
}

void runMainQueueOnce() {
  if (!MainQueue::main().runOnce(std::chrono::seconds(20))) {
    throw std::runtime_error("no completion within 20 seconds");
  }
}

// The session. The main thread waits in the main queue.
class SessionFetcher : public Fetcher {
 public:
  SessionFetcher(const std::string& url, std::size_t bodySize)
      : session_(URLSession::make()), request_(*URL::parse(url)), bodySize_(bodySize) {}

  void fetch(std::size_t requests, std::size_t inFlight) override {
    toStart_ = requests;
    done_ = 0;
    for (std::size_t i = 0; i < std::min(requests, inFlight); ++i)
      start();
    while (done_ < requests)
      runMainQueueOnce();
    if (failed_) throw std::runtime_error("wrong body");
  }

 private:
  void start() {
    --toStart_;
    session_
        ->dataTask(request_,
                   [this](std::optional<Data> data, auto /*response*/, auto /*error*/) {
                     MainQueue::main().async([this, data = std::move(data)] { finish(data); });
                   })
        ->resume();
  }
  void finish(const std::optional<Data>& data) {
    if (!data || data->size() != bodySize_) failed_ = true;
    ++done_;
    if (toStart_ > 0) start();
  }

  std::shared_ptr<URLSession> session_;
  URLRequest request_;
  std::size_t bodySize_;
  std::size_t toStart_ = 0;
  std::size_t done_ = 0;
  bool failed_ = false;
};

std::unique_ptr<Fetcher> session(const std::string& url, std::size_t bodySize) {
  return std::make_unique<SessionFetcher>(url, bodySize);
}

// Processor seconds of all threads of this process, without the server.
double processorTime() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

template <std::unique_ptr<Fetcher> (*make)(const std::string&, std::size_t)>
void fetch(benchmark::State& state, const char* path, std::size_t bodySize, std::size_t requests) {
  const auto inFlight = static_cast<std::size_t>(state.range(0));
  const auto fetcher = make(server().baseURL() + path, bodySize);
  fetcher->fetch(64, inFlight);
  const double before = processorTime();
  for (auto _ : state)
    fetcher->fetch(requests, inFlight);
  const auto all = static_cast<double>(state.iterations()) * static_cast<double>(requests);
  state.counters["cpu_us/request"] = (processorTime() - before) * 1e6 / all;
  state.SetItemsProcessed(static_cast<std::int64_t>(all));
}

template <std::unique_ptr<Fetcher> (*make)(const std::string&, std::size_t)>
void small(benchmark::State& state) {
  fetch<make>(state, "/1kB", 1024, 256);
}
template <std::unique_ptr<Fetcher> (*make)(const std::string&, std::size_t)>
void large(benchmark::State& state) {
  fetch<make>(state, "/1MB", 1024 * 1024, 64);
}

void oneOrMany(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1)->Arg(64)->UseRealTime()->Unit(benchmark::kMicrosecond);
}
void one(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1)->UseRealTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(small<session>)->Name("fetch_1kB/quorvelkit")->Apply(oneOrMany);
BENCHMARK(small<bareEasy>)->Name("fetch_1kB/easy")->Apply(one);
BENCHMARK(small<bareMulti>)->Name("fetch_1kB/multi")->Apply(oneOrMany);
BENCHMARK(small<qtManager>)->Name("fetch_1kB/qt")->Apply(oneOrMany);
BENCHMARK(large<session>)->Name("fetch_1MB/quorvelkit")->Apply(oneOrMany);
BENCHMARK(large<bareEasy>)->Name("fetch_1MB/easy")->Apply(one);
BENCHMARK(large<bareMulti>)->Name("fetch_1MB/multi")->Apply(oneOrMany);
BENCHMARK(large<keepingMulti>)->Name("fetch_1MB/multi_keep")->Apply(oneOrMany);
BENCHMARK(large<qtManager>)->Name("fetch_1MB/qt")->Apply(oneOrMany);

// From the call to the end of a handler that reads every field of 1,000 points.
void routeCall(benchmark::State& state) {
  QVBackendless::setBaseURL(server().baseURL());
  const auto request =
      std::make_shared<QVRouteRequest>(Coordinate{39.30, -76.54}, Coordinate{39.27, -76.60});
  const auto call = [&] {
    std::optional<std::size_t> points;
    QVNavigation::route(request, [&](const std::shared_ptr<QVRouteResponse>& response) {
      benchmark::DoNotOptimize(sumOf(*response->route()));
      points = response->route()->points().size();
    });
    while (!points)
      runMainQueueOnce();
    return *points;
  };
  if (call() != 1000) return state.SkipWithError("no route");
  const double before = processorTime();
  for (auto _ : state) {
    if (call() != 1000) return state.SkipWithError("no route");
  }
  state.counters["cpu_us/request"] =
      (processorTime() - before) * 1e6 / static_cast<double>(state.iterations());
}
BENCHMARK(routeCall)->Name("road/quorvelkit/1000")->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quorvelkit::bench
