// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"

#include <QuorvelKit/JSON/JSON.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvelkit::sandbox {

/// Reads the features of a GeoJSON document (RFC 7946) into map data.
class GeoJSONReader {
 public:
  /// Adds the features of a FeatureCollection. Returns false and sets `problem` to the reason if
  /// the document is something else.
  bool read(const JSON& document, std::string& problem);

  /// Returns what was read. Call it once, after read().
  MapData takeMap() { return std::move(map_); }

 private:
  /// The id of a feature in the OSM database: 'n', 'w' or 'r', and a number.
  struct Id {
    char kind = 0;
    std::int64_t number = 0;
  };

  void addFeature(const ValueView& feature);
  void addArea(const Id& id, const Tags& tags, std::vector<MapArea::Polygon> polygons);
  Id readId(const ValueView& feature);

  MapData map_;
  std::int64_t lastGeneratedId_ = 0;
};

}  // namespace quorvelkit::sandbox
