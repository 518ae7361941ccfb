// SPDX-License-Identifier: Apache-2.0
// The single operations of the JSON value, each beside the same of the peers.
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

// A point of nine members, or of so many: six numbers among others.
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
std::string wholeMap(std::int64_t members) {
  return mapDocument(static_cast<std::size_t>(members));
}
std::string wholeRoute(std::int64_t points) {
  return routeDocument(static_cast<std::size_t>(points));
}
std::string wholeArray(std::int64_t elements) {
  return arrayDocument(static_cast<std::size_t>(elements));
}

// Members of a map, elements of an array, points of a route.
void smallAndLarge(benchmark::internal::Benchmark* benchmark) { benchmark->Arg(9)->Arg(1000); }

// One iteration looks up all six numbers of a point; the times shown are divided by six.
void perLookUp(benchmark::State& state) {
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
  perLookUp(state);
}
void memberSubscript(benchmark::State& state) {
  const JSON json = JSON::parse(pointText(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (const QVResponseKey key : keys)
      sum += json[key].doubleValue();
    benchmark::DoNotOptimize(sum);
  }
  perLookUp(state);
}
void memberGetValue(benchmark::State& state) {
  const QVPoint point(JSON::parse(pointText(state.range(0))));
  for (auto _ : state) {
    double sum = 0;
    for (const QVResponseKey key : keys)
      sum += point.getValue(key)->number().value_or(0);
    benchmark::DoNotOptimize(sum);
  }
  perLookUp(state);
}
void memberNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(pointText(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (const char* key : keyTexts)
      sum += NlohmannMember{&json}.number(key);
    benchmark::DoNotOptimize(sum);
  }
  perLookUp(state);
}
void memberRapid(benchmark::State& state) {
  const auto json = rapid(pointText(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (const char* key : keyTexts)
      sum += RapidMember{&json}.number(key);
    benchmark::DoNotOptimize(sum);
  }
  perLookUp(state);
}
BENCHMARK(memberView)->Name("member/quorvelkit_view")->Apply(smallAndLarge);
BENCHMARK(memberSubscript)->Name("member/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(memberGetValue)->Name("member/quorvelkit_getValue")->Apply(smallAndLarge);
BENCHMARK(memberNlohmann)->Name("member/nlohmann")->Apply(smallAndLarge);
BENCHMARK(memberRapid)->Name("member/rapidjson")->Apply(smallAndLarge);

// A member of a map, another one each time, its key a text of the run.
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
void anyKeyOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeMap(state.range(0)));
  anyKey(state, [&](const char* key) { return json[std::string_view(key)].int64Value(); });
}
void anyKeyNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(wholeMap(state.range(0)));
  anyKey(state, [&](const char* key) { return NlohmannMember{&json}.integer(key); });
}
void anyKeyRapid(benchmark::State& state) {
  const auto json = rapid(wholeMap(state.range(0)));
  anyKey(state, [&](const char* key) { return RapidMember{&json}.integer(key); });
}
BENCHMARK(anyKeyOurs)->Name("any_key/quorvelkit")->Apply(smallAndLarge);
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
void indexOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeArray(state.range(0)));
  index(state, [&](int i) { return json[i].int64Value(); });
}
void indexNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(wholeArray(state.range(0)));
  index(state, [&](int i) { return json[static_cast<std::size_t>(i)].get<std::int64_t>(); });
}
void indexRapid(benchmark::State& state) {
  const auto json = rapid(wholeArray(state.range(0)));
  index(state, [&](int i) { return json[static_cast<unsigned>(i)].GetInt64(); });
}
BENCHMARK(indexOurs)->Name("index/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(indexNlohmann)->Name("index/nlohmann")->Apply(smallAndLarge);
BENCHMARK(indexRapid)->Name("index/rapidjson")->Apply(smallAndLarge);

// The name of the last street, five steps deep: one point in ten has a turn.
int lastTurn(const benchmark::State& state) {
  return static_cast<int>(state.range(0) - 1) / 10 * 10;
}

void pathOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeRoute(state.range(0)));
  const int turn = lastTurn(state);
  for (auto _ : state)
    benchmark::DoNotOptimize(json[{"points", turn, "turn", "st", "name"}].string());
}
void pathNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(wholeRoute(state.range(0)));
  const auto turn = static_cast<std::size_t>(lastTurn(state));
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        json.at("points").at(turn).at("turn").at("st").at("name").get<std::string>());
  }
}
void pathRapid(benchmark::State& state) {
  const auto json = rapid(wholeRoute(state.range(0)));
  const auto turn = static_cast<unsigned>(lastTurn(state));
  for (auto _ : state) {
    const auto& name = json["points"][turn]["turn"]["st"]["name"];
    benchmark::DoNotOptimize(std::string(name.GetString(), name.GetStringLength()));
  }
}
BENCHMARK(pathOurs)->Name("path_read/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(pathNlohmann)->Name("path_read/nlohmann")->Apply(smallAndLarge);
BENCHMARK(pathRapid)->Name("path_read/rapidjson")->Apply(smallAndLarge);

// Writes one number of the first point; on a document that was just parsed (a copy of it is an
// independent value, which the peers must make whole), and on one that was written to before.
void writeParsedOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeRoute(state.range(0)));
  for (auto _ : state) {
    JSON copy = json;
    copy.set({"points", 0, "lat"}, 1.5);
    benchmark::DoNotOptimize(copy);
  }
}
void writeParsedNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(wholeRoute(state.range(0)));
  for (auto _ : state) {
    auto copy = json;
    copy["points"][0]["lat"] = 1.5;
    benchmark::DoNotOptimize(copy);
  }
}
void writeParsedRapid(benchmark::State& state) {
  const auto json = rapid(wholeRoute(state.range(0)));
  for (auto _ : state) {
    rapidjson::Document copy;
    copy.CopyFrom(json, copy.GetAllocator());
    copy["points"][0]["lat"] = 1.5;
    benchmark::DoNotOptimize(copy);
  }
}
void writeChangedOurs(benchmark::State& state) {
  JSON json = JSON::parse(wholeRoute(state.range(0)));
  for (auto _ : state)
    json.set({"points", 0, "lat"}, 1.5);
  benchmark::DoNotOptimize(json);
}
void writeChangedNlohmann(benchmark::State& state) {
  auto json = nlohmann::json::parse(wholeRoute(state.range(0)));
  for (auto _ : state)
    json["points"][0]["lat"] = 1.5;
  benchmark::DoNotOptimize(json);
}
void writeChangedRapid(benchmark::State& state) {
  auto json = rapid(wholeRoute(state.range(0)));
  for (auto _ : state)
    json["points"][0]["lat"] = 1.5;
  benchmark::DoNotOptimize(json);
}
BENCHMARK(writeParsedOurs)->Name("path_write_parsed/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(writeParsedNlohmann)->Name("path_write_parsed/nlohmann")->Apply(smallAndLarge);
BENCHMARK(writeParsedRapid)->Name("path_write_parsed/rapidjson")->Apply(smallAndLarge);
BENCHMARK(writeChangedOurs)->Name("path_write_changed/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(writeChangedNlohmann)->Name("path_write_changed/nlohmann")->Apply(smallAndLarge);
BENCHMARK(writeChangedRapid)->Name("path_write_changed/rapidjson")->Apply(smallAndLarge);

// Keys and numbers of a map.
void iterateOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeMap(state.range(0)));
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : json)
      sum += value.int64Value() + static_cast<std::int64_t>(key.size());
    benchmark::DoNotOptimize(sum);
  }
}
void iterateViewOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeMap(state.range(0)));
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
  const auto json = nlohmann::json::parse(wholeMap(state.range(0)));
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : json.items())
      sum += value.get<std::int64_t>() + static_cast<std::int64_t>(key.size());
    benchmark::DoNotOptimize(sum);
  }
}
void iterateRapid(benchmark::State& state) {
  const auto json = rapid(wholeMap(state.range(0)));
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : json.GetObject())
      sum += value.GetInt64() + key.GetStringLength();
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(iterateOurs)->Name("iterate/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(iterateViewOurs)->Name("iterate/quorvelkit_view")->Apply(smallAndLarge);
BENCHMARK(iterateNlohmann)->Name("iterate/nlohmann")->Apply(smallAndLarge);
BENCHMARK(iterateRapid)->Name("iterate/rapidjson")->Apply(smallAndLarge);

void writeOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeRoute(state.range(0)));
  for (auto _ : state)
    benchmark::DoNotOptimize(json.rawData());
}
void writeNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(wholeRoute(state.range(0)));
  for (auto _ : state)
    benchmark::DoNotOptimize(json.dump());
}
void writeRapid(benchmark::State& state) {
  const auto json = rapid(wholeRoute(state.range(0)));
  for (auto _ : state) {
    rapidjson::StringBuffer out;
    rapidjson::Writer<rapidjson::StringBuffer> writer(out);
    json.Accept(writer);
    benchmark::DoNotOptimize(std::string(out.GetString(), out.GetSize()));
  }
}
BENCHMARK(writeOurs)->Name("serialise/quorvelkit")->Apply(smallAndLarge);
BENCHMARK(writeNlohmann)->Name("serialise/nlohmann")->Apply(smallAndLarge);
BENCHMARK(writeRapid)->Name("serialise/rapidjson")->Apply(smallAndLarge);

// 1000 coordinates as an array, and as texts of their own.
std::vector<std::string> coordinates() {
  std::vector<std::string> texts;
  for (int i = 0; i < 1000; ++i)
    texts.push_back("-76." + std::to_string(100000 + i * 7919 % 899999));
  return texts;
}
void numbersOurs(benchmark::State& state) {
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
void numberTextOurs(benchmark::State& state) {
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
BENCHMARK(numbersOurs)->Name("parse_numbers/quorvelkit/1000");
BENCHMARK(numbersFromChars)->Name("parse_numbers/from_chars/1000");
BENCHMARK(numberTextOurs)->Name("number_text/quorvelkit/1000");
BENCHMARK(numberTextToChars)->Name("number_text/to_chars/1000");

}  // namespace
}  // namespace quorvelkit::bench
