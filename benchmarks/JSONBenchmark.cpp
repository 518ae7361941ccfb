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

// A point with nine members: six numbers, three others.
constexpr std::string_view pointText =
    R"({"lat":39.28117,"lon":-76.594269,"t":48.8,"d":0.6563,"edge":127071195,"node":51385976,)"
    R"("turn":{"dir":"left","instruct":"Turn left","st":{"name":"Fleet Street","dir":"arterial"}},)"
    R"("notify":"In 0.2 miles, turn left","say":["Turn left"]})";
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
std::string wholeArray(std::int64_t elements) {
  return arrayDocument(static_cast<std::size_t>(elements));
}

// One iteration looks up all six numbers of a point; the times shown are divided by six.
void perLookUp(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
}

void memberView(benchmark::State& state) {
  const JSON json = JSON::parse(pointText);
  for (auto _ : state) {
    double sum = 0;
    for (const QVResponseKey key : keys)
      sum += json.view().member(keyView(key)).value_or(ValueView()).number().value_or(0);
    benchmark::DoNotOptimize(sum);
  }
  perLookUp(state);
}
void memberSubscript(benchmark::State& state) {
  const JSON json = JSON::parse(pointText);
  for (auto _ : state) {
    double sum = 0;
    for (const QVResponseKey key : keys)
      sum += json[key].doubleValue();
    benchmark::DoNotOptimize(sum);
  }
  perLookUp(state);
}
void memberGetValue(benchmark::State& state) {
  const QVPoint point(JSON::parse(pointText));
  for (auto _ : state) {
    double sum = 0;
    for (const QVResponseKey key : keys)
      sum += point.getValue(key)->number().value_or(0);
    benchmark::DoNotOptimize(sum);
  }
  perLookUp(state);
}
void memberNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(pointText);
  for (auto _ : state) {
    double sum = 0;
    for (const char* key : keyTexts)
      sum += NlohmannMember{&json}.number(key);
    benchmark::DoNotOptimize(sum);
  }
  perLookUp(state);
}
void memberRapid(benchmark::State& state) {
  const auto json = rapid(pointText);
  for (auto _ : state) {
    double sum = 0;
    for (const char* key : keyTexts)
      sum += RapidMember{&json}.number(key);
    benchmark::DoNotOptimize(sum);
  }
  perLookUp(state);
}
BENCHMARK(memberView)->Name("member/quorvelkit_view/9");
BENCHMARK(memberSubscript)->Name("member/quorvelkit/9");
BENCHMARK(memberGetValue)->Name("member/quorvelkit_getValue/9");
BENCHMARK(memberNlohmann)->Name("member/nlohmann/9");
BENCHMARK(memberRapid)->Name("member/rapidjson/9");

// A member of a large map, another one each time, its key a text of the run.
template <class Read>
void largeMap(benchmark::State& state, Read read) {
  std::vector<std::string> texts;
  for (std::int64_t i = 0; i < state.range(0); ++i)
    texts.push_back("key" + std::to_string(i * 7919 % state.range(0)));
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(read(texts[next].c_str()));
    if (++next == texts.size()) next = 0;
  }
}
void largeMapOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeMap(state.range(0)));
  largeMap(state, [&](const char* key) { return json[std::string_view(key)].int64Value(); });
}
void largeMapNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(wholeMap(state.range(0)));
  largeMap(state, [&](const char* key) { return NlohmannMember{&json}.integer(key); });
}
void largeMapRapid(benchmark::State& state) {
  const auto json = rapid(wholeMap(state.range(0)));
  largeMap(state, [&](const char* key) { return RapidMember{&json}.integer(key); });
}
BENCHMARK(largeMapOurs)->Name("member/quorvelkit")->Arg(1000);
BENCHMARK(largeMapNlohmann)->Name("member/nlohmann")->Arg(1000);
BENCHMARK(largeMapRapid)->Name("member/rapidjson")->Arg(1000);

template <class Read>
void index(benchmark::State& state, Read read) {
  int next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(read(next));
    next = (next + 61) % 1000;
  }
}
void indexOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeArray(1000));
  index(state, [&](int i) { return json[i].int64Value(); });
}
void indexNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(wholeArray(1000));
  index(state, [&](int i) { return json[static_cast<std::size_t>(i)].get<std::int64_t>(); });
}
void indexRapid(benchmark::State& state) {
  const auto json = rapid(wholeArray(1000));
  index(state, [&](int i) { return json[static_cast<unsigned>(i)].GetInt64(); });
}
BENCHMARK(indexOurs)->Name("index/quorvelkit/1000");
BENCHMARK(indexNlohmann)->Name("index/nlohmann/1000");
BENCHMARK(indexRapid)->Name("index/rapidjson/1000");

