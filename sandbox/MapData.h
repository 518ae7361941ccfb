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

/// A tagged line with at least two positions: a street, a river. The first and the last position of
/// a closed line (a roundabout) are equal.
struct MapWay {
  std::int64_t id = 0;
  Tags tags;
  std::vector<Coordinate> line;
};

/// A tagged area: water, a park, a building. A polygon is an outer ring followed by the rings of
/// its holes. The first and the last position of a ring are equal.
struct MapArea {
  using Ring = std::vector<Coordinate>;
  using Polygon = std::vector<Ring>;

  std::int64_t id = 0;
  /// True if `id` is the id of a way, false if of a relation. A way and a relation can have the
  /// same id.
  bool fromWay = true;
  Tags tags;
  std::vector<Polygon> polygons;
};

/// The source of the map data, as the find server names it.
struct MapSource {
  /// The raw value of a `QVOrigin`.
  std::string origin = "OSM";
  std::string provider = "OpenStreetMap";
};

/// The features of a map file. The road network, the place search and the map style's GeoJSON are
/// built from it. Immutable once read.
///
/// Positions keep the seven decimals of the OSM database, so that ways that share a node have
/// exactly equal positions there.
class MapData {
 public:
  std::vector<MapNode> nodes;
  std::vector<MapWay> ways;
  std::vector<MapArea> areas;
  MapSource source;

  /// Reads a GeoJSON FeatureCollection with OSM tags as properties, as `osmium export -u type_id`
  /// writes it. Skips features without usable geometry; gives negative ids to features without an
  /// id. On failure, returns null and sets `problem` to the reason.
  static std::shared_ptr<const MapData> fromGeoJSON(std::string_view text, std::string& problem);
  /// Like fromGeoJSON, with the text of a file.
  static std::shared_ptr<const MapData> fromFile(const std::string& path, std::string& problem);
  /// Returns the fictional town that is built into the program.
  static std::shared_ptr<const MapData> builtInTown();
};

}  // namespace quorvelkit::sandbox
