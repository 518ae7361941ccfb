// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Geometry.h"
#include "sandbox/MapData.h"
#include "sandbox/RouteService.h"

#include <QuorvelKit/JSON/JSON.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox::test {

/// A place on a sketch: hundreds of meters to the east and to the north of its middle.
struct At {
  double east = 0;
  double north = 0;

  Coordinate position() const { return {0.001 * north / 1.11195, 0.001 * east / 1.11195}; }
};

/// Streets drawn for one test, near where equator and prime meridian cross.
class SketchedMap {
 public:
  /// Adds a street; its tags are "highway=residential" and those given, as "key=value".
  SketchedMap& street(std::string name, std::vector<At> line, std::vector<std::string> tags = {}) {
    std::vector<Tags::Pair> pairs;
    for (const std::string& tag : tags) {
      const std::size_t equals = tag.find('=');
      pairs.emplace_back(tag.substr(0, equals), tag.substr(equals + 1));
    }
    if (!name.empty()) pairs.emplace_back("name", std::move(name));
    pairs.emplace_back("highway", "residential");
    MapWay way{nextId_++, Tags(std::move(pairs)), {}};
    for (const At& at : line)
      way.line.push_back(at.position());
    map_.ways.push_back(std::move(way));
    return *this;
  }
  SketchedMap& node(At at, std::int64_t id, std::vector<Tags::Pair> tags) {
    map_.nodes.push_back({id, at.position(), Tags(std::move(tags))});
    return *this;
  }

  /// The answer to a request for a route.
  HTTPAnswer ask(At from, At to, const QueryParameters& more = {}) const {
    QueryParameters parameters{{"time", "2017-03-01T14:05:00Z"}, {"requestType", "DepartureTime"}};
    const auto add = [&](const std::string& name, double value) {
      parameters.emplace(name, std::to_string(value));
    };
    add("startLat", from.position().latitude);
    add("startLon", from.position().longitude);
    add("endLat", to.position().latitude);
    add("endLon", to.position().longitude);
    parameters.insert(more.begin(), more.end());
    const RouteService service(std::make_shared<MapData>(map_));
    return *service.answer({"GET", "/v4/route", parameters, "", nullptr});
  }
  JSON route(At from, At to, const QueryParameters& more = {}) const {
    return JSON::parse(ask(from, to, more).body);
  }

 private:
  MapData map_;
  std::int64_t nextId_ = 4'000'000'000;
};

/// The turns of a route document, without departing and arriving: "left: Turn left onto Elm".
inline std::vector<std::string> turnsOf(const JSON& route) {
  std::vector<std::string> turns;
  for (const JSON& point : route["points"].arrayValue()) {
    if (!point["turn"].exists()) continue;
    turns.push_back(point[{"turn", "dir"}].stringValue() + ": " +
                    point[{"turn", "instruct"}].stringValue());
  }
  if (turns.size() < 2) return {"no route: " + route.description()};
  return {turns.begin() + 1, turns.end() - 1};
}

}  // namespace quorvelkit::sandbox::test
