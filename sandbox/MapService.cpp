// SPDX-License-Identifier: Apache-2.0
#include "sandbox/MapService.h"

#include "sandbox/GeoJSONWriter.h"
#include "sandbox/GlyphService.h"
#include "sandbox/MapLabels.h"
#include "sandbox/MapStyle.h"

#include <utility>
#include <vector>

namespace quorvelkit::sandbox {

namespace {

void addArea(ValueArray& features, const MapArea& area, const ValueMap& properties) {
  for (const MapArea::Polygon& polygon : area.polygons) {
    ValueArray rings;
    for (const MapArea::Ring& ring : polygon)
      rings.push_back(positions(ring));
    addFeature(features, "Polygon", Value(std::move(rings)), properties);
  }
}

HTTPAnswer collection(ValueArray features) {
  return HTTPAnswer::json(featureCollection(std::move(features)));
}

// Returns the attribution of the map data as HTML.
std::string attribution(const MapSource& source) {
  if (source.origin != "OSM") return source.provider + ", an invented town";
  return "&copy; <a href=\"https://www.openstreetmap.org/copyright\">OpenStreetMap</a> "
         "contributors";
}

}  // namespace

std::optional<HTTPAnswer> MapService::answer(const HTTPRequest& request,
                                             const std::string& rootURL) const {
  if (request.method != "GET") return std::nullopt;
  ValueArray features;
  if (request.path == "/style.json") {
    return HTTPAnswer::json(mapStyle(rootURL, attribution(map_->source)));
  }
  if (request.path == "/land.geojson") {
    for (const MapArea& area : map_->areas) {
      const std::string_view name = landClass(area.tags);
      if (!name.empty()) addArea(features, area, {{"class", name}});
    }
    return collection(std::move(features));
  }
  if (request.path == "/water.geojson") {
    for (const MapArea& area : map_->areas) {
      if (isWater(area.tags)) addArea(features, area, {});
    }
    for (const MapWay& way : map_->ways) {
      if (isWater(way.tags)) addFeature(features, "LineString", positions(way.line), {});
    }
    return collection(std::move(features));
  }
  if (request.path == "/streets.geojson") {
    for (const MapWay& way : map_->ways) {
      const std::string_view name = streetClass(way.tags);
      if (name.empty()) continue;
      addFeature(features, "LineString", positions(way.line), {{"class", name}});
    }
    return collection(std::move(features));
  }
  if (request.path == "/labels.geojson") return collection(mapLabels(*map_));
  return glyphsOrSprite(request.path);
}

}  // namespace quorvelkit::sandbox
