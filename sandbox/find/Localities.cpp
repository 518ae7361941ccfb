// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/Localities.h"

#include "sandbox/find/Areas.h"
#include "sandbox/find/Country.h"

#include <algorithm>
#include <limits>

namespace quorvelkit::sandbox {
namespace {

constexpr double unlimited = std::numeric_limits<double>::infinity();
/// An address within this distance has the same city and postal code.
constexpr double sameCityMeters = 500;
constexpr double neighborhoodMeters = 1500;

/// Returns the typical radius of a settlement by its OSM place tag, in meters; 0 for other places.
double settlementRadius(std::string_view place) {
  if (place == "city") return 12000;
  if (place == "town") return 4000;
  if (place == "village") return 2000;
  return place == "hamlet" ? 500 : 0;
}

bool isNeighborhood(std::string_view place) {
  return place == "neighbourhood" || place == "suburb" || place == "quarter";
}

std::string_view regionTag(const Tags& tags) {
  for (const char* key : {"addr:state", "addr:province", "addr:region"}) {
    if (tags.has(key)) return tags[key];
  }
  return {};
}

std::string_view countryTag(const Tags& tags) {
  for (const char* key :
       {"ISO3166-1:alpha3", "ISO3166-1:alpha2", "ISO3166-1", "country_code_iso3166_1_alpha_2"}) {
    if (tags.has(key)) return tags[key];
  }
  return tags.has("name:en") ? tags["name:en"] : tags["name"];
}

}  // namespace

void Localities::TagValues::add(std::string_view text, const Coordinate& position) {
  if (text.empty()) return;
  items.push_back({position, position, static_cast<std::uint32_t>(texts.size())});
  texts.emplace_back(text);
}

std::string Localities::TagValues::nearest(const Coordinate& position, double withinMeters) const {
  const auto found = index->nearest(position);
  return found && found->meters <= withinMeters ? texts[found->value] : std::string();
}

bool Localities::Boundary::contains(const Coordinate& position) const {
  return position.latitude >= south && position.latitude <= north && position.longitude >= west &&
         position.longitude <= east && areaContains(*area, position);
}

Localities::Localities(const MapData& map) {
  for (const MapNode& node : map.nodes) {
    addTagValues(node.tags, node.position);
    addSettlement(node.tags, node.position);
  }
  for (const MapArea& area : map.areas) {
    if (const auto position = areaCentroid(area)) addTagValues(area.tags, *position);
    addBoundary(area);
  }
  for (TagValues* all : {&neighborhoods_, &cities_, &regions_, &postals_, &countries_}) {
    all->buildIndex();
  }
  settlementIndex_.emplace(settlementItems_);
}

void Localities::addTagValues(const Tags& tags, const Coordinate& position) {
  cities_.add(tags["addr:city"], position);
  regions_.add(regionTag(tags), position);
  postals_.add(tags["addr:postcode"], position);
  countries_.add(countryCode(tags["addr:country"]), position);
}

void Localities::addSettlement(const Tags& tags, const Coordinate& position) {
  const std::string_view name = tags["name"];
  if (name.empty()) return;
  if (isNeighborhood(tags["place"])) neighborhoods_.add(name, position);
  if (tags.is("place", "country")) countries_.add(countryCode(countryTag(tags)), position);
  if (const double radius = settlementRadius(tags["place"]); radius > 0) {
    settlementItems_.push_back(
        {position, position, static_cast<std::uint32_t>(settlements_.size())});
    settlements_.push_back({std::string(name), radius});
  }
}

Localities::Level Localities::levelOf(const Tags& tags) {
  if (tags.is("boundary", "postal_code")) return Level::postal;
  if (isNeighborhood(tags["place"])) return Level::neighborhood;
  if (settlementRadius(tags["place"]) > 0) return Level::city;
  if (!tags.is("boundary", "administrative")) return Level::none;
  const std::string_view level = tags["admin_level"];
  if (level == "2") return Level::country;
  if (level == "4") return Level::region;
  if (level == "7" || level == "8") return Level::city;
  return level == "9" || level == "10" ? Level::neighborhood : Level::none;
}

void Localities::addBoundary(const MapArea& area) {
  const Level level = levelOf(area.tags);
  if (level == Level::none) return;
  Boundary boundary;
  boundary.area = &area;
  boundary.name = level == Level::country ? countryCode(countryTag(area.tags))
                  : level == Level::postal && area.tags.has("postal_code")
                      ? area.tags["postal_code"]
                      : area.tags["name"];
  if (boundary.name.empty()) return;
  for (const MapArea::Polygon& polygon : area.polygons) {
    if (polygon.empty()) continue;
    for (const Coordinate& position : polygon.front()) {
      boundary.south = std::min(boundary.south, position.latitude);
      boundary.north = std::max(boundary.north, position.latitude);
      boundary.west = std::min(boundary.west, position.longitude);
      boundary.east = std::max(boundary.east, position.longitude);
    }
  }
  boundaries_[static_cast<int>(level)].push_back(std::move(boundary));
}

std::string Localities::boundaryContaining(const Coordinate& position, Level level) const {
  const auto& all = boundaries_[static_cast<int>(level)];
  const auto found = std::find_if(all.begin(), all.end(), [&](const Boundary& boundary) {
    return boundary.contains(position);
  });
  return found == all.end() ? std::string() : found->name;
}

std::string Localities::nearestSettlement(const Coordinate& position) const {
  // The settlement with the smallest distance relative to its radius, so that a city takes
  // precedence over its hamlets.
  const Settlement* best = nullptr;
  double bestFraction = unlimited;
  for (const auto& found : settlementIndex_->nearest(position, 16)) {
    const Settlement& settlement = settlements_[found.value];
    const double fraction = found.meters / settlement.radius;
    if (fraction >= bestFraction) continue;
    bestFraction = fraction;
    best = &settlement;
  }
  return best == nullptr ? std::string() : best->name;
}

Locality Localities::at(const Coordinate& position) const { return of(Tags(), position); }

Locality Localities::of(const Tags& tags, const Coordinate& position) const {
  // Returns the result of the first source that has one.
  const auto firstOf = [](const auto&... sources) {
    std::string text;
    (void)(... || !(text = sources()).empty());
    return text;
  };
  const auto around = [&](Level level) {
    return [&, level] { return boundaryContaining(position, level); };
  };
  const auto near = [&](const TagValues& values, double meters) {
    return [&, meters] { return values.nearest(position, meters); };
  };
  Locality result;
  result.neighborhood =
      firstOf(around(Level::neighborhood), near(neighborhoods_, neighborhoodMeters));
  result.city = firstOf([&] { return std::string(tags["addr:city"]); }, around(Level::city),
                        near(cities_, sameCityMeters), [&] { return nearestSettlement(position); },
                        near(cities_, unlimited));
  result.postal = firstOf([&] { return std::string(tags["addr:postcode"]); }, around(Level::postal),
                          near(postals_, sameCityMeters));
  result.region = firstOf([&] { return std::string(regionTag(tags)); }, around(Level::region),
                          near(regions_, unlimited));
  result.country = firstOf([&] { return countryCode(tags["addr:country"]); },
                           around(Level::country), near(countries_, unlimited));
  // Addresses in the USA have a state but rarely a country.
  if (result.country.empty() || result.country == "USA") {
    if (const std::string_view state = stateName(result.region); !state.empty()) {
      result.region = state;
      result.country = "USA";
    }
  }
  return result;
}

}  // namespace quorvelkit::sandbox
