// SPDX-License-Identifier: Apache-2.0
// Builds the URL of each request class and counts the heap allocations.
#include "MemoryMeter.h"

#include <QuorvelKit/QVAddressCandidatesRequest.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVConfigurationRequest.h>
#include <QuorvelKit/QVLoginRequest.h>
#include <QuorvelKit/QVReverseGeocodeRequest.h>
#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelKit/QVSuggestRequest.h>

#include <benchmark/benchmark.h>

namespace quorvelkit::bench {
namespace {

void cacheConfiguration() {
  QVConfiguration::setCachedResponse(makeResponse<QVConfigurationResponse>(
      Data(R"({"quorvel-navigation-root-url":"https://navigation.example",
               "quorvel-find-root-url":"https://find.example"})"),
      std::make_shared<QVConfigurationRequest>()));
}

template <class Request, class... Arguments>
void url(benchmark::State& state, Arguments... arguments) {
  cacheConfiguration();
  Request request(arguments...);
  {
    const MemoryMeter meter;
    if (!request.url()) return state.SkipWithError("no URL");
    state.counters["allocations"] = static_cast<double>(meter.allocations());
  }
  for (auto _ : state)
    benchmark::DoNotOptimize(request.url());
  state.SetItemsProcessed(state.iterations());
}

constexpr Coordinate here{39.281170, -76.594269};
constexpr Coordinate there{39.302401, -76.546532};
constexpr QVSearchExtent extent{{39.2, -76.7}, {39.4, -76.5}};

void routeURL(benchmark::State& state) { url<QVRouteRequest>(state, here, there); }
void candidatesURL(benchmark::State& state) {
  url<QVAddressCandidatesRequest>(state, "1726 Fleet Street, Baltimore", here, extent,
                                  "b3NtOm4yOTc1MTg0Nzg2");
}
void suggestURL(benchmark::State& state) {
  url<QVSuggestRequest>(state, "1726%20Fleet", here, extent);
}
void reverseGeocodeURL(benchmark::State& state) { url<QVReverseGeocodeRequest>(state, here); }
void loginURL(benchmark::State& state) { url<QVLoginRequest>(state); }
void configurationURL(benchmark::State& state) { url<QVConfigurationRequest>(state); }

BENCHMARK(loginURL)->Name("url/login");
BENCHMARK(configurationURL)->Name("url/configuration");
BENCHMARK(routeURL)->Name("url/route");
BENCHMARK(candidatesURL)->Name("url/candidates");
BENCHMARK(suggestURL)->Name("url/suggest");
BENCHMARK(reverseGeocodeURL)->Name("url/reverse_geocode");

}  // namespace
}  // namespace quorvelkit::bench
