// SPDX-License-Identifier: Apache-2.0
// A route document to models to every field read, and everything destroyed.
#include "Documents.h"
#include "MemoryMeter.h"
#include "ModelSums.h"
#include "RoutePeers.h"

#include <QuorvelKit/JSON/JSON.h>

#include <benchmark/benchmark.h>

#include <map>

namespace quorvelkit::bench {
namespace {

// The documents, each with room behind it for simdjson, and the sum that everybody must find.
struct Input {
  std::size_t size;
  Data data;
  simdjson::padded_string padded;
  Sum sum;

  std::string_view view() const { return data.view(); }
};

const Input& input(std::int64_t points) {
  static std::map<std::int64_t, Input> inputs;
  const auto found = inputs.find(points);
  if (found != inputs.end()) return found->second;
  std::string document = routeDocument(static_cast<std::size_t>(points));
  simdjson::padded_string padded(document);
  Data data(std::move(document));
  const Sum sum = sumOf(QVRoute(JSON(data)));
  return inputs.emplace(points, Input{data.size(), data, std::move(padded), sum}).first->second;
}

struct QuorvelKitPipeline {
  QVRoute make(const Input& from) { return QVRoute(JSON(from.data)); }
};
struct OnDemandPipeline {
  PlainRoute make(const Input& from) { return onDemandRoute(parser, from.padded); }
  simdjson::ondemand::parser parser;
};
struct NlohmannPipeline {
  NlohmannRoute make(const Input& from) { return NlohmannRoute(from.view()); }
};
struct RapidPipeline {
  RapidRoute make(const Input& from) { return RapidRoute(from.view()); }
};

template <class Pipeline>
void route(benchmark::State& state) {
  const Input& from = input(state.range(0));
  const auto points = static_cast<double>(state.range(0));
  {
    Pipeline pipeline;
    const MemoryMeter meter;
    const auto made = pipeline.make(from);
    if (sumOf(made) != from.sum) return state.SkipWithError("a wrong sum");
    state.counters["alive/point"] = static_cast<double>(meter.alive()) / points;
    state.counters["peak/point"] = static_cast<double>(meter.peak()) / points;
    state.counters["body/point"] = static_cast<double>(from.size) / points;
  }
  Pipeline pipeline;
  for (auto _ : state) {
    if (sumOf(pipeline.make(from)) != from.sum) return state.SkipWithError("a wrong sum");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(from.size) * state.iterations());
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(route<QuorvelKitPipeline>)->Name("route/quorvelkit")->Apply(sizes);
BENCHMARK(route<OnDemandPipeline>)->Name("route/ondemand_structs")->Apply(sizes);
BENCHMARK(route<NlohmannPipeline>)->Name("route/nlohmann")->Apply(sizes);
BENCHMARK(route<RapidPipeline>)->Name("route/rapidjson")->Apply(sizes);

}  // namespace
}  // namespace quorvelkit::bench
