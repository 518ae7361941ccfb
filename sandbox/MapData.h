// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Tags.h"

#include <QuorvelPlatform/Coordinate.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// A tagged point: a shop, an address, a place name, a traffic light.
struct MapNode {
  std::int64_t id = 0;
  Coordinate position;
  Tags tags;
};

/// A tagged line with at least two positions: a street, a river. Closed lines (a roundabout) end
/// on the position they start with.
struct MapWay {
  std::int64_t id = 0;
  Tags tags;
  std::vector<Coordinate> line;
};

/// A tagged surface: water, a park, a building. Every polygon is an outer ring followed by the
/// rings of its holes; rings end on the position they start with.
struct MapArea {
  using Ring = std::vector<Coordinate>;
  using Polygon = std::vector<Ring>;

  std::int64_t id = 0;
  /// Whether the id is that of a way; otherwise of a relation. Ids of the two may coincide.
  bool fromWay = true;
  Tags tags;
  std::vector<Polygon> polygons;
};

/// Whose data a map is, as the answers of a search name it.
struct MapSource {
  /// One of the origins that applications know.
  std::string origin = "OSM";
  std::string provider = "OpenStreetMap";
};

/// All that the sandbox knows about its part of the world, as read from a file and never changed
/// afterwards: the road network, the place search and the map tiles are all made from it.
///
/// Positions carry the seven decimals of the OSM database exactly as read, so that ways which
/// share a position are joined there.
class MapData {
 public:
  std::vector<MapNode> nodes;
  std::vector<MapWay> ways;
  std::vector<MapArea> areas;
  MapSource source;

  /// Reads a GeoJSON FeatureCollection with OSM tags as properties, as `osmium export -u type_id`
  /// writes it. Features without usable geometry are skipped; features without an id get negative
  /// ones. On failure the result is null and `problem` says why.
  static std::shared_ptr<const MapData> fromGeoJSON(std::string_view text, std::string& problem);
  /// The same from a file.
  static std::shared_ptr<const MapData> fromFile(const std::string& path, std::string& problem);
  /// The invented town that is built into the program.
  static std::shared_ptr<const MapData> builtInTown();
};

}  // namespace quorvelkit::sandbox
