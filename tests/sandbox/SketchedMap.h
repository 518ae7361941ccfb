// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Geometry.h"
#include "sandbox/RouteService.h"
#include "tests/sandbox/MapText.h"

#include <QuorvelKit/JSON/JSON.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox::test {

/// A position on a sketched map, in units of 100 meters to the east and to the north of its center.
struct At {
  double east = 0;
  double north = 0;

  Coordinate position() const { return {0.001 * north / 1.11195, 0.001 * east / 1.11195}; }
};

/// A map of streets near latitude 0 and longitude 0.
class SketchedMap {
 public:
  /// Takes the format of mapFromText(), with positions like `At`.
  explicit SketchedMap(const std::string& text)
      : map_(mapFromText(text, [](double east, double north) {
          return At{east, north}.position();
        })) {
    // Ids exceed 32 bits, as on real maps.
    for (MapWay& way : map_.ways)
      way.id += 4'000'000'000;
    for (MapNode& node : map_.nodes)
      node.id += 9'000'000'000;
  }

  /// Sends a route request.
  HTTPAnswer ask(At from, At to, QueryParameters parameters = {}) const {
    parameters.insert({{"startLat", std::to_string(from.position().latitude)},
                       {"startLon", std::to_string(from.position().longitude)},
                       {"endLat", std::to_string(to.position().latitude)},
                       {"endLon", std::to_string(to.position().longitude)},
                       {"time", "2017-03-01T14:05:00Z"},
                       {"requestType", "DepartureTime"}});
    const RouteService service(std::make_shared<MapData>(map_));
    return *service.answer({"GET", "/v4/route", std::move(parameters), "", nullptr});
  }
  JSON route(At from, At to, const QueryParameters& more = {}) const {
    return JSON::parse(ask(from, to, more).body);
  }

 private:
  MapData map_;
};

/// Returns the turns of a route document without departure and arrival: "left: Turn left onto Elm;
/// ...".
inline std::string turnsOf(const JSON& route) {
  std::vector<std::string> turns;
  for (const JSON& point : route["points"].arrayValue()) {
    if (!point["turn"].exists()) continue;
    turns.push_back(point[{"turn", "dir"}].stringValue() + ": " +
                    point[{"turn", "instruct"}].stringValue());
  }
  if (turns.size() < 2) return "no route: " + route.description();
  std::string joined;
  for (std::size_t i = 1; i + 1 < turns.size(); ++i)
    joined += (i > 1 ? "; " : "") + turns[i];
  return joined;
}

}  // namespace quorvelkit::sandbox::test
