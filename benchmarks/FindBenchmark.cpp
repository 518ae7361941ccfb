// SPDX-License-Identifier: Apache-2.0
// Parses bodies of the find server, builds the models, reads every field, and destroys everything.
#include "Documents.h"
#include "MemoryMeter.h"
#include "ModelSums.h"
#include "Peers.h"

#include <QuorvelKit/QVAddressCandidatesRequest.h>
#include <QuorvelKit/QVAddressCandidatesResponse.h>
#include <QuorvelKit/QVSuggestRequest.h>
#include <QuorvelKit/QVSuggestResponse.h>

#include <benchmark/benchmark.h>

namespace quorvelkit::bench {
namespace {

struct Candidates {
  static std::string document(std::size_t count) { return candidatesDocument(count); }
  static Sum ours(const Data& data) {
    static const auto request = std::make_shared<QVAddressCandidatesRequest>("x", Coordinate{});
    return sumOf(makeResponse<QVAddressCandidatesResponse>(data, request)->candidates());
  }
  static constexpr auto onDemand = onDemandCandidates;
  static constexpr auto nlohmann = nlohmannCandidates;
  static constexpr auto rapid = rapidCandidates;
};

struct Suggestions {
  static std::string document(std::size_t count) { return suggestionsDocument(count); }
  static Sum ours(const Data& data) {
    static const auto request = std::make_shared<QVSuggestRequest>("x", Coordinate{});
    return sumOf(makeResponse<QVSuggestResponse>(data, request)->suggestions());
  }
  static constexpr auto onDemand = onDemandSuggestions;
  static constexpr auto nlohmann = nlohmannSuggestions;
  static constexpr auto rapid = rapidSuggestions;
};

template <class Results, class Run>
void measure(benchmark::State& state, Run run) {
  std::string document = Results::document(static_cast<std::size_t>(state.range(0)));
  const simdjson::padded_string padded(document);
  const Data data(std::move(document));
  const Sum expected = Results::ours(data);
  {
    const MemoryMeter meter;
    benchmark::DoNotOptimize(run(data, padded));
    state.counters["peak/result"] =
        static_cast<double>(meter.peak()) / static_cast<double>(state.range(0));
  }
  for (auto _ : state) {
    if (run(data, padded) != expected) return state.SkipWithError("wrong sum");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(data.size()) * state.iterations());
}

template <class Results>
void quorvelKit(benchmark::State& state) {
  measure<Results>(state, [](const Data& data, const auto&) { return Results::ours(data); });
}
template <class Results>
void onDemandStructs(benchmark::State& state) {
  simdjson::ondemand::parser parser;
  measure<Results>(state, [&](const Data&, const simdjson::padded_string& padded) {
    return sumOf(Results::onDemand(parser, padded));
  });
}
template <class Results>
void nlohmann(benchmark::State& state) {
  measure<Results>(state,
                   [](const Data& data, const auto&) { return Results::nlohmann(data.view()); });
}
template <class Results>
void rapid(benchmark::State& state) {
  measure<Results>(state,
                   [](const Data& data, const auto&) { return Results::rapid(data.view()); });
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(50)->Arg(5'000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(quorvelKit<Candidates>)->Name("candidates/quorvelkit")->Apply(sizes);
BENCHMARK(onDemandStructs<Candidates>)->Name("candidates/ondemand_structs")->Apply(sizes);
BENCHMARK(nlohmann<Candidates>)->Name("candidates/nlohmann")->Apply(sizes);
BENCHMARK(rapid<Candidates>)->Name("candidates/rapidjson")->Apply(sizes);
BENCHMARK(quorvelKit<Suggestions>)->Name("suggestions/quorvelkit")->Apply(sizes);
BENCHMARK(onDemandStructs<Suggestions>)->Name("suggestions/ondemand_structs")->Apply(sizes);
BENCHMARK(nlohmann<Suggestions>)->Name("suggestions/nlohmann")->Apply(sizes);
BENCHMARK(rapid<Suggestions>)->Name("suggestions/rapidjson")->Apply(sizes);

}  // namespace
}  // namespace quorvelkit::bench