// The name of a street, five steps deep.
void pathOurs(benchmark::State& state) {
  const JSON json = JSON::parse(routeDocument(1000));
  for (auto _ : state)
    benchmark::DoNotOptimize(json[{"points", 500, "turn", "st", "name"}].string());
}
void pathNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(routeDocument(1000));
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        json.at("points").at(500).at("turn").at("st").at("name").get<std::string>());
  }
}
void pathRapid(benchmark::State& state) {
  const auto json = rapid(routeDocument(1000));
  for (auto _ : state) {
    const auto& name = json["points"][500]["turn"]["st"]["name"];
    benchmark::DoNotOptimize(std::string(name.GetString(), name.GetStringLength()));
  }
}
BENCHMARK(pathOurs)->Name("path_read/quorvelkit");
BENCHMARK(pathNlohmann)->Name("path_read/nlohmann");
BENCHMARK(pathRapid)->Name("path_read/rapidjson");

// Writes one number of one point; on a document that was just parsed (a copy of it is an
// independent value, which the peers must make whole), and on one that was written to before.
constexpr int writtenPoint = 50;

void writeParsedOurs(benchmark::State& state) {
  const JSON json = JSON::parse(routeDocument(100));
  for (auto _ : state) {
    JSON copy = json;
    copy.set({"points", writtenPoint, "lat"}, 1.5);
    benchmark::DoNotOptimize(copy);
  }
}
void writeParsedNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(routeDocument(100));
  for (auto _ : state) {
    auto copy = json;
    copy["points"][writtenPoint]["lat"] = 1.5;
    benchmark::DoNotOptimize(copy);
  }
}
void writeParsedRapid(benchmark::State& state) {
  const auto json = rapid(routeDocument(100));
  for (auto _ : state) {
    rapidjson::Document copy;
    copy.CopyFrom(json, copy.GetAllocator());
    copy["points"][writtenPoint]["lat"] = 1.5;
    benchmark::DoNotOptimize(copy);
  }
}
void writeChangedOurs(benchmark::State& state) {
  JSON json = JSON::parse(routeDocument(100));
  for (auto _ : state)
    json.set({"points", writtenPoint, "lat"}, 1.5);
  benchmark::DoNotOptimize(json);
}
void writeChangedNlohmann(benchmark::State& state) {
  auto json = nlohmann::json::parse(routeDocument(100));
  for (auto _ : state)
    json["points"][writtenPoint]["lat"] = 1.5;
  benchmark::DoNotOptimize(json);
}
void writeChangedRapid(benchmark::State& state) {
  auto json = rapid(routeDocument(100));
  for (auto _ : state)
    json["points"][writtenPoint]["lat"] = 1.5;
  benchmark::DoNotOptimize(json);
}
BENCHMARK(writeParsedOurs)->Name("path_write_parsed/quorvelkit");
BENCHMARK(writeParsedNlohmann)->Name("path_write_parsed/nlohmann");
BENCHMARK(writeParsedRapid)->Name("path_write_parsed/rapidjson");
BENCHMARK(writeChangedOurs)->Name("path_write_changed/quorvelkit");
BENCHMARK(writeChangedNlohmann)->Name("path_write_changed/nlohmann");
BENCHMARK(writeChangedRapid)->Name("path_write_changed/rapidjson");

// Keys and numbers of a map of 1000 members.
void iterateOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeMap(1000));
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : json)
      sum += value.int64Value() + static_cast<std::int64_t>(key.size());
    benchmark::DoNotOptimize(sum);
  }
}
void iterateViewOurs(benchmark::State& state) {
  const JSON json = JSON::parse(wholeMap(1000));
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
  const auto json = nlohmann::json::parse(wholeMap(1000));
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : json.items())
      sum += value.get<std::int64_t>() + static_cast<std::int64_t>(key.size());
    benchmark::DoNotOptimize(sum);
  }
}
void iterateRapid(benchmark::State& state) {
  const auto json = rapid(wholeMap(1000));
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : json.GetObject())
      sum += value.GetInt64() + key.GetStringLength();
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(iterateOurs)->Name("iterate/quorvelkit/1000");
BENCHMARK(iterateViewOurs)->Name("iterate/quorvelkit_view/1000");
BENCHMARK(iterateNlohmann)->Name("iterate/nlohmann/1000");
BENCHMARK(iterateRapid)->Name("iterate/rapidjson/1000");

void writeOurs(benchmark::State& state) {
  const JSON json = JSON::parse(routeDocument(1000));
  for (auto _ : state)
    benchmark::DoNotOptimize(json.rawData());
}
void writeNlohmann(benchmark::State& state) {
  const auto json = nlohmann::json::parse(routeDocument(1000));
  for (auto _ : state)
    benchmark::DoNotOptimize(json.dump());
}
void writeRapid(benchmark::State& state) {
  const auto json = rapid(routeDocument(1000));
  for (auto _ : state) {
    rapidjson::StringBuffer out;
    rapidjson::Writer<rapidjson::StringBuffer> writer(out);
    json.Accept(writer);
    benchmark::DoNotOptimize(std::string(out.GetString(), out.GetSize()));
  }
}
BENCHMARK(writeOurs)->Name("serialise/quorvelkit/1000")->Unit(benchmark::kMicrosecond);
BENCHMARK(writeNlohmann)->Name("serialise/nlohmann/1000")->Unit(benchmark::kMicrosecond);
BENCHMARK(writeRapid)->Name("serialise/rapidjson/1000")->Unit(benchmark::kMicrosecond);

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
