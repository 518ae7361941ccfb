// SPDX-License-Identifier: Apache-2.0
#include "sandbox/MapLabels.h"

#include "sandbox/GeoJSONWriter.h"
#include "sandbox/MapStyle.h"
#include "sandbox/RoadNumber.h"
#include "sandbox/find/StreetLine.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace quorvelkit::sandbox {
namespace {

/// The number of characters on the widest shield.
constexpr std::size_t maximumShieldLength = 5;

/// The text of a road number and its shield, without the number of its characters.
struct Shield {
  std::string text;
  std::string_view icon;
};

std::optional<Shield> shieldOf(std::string_view ref) {
  const auto number = RoadNumber::fromRef(ref);
  if (!number) return std::nullopt;
  Shield shield{std::to_string(number->number), "road"};
  if (number->family == "I") {
    shield.icon = "i";
  } else if (number->family == "US") {
    shield.icon = "us";
  } else if (number->family == "CR") {
    shield.icon = "county";
  } else if (number->family == "SR" || number->family == "CA") {
    shield.icon = "state";
  } else {
    shield.text = ref.substr(0, ref.find(';'));
  }
  if (shield.text.size() > maximumShieldLength) return std::nullopt;
  return shield;
}

using Lines = std::vector<std::vector<Coordinate>>;
/// Class and text.
using LineKey = std::pair<std::string_view, std::string>;

void addStreets(const MapData& map, ValueArray& labels) {
  std::map<LineKey, Lines> names;
  std::map<std::pair<std::string_view, std::string>, Lines> shields;
  for (const MapWay& way : map.ways) {
    const std::string_view kind = streetClass(way.tags);
    if (kind.empty() || way.tags.is("area", "yes")) continue;
    const std::string_view name = way.tags["name"];
    if (!name.empty()) names[{kind, std::string(name)}].push_back(way.line);
    if (way.tags["highway"].ends_with("_link")) continue;
    if (const auto shield = shieldOf(way.tags["ref"]))
      shields[{shield->icon, shield->text}].push_back(way.line);
  }
  for (auto& [key, lines] : names) {
    for (const auto& line : joinLines(std::move(lines)))
      addFeature(labels, "LineString", positions(line),
                 {{"class", key.first}, {"name", key.second}});
  }
  for (auto& [key, lines] : shields) {
    const auto& [icon, text] = key;
    const std::string image = "shield-" + std::string(icon) + '-' + std::to_string(text.size());
    const char* const ink = icon == "i" || icon == "road" ? "light" : "dark";
    for (const auto& line : joinLines(std::move(lines))) {
      addFeature(labels, "LineString", positions(line),
                 {{"class", "shield"}, {"ref", text}, {"shield", image}, {"ink", ink}});
    }
  }
}

std::string_view settlementClass(const Tags& tags) {
  const std::string_view place = tags["place"];
  if (place == "city" || place == "town" || place == "village") return place;
  if (place == "hamlet") return "village";
  if (place == "suburb" || place == "neighbourhood" || place == "quarter") return "suburb";
  return {};
}

/// Returns the center of the bounding box of the largest polygon.
Coordinate centerOf(const MapArea& area) {
  const auto largest = std::max_element(
      area.polygons.begin(), area.polygons.end(),
      [](const auto& a, const auto& b) { return a.front().size() < b.front().size(); });
  const MapArea::Ring& ring = largest->front();
  const auto [south, north] =
      std::minmax_element(ring.begin(), ring.end(),
                          [](const auto& a, const auto& b) { return a.latitude < b.latitude; });
  const auto [west, east] =
      std::minmax_element(ring.begin(), ring.end(),
                          [](const auto& a, const auto& b) { return a.longitude < b.longitude; });
  return {(south->latitude + north->latitude) / 2, (west->longitude + east->longitude) / 2};
}

void addPoint(ValueArray& labels, const Coordinate& at, std::string_view kind, const Tags& tags) {
  addFeature(labels, "Point", position(at), {{"class", kind}, {"name", tags["name"]}});
}

}  // namespace

ValueArray mapLabels(const MapData& map) {
  ValueArray labels;
  addStreets(map, labels);
  for (const MapArea& area : map.areas) {
    const std::string_view land = landClass(area.tags);
    const std::string_view kind = isWater(area.tags)               ? "water"
                                  : land.empty() || land == "town" ? ""
                                                                   : "park";
    if (!kind.empty() && area.tags.has("name")) addPoint(labels, centerOf(area), kind, area.tags);
  }
  for (const MapNode& node : map.nodes) {
    const std::string_view kind = settlementClass(node.tags);
    if (!kind.empty() && node.tags.has("name")) addPoint(labels, node.position, kind, node.tags);
  }
  return labels;
}

}  // namespace quorvelkit::sandbox
