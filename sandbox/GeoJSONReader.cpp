// SPDX-License-Identifier: Apache-2.0
#include "sandbox/GeoJSONReader.h"

#include <charconv>
#include <cmath>
#include <optional>

namespace quorvelkit::sandbox {
namespace {

std::string_view memberText(const ValueView& map, const KeyView& key) {
  const auto value = map.member(key);
  return value ? value->text().value_or(std::string_view()) : std::string_view();
}

ValueView member(const ValueView& map, const KeyView& key) {
  return map.member(key).value_or(ValueView());
}

std::optional<Coordinate> readPosition(const ValueView& value) {
  const auto longitude = value.element(0).number();
  const auto latitude = value.element(1).number();
  if (!longitude || !latitude || std::abs(*longitude) > 180 || std::abs(*latitude) > 90) {
    return std::nullopt;
  }
  return Coordinate{*latitude, *longitude};
}

/// Returns an empty line if a position is invalid.
std::vector<Coordinate> readLine(const ValueView& value) {
  std::vector<Coordinate> line;
  line.reserve(value.size());
  for (std::size_t at = 0; at < value.size(); ++at) {
    const auto position = readPosition(value.element(at));
    if (!position) return {};
    line.push_back(*position);
  }
  return line;
}

MapArea::Polygon readPolygon(const ValueView& value) {
  MapArea::Polygon polygon;
  for (std::size_t at = 0; at < value.size(); ++at) {
    MapArea::Ring ring = readLine(value.element(at));
    if (ring.size() >= 4) {
      polygon.push_back(std::move(ring));
    } else if (at == 0) {
      return {};
    }
  }
  return polygon;
}

Tags readTags(const ValueView& properties) {
  std::vector<Tags::Pair> pairs;
  for (std::size_t at = 0; at < properties.size(); ++at) {
    const auto [key, value] = properties.memberAt(at);
    if (key.starts_with('@')) continue;  // Metadata that an exporter added.
    if (const auto text = value.text()) {
      pairs.emplace_back(key, *text);
    } else if (value.kind() == ValueView::Kind::number) {
      pairs.emplace_back(key, value.storedNumber()->text());
    }
  }
  return Tags(std::move(pairs));
}

}  // namespace

bool GeoJSONReader::read(const JSON& document, std::string& problem) {
  const ValueView root = document.view();
  const ValueView features = member(root, "features");
  if (memberText(root, "type") != "FeatureCollection" ||
      features.kind() != ValueView::Kind::array) {
    problem = "it is not a GeoJSON FeatureCollection";
    return false;
  }
  for (std::size_t at = 0; at < features.size(); ++at)
    addFeature(features.element(at));
  return true;
}

void GeoJSONReader::addFeature(const ValueView& feature) {
  const ValueView geometry = member(feature, "geometry");
  const ValueView coordinates = member(geometry, "coordinates");
  const std::string_view type = memberText(geometry, "type");
  const Id id = readId(feature);
  Tags tags = readTags(member(feature, "properties"));

  const auto addWay = [&](std::vector<Coordinate> line) {
    if (line.size() >= 2) map_.ways.push_back({id.number, tags, std::move(line)});
  };
  if (type == "Point") {
    if (const auto position = readPosition(coordinates)) {
      map_.nodes.push_back({id.number, *position, std::move(tags)});
    }
  } else if (type == "LineString") {
    addWay(readLine(coordinates));
  } else if (type == "MultiLineString") {
    for (std::size_t at = 0; at < coordinates.size(); ++at) {
      addWay(readLine(coordinates.element(at)));
    }
  } else if (type == "Polygon") {
    addArea(id, tags, {readPolygon(coordinates)});
  } else if (type == "MultiPolygon") {
    std::vector<MapArea::Polygon> polygons;
    for (std::size_t at = 0; at < coordinates.size(); ++at) {
      polygons.push_back(readPolygon(coordinates.element(at)));
    }
    addArea(id, tags, std::move(polygons));
  }
}

void GeoJSONReader::addArea(const Id& id, const Tags& tags,
                            std::vector<MapArea::Polygon> polygons) {
  std::erase_if(polygons, [](const MapArea::Polygon& polygon) { return polygon.empty(); });
  if (polygons.empty()) return;
  map_.areas.push_back({id.number, id.kind != 'r', tags, std::move(polygons)});
}

GeoJSONReader::Id GeoJSONReader::readId(const ValueView& feature) {
  Id id;
  std::string_view text = memberText(feature, "id");
  if (const auto number = member(feature, "id").exactInt64()) {
    id.number = *number;
    return id;
  }
  // The formats are "w123" and "way/123".
  if (!text.empty()) id.kind = text.front();
  text.remove_prefix(std::min(text.size(), text.find_first_of("0123456789")));
  if (std::from_chars(text.data(), text.data() + text.size(), id.number).ec != std::errc()) {
    return {0, --lastGeneratedId_};
  }
  if (id.kind == 'a') {  // Area ids: twice the way id, or twice the relation id plus one.
    id = {id.number % 2 == 0 ? 'w' : 'r', id.number / 2};
  }
  return id;
}

}  // namespace quorvelkit::sandbox
