// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RouteService.h"

#include <QuorvelKit/JSON/JSON.h>

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox::test {

/// Makes a map from a text with one feature per line: name (can be empty), positions, tags, such as
/// "Elm Street: 0,2 -1.5,2; ref=SR 7". A feature with one position is a node, with more a way. A
/// way without a highway tag is a residential street. `position` converts the two numbers of a
/// position. The ids of nodes and ways count from 1.
inline MapData mapFromText(const std::string& text, Coordinate (*position)(double, double)) {
  MapData map;
  std::istringstream lines(text);
  for (std::string name, rest; std::getline(lines >> std::ws, name, ':');) {
    std::getline(lines, rest);
    std::istringstream parts(rest);
    std::string places, key, value;
    std::getline(parts, places, ';');
    std::vector<Tags::Pair> tags;
    if (!name.empty()) tags.emplace_back("name", name);
    while (std::getline(std::getline(parts >> std::ws, key, '='), value, ';'))
      tags.emplace_back(key, value);
    std::vector<Coordinate> line;
    std::istringstream coordinates(places);
    double first = 0, second = 0;
    for (char comma = 0; coordinates >> first >> comma >> second;)
      line.push_back(position(first, second));
    if (line.size() > 1) {
      tags.emplace_back("highway", "residential");
      map.ways.push_back({std::ssize(map.ways) + 1, Tags(tags), line});
    } else {
      map.nodes.push_back({std::ssize(map.nodes) + 1, line.at(0), Tags(tags)});
    }
  }
  return map;
}

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

  /// The parameters of a route request.
  static QueryParameters query(At from, At to) {
    return {{"startLat", std::to_string(from.position().latitude)},
            {"startLon", std::to_string(from.position().longitude)},
            {"endLat", std::to_string(to.position().latitude)},
            {"endLon", std::to_string(to.position().longitude)},
            {"time", "2017-03-01T14:05:00Z"},
            {"requestType", "DepartureTime"}};
  }
  HTTPAnswer ask(const QueryParameters& parameters) const {
    const RouteService service(std::make_shared<MapData>(map_));
    return *service.answer({"GET", "/v4/route", parameters, "", nullptr});
  }
  JSON route(At from, At to, QueryParameters more = {}) const {
    more.merge(query(from, to));
    return JSON::parse(ask(more).body);
  }

 private:
  MapData map_;
};

/// Returns the turns of a route document without departure and arrival: "left: Turn left onto Elm;
/// ...". What to say about a near next turn is in parentheses.
inline std::string turnsOf(const JSON& route) {
  std::vector<std::string> turns;
  for (const JSON& point : route["points"].arrayValue()) {
    if (!point["turn"].exists()) continue;
    const std::string next = point[{"say", 1}].stringValue();
    turns.push_back(point[{"turn", "dir"}].stringValue() + ": " +
                    point[{"turn", "instruct"}].stringValue() +
                    (next.starts_with("Then turn") ? " (" + next + ")" : ""));
  }
  if (turns.size() < 2) return "no route: " + route.description();
  std::string joined;
  for (std::size_t i = 1; i + 1 < turns.size(); ++i)
    joined += (i > 1 ? "; " : "") + turns[i];
  return joined;
}

/// A map for search tests. Harbor Street runs 1 km east from (10, 20), with the houses 100 (at its
/// beginning, on the south side) and 200 (at its end). Another part of it is in Sankt Olaf, beyond
/// a boundary. The second half of the street has the opposite direction. A meter is about 1/111000
/// degree here.
inline std::shared_ptr<const MapData> searchTown() {
  const std::string onStreet = "; addr:street=Harbor Street; addr:city=Testville";
  auto map = std::make_shared<MapData>(mapFromText(
      ": 9.9998,20; addr:housenumber=100; addr:postcode=21231; addr:state=MD" + onStreet +
          "\n: 9.9998,20.009; addr:housenumber=200; addr:postcode=21231" + onStreet +
          "\nCafé Müller: 10.0002,20.003; amenity=cafe; addr:housenumber=133" + onStreet +
          "; phone=+1 555 0100; website=https://mueller.example" + R"(
          Harbor Point: 10,20.002; place=neighbourhood
          Testville: 10,20.005; place=town
          Grace Memorial Church: 10.01,20.004; amenity=place_of_worship
          Memorial Church: 10.012,20.004; amenity=place_of_worship
          First Bank: 10.013,20.004; amenity=bank
          First Bank: 10.05,20.004; amenity=bank
          Harbor Street: 10,20 10,20.004
          Harbor Street: 10,20.009 10,20.004
          Harbor Street: 10,20.102 10,20.108
          Plaça de l’Àncora: 10.02,20 10.02,20.009; highway=primary
          Coast Motorway: 9.97,20 9.97,20.1; highway=motorway)",
      [](double latitude, double longitude) {
        return Coordinate{latitude, longitude};
      }));
  MapArea area;
  area.id = 1;
  area.tags = Tags({{"boundary", "administrative"}, {"admin_level", "8"}, {"name", "Sankt Olaf"}});
  area.polygons = {{{{9.9, 20.1}, {9.9, 20.2}, {10.1, 20.2}, {10.1, 20.1}, {9.9, 20.1}}}};
  map->areas.push_back(area);
  return map;
}

}  // namespace quorvelkit::sandbox::test
