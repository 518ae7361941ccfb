// SPDX-License-Identifier: Apache-2.0
// Parses a route document, builds the models, reads every field, and destroys everything.
#include "Documents.h"
#include "MemoryMeter.h"
#include "ModelSums.h"
#include "Peers.h"

#include <QuorvelKit/JSON/JSON.h>

#include <benchmark/benchmark.h>

#include <map>

namespace quorvelkit::bench {
namespace {

// A route document, a copy with the padding of simdjson, and the sum that all readers must get.
struct Input {
  std::size_t size;
  Data data;
  simdjson::padded_string padded;
  Sum sum;

  std::string_view view() const { return data.view(); }
};

const Input& inputOf(std::int64_t points) {
  static std::map<std::int64_t, Input> inputs;
  const auto found = inputs.find(points);
  if (found != inputs.end()) return found->second;
  std::string document = routeDocument(static_cast<std::size_t>(points));
  simdjson::padded_string padded(document);
  Data data(std::move(document));
  const Sum sum = sumOf(QVRoute(JSON(data)));
  return inputs.emplace(points, Input{data.size(), data, std::move(padded), sum}).first->second;
}

struct QuorvelKitReader {
  QVRoute read(const Input& input) { return QVRoute(JSON(input.data)); }
};
struct OnDemandReader {
  PlainRoute read(const Input& input) { return onDemandRoute(parser, input.padded); }
  simdjson::ondemand::parser parser;
};
struct NlohmannReader {
  NlohmannRoute read(const Input& input) { return NlohmannRoute(input.view()); }
};
struct RapidReader {
  RapidRoute read(const Input& input) { return RapidRoute(input.view()); }
};

template <class Reader>
void route(benchmark::State& state) {
  const Input& input = inputOf(state.range(0));
  const auto points = static_cast<double>(state.range(0));
  {
    Reader reader;
    const MemoryMeter meter;
    const auto result = reader.read(input);
    if (sumOf(result) != input.sum) return state.SkipWithError("wrong sum");
    state.counters["alive/point"] = static_cast<double>(meter.alive()) / points;
    state.counters["peak/point"] = static_cast<double>(meter.peak()) / points;
    state.counters["body/point"] = static_cast<double>(input.size) / points;
  }
  Reader reader;
  for (auto _ : state) {
    if (sumOf(reader.read(input)) != input.sum) return state.SkipWithError("wrong sum");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(input.size) * state.iterations());
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(route<QuorvelKitReader>)->Name("route/quorvelkit")->Apply(sizes);
BENCHMARK(route<OnDemandReader>)->Name("route/ondemand_structs")->Apply(sizes);
BENCHMARK(route<NlohmannReader>)->Name("route/nlohmann")->Apply(sizes);
BENCHMARK(route<RapidReader>)->Name("route/rapidjson")->Apply(sizes);

}  // namespace
}  // namespace quorvelkit::bench
