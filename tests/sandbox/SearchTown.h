// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"

#include <memory>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// A map to search: Harbor Street runs 1 km east from (10, 20), with houses 100 (at its beginning,
/// south) and 200 (at its end), and goes on beyond a boundary in Sankt Olaf. Meters are about
/// 1/111000 degrees at this latitude in either direction.
inline std::shared_ptr<const MapData> searchTown() {
  auto map = std::make_shared<MapData>();
  const auto node = [&](Coordinate position, std::vector<Tags::Pair> tags) {
    map->nodes.push_back(
        {static_cast<std::int64_t>(map->nodes.size()) + 1, position, Tags(std::move(tags))});
  };
  const auto way = [&](std::vector<Tags::Pair> tags, std::vector<Coordinate> line) {
    map->ways.push_back(
        {static_cast<std::int64_t>(map->ways.size()) + 1, Tags(std::move(tags)), std::move(line)});
  };
  node({9.9998, 20.000}, {{"addr:housenumber", "100"},
                          {"addr:street", "Harbor Street"},
                          {"addr:city", "Testville"},
                          {"addr:postcode", "21231"},
                          {"addr:state", "MD"}});
  node({9.9998, 20.009}, {{"addr:housenumber", "200"},
                          {"addr:street", "Harbor Street"},
                          {"addr:city", "Testville"},
                          {"addr:postcode", "21231"}});
  node({10.0002, 20.003}, {{"name", "Café Müller"},
                           {"amenity", "cafe"},
                           {"phone", "+1 555 0100"},
                           {"website", "https://mueller.example"},
                           {"addr:housenumber", "133"},
                           {"addr:street", "Harbor Street"},
                           {"addr:city", "Testville"}});
  node({10.0000, 20.002}, {{"name", "Harbor Point"}, {"place", "neighbourhood"}});
  node({10.0000, 20.005}, {{"name", "Testville"}, {"place", "town"}});
  node({10.0100, 20.004}, {{"name", "Grace Memorial Church"}, {"amenity", "place_of_worship"}});
  node({10.0120, 20.004}, {{"name", "Memorial Church"}, {"amenity", "place_of_worship"}});
  node({10.0130, 20.004}, {{"name", "First Bank"}, {"amenity", "bank"}});
  node({10.0500, 20.004}, {{"name", "First Bank"}, {"amenity", "bank"}});
  way({{"highway", "residential"}, {"name", "Harbor Street"}}, {{10, 20.000}, {10, 20.004}});
  // The same street's second half, drawn the other way round.
  way({{"highway", "residential"}, {"name", "Harbor Street"}}, {{10, 20.009}, {10, 20.004}});
  way({{"highway", "residential"}, {"name", "Harbor Street"}}, {{10, 20.102}, {10, 20.108}});
  way({{"highway", "primary"}, {"name", "Plaça de l’Àncora"}}, {{10.02, 20.000}, {10.02, 20.009}});
  way({{"highway", "motorway"}, {"name", "Coast Motorway"}}, {{9.97, 20.0}, {9.97, 20.1}});
  MapArea area;
  area.id = 1;
  area.tags = Tags({{"boundary", "administrative"}, {"admin_level", "8"}, {"name", "Sankt Olaf"}});
  area.polygons = {{{{9.9, 20.1}, {9.9, 20.2}, {10.1, 20.2}, {10.1, 20.1}, {9.9, 20.1}}}};
  map->areas.push_back(area);
  return map;
}

}  // namespace quorvelkit::sandbox
