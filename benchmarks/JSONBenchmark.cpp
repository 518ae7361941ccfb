// SPDX-License-Identifier: Apache-2.0
// Single operations of the JSON value and of the peers.
#include "DOMMembers.h"
#include "Documents.h"

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/QVPoint.h>

#include <benchmark/benchmark.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <array>
#include <charconv>

namespace quorvelkit::bench {
namespace {

// A point with `members` members, at least nine. Six of them are numbers.
std::string pointText(std::int64_t members) {
  std::string text = R"({"lat":39.28117,"lon":-76.594269,"t":48.8,)";
  for (std::int64_t i = 9; i < members; ++i)
    text += "\"key" + std::to_string(i) + "\":" + std::to_string(i) + ',';
  return text +
         R"("d":0.6563,"edge":127071195,"node":51385976,)"
         R"("turn":{"dir":"left","instruct":"Turn left","st":{"name":"Fleet Street","dir":"arterial"}},)"
         R"("notify":"In 0.2 miles, turn left","say":["Turn left"]})";
}
constexpr std::array keys = {
    QVResponseKey::latitude,        QVResponseKey::longitude, QVResponseKey::travelTimeInSeconds,
    QVResponseKey::distanceInMiles, QVResponseKey::edge,      QVResponseKey::node};
constexpr std::array keyTexts = {"lat", "lon", "t", "d", "edge", "node"};

rapidjson::Document rapid(std::string_view text) {
  rapidjson::Document document;
  parseRapid(document, text);
  return document;
}
std::string objectText(std::int64_t members) {
  return objectDocument(static_cast<std::size_t>(members));
}
std::string routeText(std::int64_t points) {
  return routeDocument(static_cast<std::size_t>(points));
}
std::string arrayText(std::int64_t elements) {
  return arrayDocument(static_cast<std::size_t>(elements));
}

// The number of members, elements or points.
void smallAndLarge(benchmark::internal::Benchmark* benchmark) { benchmark->Arg(9)->Arg(1000); }

// One iteration reads all six numbers of a point. The table shows the time per number.
void countReads(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
}

void memberView(benchmark::State& state) {
  const JSON json = JSON::parse(pointText(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (const QVResponseKey key : keys)
      sum += json.view().member(keyView(key)).value_or(ValueView()).number().value_or(0);
    benchmark::DoNotOptimize(sum);
  }
  countReads(state);
}
void memberSubscript(benchmark::State& state) {
  const JSON json = JSON::parse(pointText(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (const QVResponseKey key : keys)
      sum += json[key].doubleValue();
    benchmark::DoNotOptimize(sum);
  }
  countReads(state);
}
void memberGetValue(benchmark::State& state) {
  const QVPoint point(JSON::parse(pointText(state.range(0))));
  for (auto _ : state) {
    double sum = 0;
    for (const QVResponseKey key : keys)
      sum += point.getValue(key)->number().value_or(0);
    benchmark::DoNotOptimize(sum);
  }
  countReads(state);
}
void memberNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(pointText(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (const char* key : keyTexts)
      sum += NlohmannMember{&json}.number(key);
    benchmark::DoNotOptimize(sum);
  }
  countReads(state);
}
void memberRapid(benchmark::State& state) {
  const auto json = rapid(pointText(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (const char* key : keyTexts)
      sum += RapidMember{&json}.number(key);
    benchmark::DoNotOptimize(sum);
  }
  countReads(state);
}
BENCHMARK(memberView)->Name("member/quorvelkit_view")->Apply(smallAndLarge);
BENCHMARK(memberSubscript)->Name("member/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(memberGetValue)->Name("member/quorvelkit_getValue")->Apply(smallAndLarge);
BENCHMARK(memberNlohmann)->Name("member/nlohmann")->Apply(smallAndLarge);
BENCHMARK(memberRapid)->Name("member/rapidjson")->Apply(smallAndLarge);

// Reads one member, another one in each iteration, with a key that is a run-time text.
template <class Read>
void anyKey(benchmark::State& state, Read read) {
  std::vector<std::string> texts;
  for (std::int64_t i = 0; i < state.range(0); ++i)
    texts.push_back("key" + std::to_string(i * 7919 % state.range(0)));
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(read(texts[next].c_str()));
    if (++next == texts.size()) next = 0;
  }
}
void anyKeyQuorvelKit(benchmark::State& state) {
  const JSON json = JSON::parse(objectText(state.range(0)));
  anyKey(state, [&](const char* key) { return json[std::string_view(key)].int64Value(); });
}
void anyKeyNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(objectText(state.range(0)));
  anyKey(state, [&](const char* key) { return NlohmannMember{&json}.integer(key); });
}
void anyKeyRapid(benchmark::State& state) {
  const auto json = rapid(objectText(state.range(0)));
  anyKey(state, [&](const char* key) { return RapidMember{&json}.integer(key); });
}
BENCHMARK(anyKeyQuorvelKit)->Name("any_key/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(anyKeyNlohmann)->Name("any_key/nlohmann")->Apply(smallAndLarge);
BENCHMARK(anyKeyRapid)->Name("any_key/rapidjson")->Apply(smallAndLarge);

template <class Read>
void index(benchmark::State& state, Read read) {
  const auto size = static_cast<int>(state.range(0));
  const int step = 61 % size;
  int next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(read(next));
    next += step;
    if (next >= size) next -= size;
  }
}
void indexQuorvelKit(benchmark::State& state) {
  const JSON json = JSON::parse(arrayText(state.range(0)));
  index(state, [&](int i) { return json[i].int64Value(); });
}
void indexViewQuorvelKit(benchmark::State& state) {
  const JSON json = JSON::parse(arrayText(state.range(0)));
  const ValueView view = json.view();
  index(state,
        [&](int i) { return view.element(static_cast<std::size_t>(i)).exactInt64().value_or(0); });
}
void indexNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(arrayText(state.range(0)));
  index(state, [&](int i) { return json[static_cast<std::size_t>(i)].get<std::int64_t>(); });
}
void indexRapid(benchmark::State& state) {
  const auto json = rapid(arrayText(state.range(0)));
  index(state, [&](int i) { return json[static_cast<unsigned>(i)].GetInt64(); });
}
BENCHMARK(indexQuorvelKit)->Name("index/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(indexViewQuorvelKit)->Name("index/quorvelkit_view")->Apply(smallAndLarge);
BENCHMARK(indexNlohmann)->Name("index/nlohmann")->Apply(smallAndLarge);
BENCHMARK(indexRapid)->Name("index/rapidjson")->Apply(smallAndLarge);

// Reads the name of the last street, five levels deep. Every tenth point has a turn.
int lastTurn(const benchmark::State& state) {
  return static_cast<int>(state.range(0) - 1) / 10 * 10;
}

void pathQuorvelKit(benchmark::State& state) {
  const JSON json = JSON::parse(routeText(state.range(0)));
  const int turn = lastTurn(state);
  for (auto _ : state)
    benchmark::DoNotOptimize(json[{"points", turn, "turn", "st", "name"}].string());
}
void pathNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(routeText(state.range(0)));
  const auto turn = static_cast<std::size_t>(lastTurn(state));
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        json.at("points").at(turn).at("turn").at("st").at("name").get<std::string>());
  }
}
void pathRapid(benchmark::State& state) {
  const auto json = rapid(routeText(state.range(0)));
  const auto turn = static_cast<unsigned>(lastTurn(state));
  for (auto _ : state) {
    const auto& name = json["points"][turn]["turn"]["st"]["name"];
    benchmark::DoNotOptimize(std::string(name.GetString(), name.GetStringLength()));
  }
}
BENCHMARK(pathQuorvelKit)->Name("path_read/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(pathNlohmann)->Name("path_read/nlohmann")->Apply(smallAndLarge);
BENCHMARK(pathRapid)->Name("path_read/rapidjson")->Apply(smallAndLarge);

// Writes one number of the first point: to a copy of a parsed document (the peers copy it as a
// whole), and to a value that was written before.
void writeParsedQuorvelKit(benchmark::State& state) {
  const JSON json = JSON::parse(routeText(state.range(0)));
  for (auto _ : state) {
    JSON copy = json;
    copy.set({"points", 0, "lat"}, 1.5);
    benchmark::DoNotOptimize(copy);
  }
}
void writeParsedNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(routeText(state.range(0)));
  for (auto _ : state) {
    auto copy = json;
    copy["points"][0]["lat"] = 1.5;
    benchmark::DoNotOptimize(copy);
  }
}
void writeParsedRapid(benchmark::State& state) {
  const auto json = rapid(routeText(state.range(0)));
  for (auto _ : state) {
    rapidjson::Document copy;
    copy.CopyFrom(json, copy.GetAllocator());
    copy["points"][0]["lat"] = 1.5;
    benchmark::DoNotOptimize(copy);
  }
}
void writeChangedQuorvelKit(benchmark::State& state) {
  JSON json = JSON::parse(routeText(state.range(0)));
  for (auto _ : state)
    json.set({"points", 0, "lat"}, 1.5);
  benchmark::DoNotOptimize(json);
}
void writeChangedNlohmann(benchmark::State& state) {
  auto json = nlohmann::json::parse(routeText(state.range(0)));
  for (auto _ : state)
    json["points"][0]["lat"] = 1.5;
  benchmark::DoNotOptimize(json);
}
void writeChangedRapid(benchmark::State& state) {
  auto json = rapid(routeText(state.range(0)));
  for (auto _ : state)
    json["points"][0]["lat"] = 1.5;
  benchmark::DoNotOptimize(json);
}
BENCHMARK(writeParsedQuorvelKit)->Name("path_write_parsed/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(writeParsedNlohmann)->Name("path_write_parsed/nlohmann")->Apply(smallAndLarge);
BENCHMARK(writeParsedRapid)->Name("path_write_parsed/rapidjson")->Apply(smallAndLarge);
BENCHMARK(writeChangedQuorvelKit)->Name("path_write_changed/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(writeChangedNlohmann)->Name("path_write_changed/nlohmann")->Apply(smallAndLarge);
BENCHMARK(writeChangedRapid)->Name("path_write_changed/rapidjson")->Apply(smallAndLarge);

// Reads all keys and numbers of an object.
void iterateQuorvelKit(benchmark::State& state) {
  const JSON json = JSON::parse(objectText(state.range(0)));
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : json)
      sum += value.int64Value() + static_cast<std::int64_t>(key.size());
    benchmark::DoNotOptimize(sum);
  }
}
void iterateViewQuorvelKit(benchmark::State& state) {
  const JSON json = JSON::parse(objectText(state.range(0)));
  for (auto _ : state) {
    std::int64_t sum = 0;
    const ValueView view = json.view();
    for (std::size_t i = 0; i < view.size(); ++i) {
      const auto [key, value] = view.memberAt(i);
      sum += value.exactInt64().value_or(0) + static_cast<std::int64_t>(key.size());
    }
    benchmark::DoNotOptimize(sum);
  }
}
void iterateNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(objectText(state.range(0)));
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : json.items())
      sum += value.get<std::int64_t>() + static_cast<std::int64_t>(key.size());
    benchmark::DoNotOptimize(sum);
  }
}
void iterateRapid(benchmark::State& state) {
  const auto json = rapid(objectText(state.range(0)));
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : json.GetObject())
      sum += value.GetInt64() + key.GetStringLength();
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(iterateQuorvelKit)->Name("iterate/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(iterateViewQuorvelKit)->Name("iterate/quorvelkit_view")->Apply(smallAndLarge);
BENCHMARK(iterateNlohmann)->Name("iterate/nlohmann")->Apply(smallAndLarge);
BENCHMARK(iterateRapid)->Name("iterate/rapidjson")->Apply(smallAndLarge);

void writeQuorvelKit(benchmark::State& state) {
  const JSON json = JSON::parse(routeText(state.range(0)));
  for (auto _ : state)
    benchmark::DoNotOptimize(json.rawData());
}
void writeNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(routeText(state.range(0)));
  for (auto _ : state)
    benchmark::DoNotOptimize(json.dump());
}
void writeRapid(benchmark::State& state) {
  const auto json = rapid(routeText(state.range(0)));
  for (auto _ : state) {
    rapidjson::StringBuffer out;
    rapidjson::Writer<rapidjson::StringBuffer> writer(out);
    json.Accept(writer);
    benchmark::DoNotOptimize(std::string(out.GetString(), out.GetSize()));
  }
}
BENCHMARK(writeQuorvelKit)->Name("serialise/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(writeNlohmann)->Name("serialise/nlohmann")->Apply(smallAndLarge);
BENCHMARK(writeRapid)->Name("serialise/rapidjson")->Apply(smallAndLarge);

// 1000 coordinates, as one array and as separate texts.
std::vector<std::string> coordinates() {
  std::vector<std::string> texts;
  for (int i = 0; i < 1000; ++i)
    texts.push_back("-76." + std::to_string(100000 + i * 7919 % 899999));
  return texts;
}
void numbersQuorvelKit(benchmark::State& state) {
  std::string document = "[";
  for (const std::string& text : coordinates())
    document += text + ',';
  document.back() = ']';
  const Data data(std::move(document));
  for (auto _ : state)
    benchmark::DoNotOptimize(JSON(data));
}
void numbersFromChars(benchmark::State& state) {
  const auto texts = coordinates();
  for (auto _ : state) {
    std::vector<double> numbers;
    for (const std::string& text : texts)
      std::from_chars(text.data(), text.data() + text.size(), numbers.emplace_back());
    benchmark::DoNotOptimize(numbers);
  }
}
void numberTextQuorvelKit(benchmark::State& state) {
  std::vector<JSON> numbers;
  for (const std::string& text : coordinates())
    numbers.push_back(JSON::parse(text));
  for (auto _ : state) {
    for (const JSON& number : numbers)
      benchmark::DoNotOptimize(number.stringValue());
  }
}
void numberTextToChars(benchmark::State& state) {
  std::vector<double> numbers;
  for (const std::string& text : coordinates())
    numbers.push_back(JSON::parse(text).doubleValue());
  for (auto _ : state) {
    for (const double number : numbers) {
      char text[32];
      const auto end = std::to_chars(text, text + sizeof text, number, std::chars_format::fixed);
      benchmark::DoNotOptimize(std::string(text, end.ptr));
    }
  }
}
BENCHMARK(numbersQuorvelKit)->Name("parse_numbers/quorvelkit/1000");
BENCHMARK(numbersFromChars)->Name("parse_numbers/from_chars/1000");
BENCHMARK(numberTextQuorvelKit)->Name("number_text/quorvelkit/1000");
BENCHMARK(numberTextToChars)->Name("number_text/to_chars/1000");

}  // namespace
}  // namespace quorvelkit::bench
