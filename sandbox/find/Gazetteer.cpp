// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/Gazetteer.h"

#include "sandbox/find/Areas.h"
#include "sandbox/find/Country.h"
#include "sandbox/find/SearchWords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <utility>

namespace quorvelkit::sandbox {
namespace {

/// The maximum distance of an address from its street.
constexpr double maximumStreetMeters = 1000;

bool isStreet(const Tags& tags) {
  constexpr std::array<std::string_view, 6> others{"platform", "services",     "rest_area",
                                                   "proposed", "construction", "raceway"};
  return tags.has("highway") &&
         std::find(others.begin(), others.end(), tags["highway"]) == others.end();
}

std::string_view streetName(const Tags& tags) {
  return tags.has("name") ? tags["name"] : tags["ref"];
}

std::string_view addressStreet(const Tags& tags) {
  return tags.has("addr:street") ? tags["addr:street"] : tags["addr:place"];
}

std::vector<std::string> categoriesOf(const Tags& tags) {
  std::vector<std::string> categories;
  for (const char* key : {"amenity", "shop", "tourism", "leisure", "office", "craft", "healthcare",
                          "historic", "place", "natural", "waterway", "railway", "public_transport",
                          "aeroway", "man_made", "highway", "building"}) {
    const std::string_view value = tags[key];
    if (value.empty() || value == "no") continue;
    // "building" = "yes" has no information; "shop" = "yes" has.
    if (value == "yes" && key == std::string_view("building")) continue;
    std::string& category = categories.emplace_back(value == "yes" ? key : value);
    std::replace(category.begin(), category.end(), '_', ' ');
  }
  return categories;
}

std::string otherNamesOf(const Tags& tags) {
  std::string names;
  for (const char* key : {"alt_name", "name:en", "int_name", "official_name", "short_name",
                          "old_name", "loc_name", "brand", "operator", "ref"}) {
    if (!tags.has(key)) continue;
    names += tags[key];
    names += ' ';
  }
  return names;
}

std::string firstTag(const Tags& tags, std::initializer_list<const char*> keys) {
  for (const char* key : keys) {
    if (tags.has(key)) return std::string(tags[key]);
  }
  return {};
}

/// Returns the number at the start of a house number: 12 for "12A".
std::optional<int> leadingNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number <= 0) return std::nullopt;
  return number;
}

std::string keyOf(std::string_view kind, char type, std::int64_t id) {
  std::string key(kind);
  key += '.';
  key += type;
  return key += std::to_string(id);
}

}  // namespace

Gazetteer::Gazetteer(std::shared_ptr<const MapData> map)
    : map_(std::move(map)), localities_(*map_) {
  addStreets();
  addFeatures();
}

void Gazetteer::append(Place place) {
  const auto number = static_cast<std::uint32_t>(places_.size());
  if (placeByKey_.try_emplace(place.key, number).second) places_.push_back(std::move(place));
}

void Gazetteer::addStreets() {
  // The first way in the map names the street. std::map makes the order deterministic.
  std::map<std::pair<std::string, std::string>, std::vector<const MapWay*>> waysByStreet;
  for (const MapWay& way : map_->ways) {
    const std::string name = foldedName(streetName(way.tags));
    if (name.empty() || !isStreet(way.tags) || way.line.size() < 2) continue;
    const std::string city = localities_.at(way.line[way.line.size() / 2]).city;
    waysByStreet[{name, city}].push_back(&way);
  }
  for (const auto& [nameAndCity, ways] : waysByStreet) {
    const MapWay& first = *ways.front();
    std::vector<std::vector<Coordinate>> lines;
    for (const MapWay* way : ways)
      lines.push_back(way->line);
    StreetLine line(std::move(lines));
    Place place;
    place.kind = Place::Kind::street;
    place.key = keyOf("street", 'w', first.id);
    place.name = streetName(first.tags);
    place.otherNames = otherNamesOf(first.tags);
    place.position = line.midpoint();
    place.locality = localities_.at(place.position);
    place.locality.city = nameAndCity.second;
    place.locality.postal.clear();  // A street can have several.
    place.street = static_cast<std::uint32_t>(streets_.size());
    const std::size_t before = places_.size();
    append(std::move(place));
    if (places_.size() == before) continue;
    streetsByName_.emplace(nameAndCity.first, static_cast<std::uint32_t>(streets_.size()));
    streets_.push_back({static_cast<std::uint32_t>(before), std::move(line),
                        !first.tags["highway"].starts_with("motorway")});
  }
}

void Gazetteer::addFeatures() {
  std::vector<std::pair<Feature, bool>> features;
  for (const MapNode& node : map_->nodes) {
    features.push_back({{'n', node.id, &node.tags, node.position}, false});
  }
  for (const MapArea& area : map_->areas) {
    if (const auto middle = areaCentroid(area)) {
      features.push_back({{area.fromWay ? 'w' : 'r', area.id, &area.tags, *middle}, false});
    }
  }
  for (const MapWay& way : map_->ways) {
    if (isStreet(way.tags) || way.line.empty()) continue;
    features.push_back({{'w', way.id, &way.tags, way.line[way.line.size() / 2]}, true});
  }
  // Addresses of their own first, then those of shops.
  for (const bool named : {false, true}) {
    for (const auto& [feature, isLine] : features) {
      if (feature.tags->has("name") == named) addAddress(feature);
    }
  }
  for (const auto& [feature, isLine] : features)
    addNamedFeature(feature, isLine);
}

std::uint32_t Gazetteer::nearestStreet(std::string_view name, const Coordinate& position) const {
  std::uint32_t best = Place::noStreet;
  double bestMeters = maximumStreetMeters;
  const auto [first, last] = streetsByName_.equal_range(foldedName(name));
  for (auto i = first; i != last; ++i) {
    const double meters = streets_[i->second].line.metersTo(position);
    if (meters > bestMeters) continue;
    bestMeters = meters;
    best = i->second;
  }
  return best;
}

void Gazetteer::addAddress(const Feature& feature) {
  const Tags& tags = *feature.tags;
  const std::string_view number = tags["addr:housenumber"];
  const std::string_view street = addressStreet(tags);
  if (number.empty() || street.empty()) return;
  Place place;
  place.kind = Place::Kind::address;
  place.key = keyOf("address", feature.type, feature.id);
  place.locality = localities_.of(tags, feature.position);
  place.name = addressLine(number, street, place.locality.country);
  place.position = feature.position;
  place.street = nearestStreet(street, feature.position);
  if (!seen_.insert(foldedName(place.name) + '\n' + foldedName(place.locality.city)).second) {
    return;
  }
  const auto leading = leadingNumber(number);
  if (leading && place.street != Place::noStreet) {
    streets_[place.street].line.addHouse(*leading, feature.position);
  }
  append(std::move(place));
}

void Gazetteer::addNamedFeature(const Feature& feature, bool isLine) {
  const Tags& tags = *feature.tags;
  const std::string_view name = tags["name"];
  if (name.empty() || tags.is("boundary", "administrative") ||
      tags.is("highway", "motorway_junction")) {
    return;
  }
  Place place;
  place.kind = tags.has("place") ? Place::Kind::locality : Place::Kind::pointOfInterest;
  place.key =
      keyOf(place.kind == Place::Kind::locality ? "locality" : "place", feature.type, feature.id);
  place.name = name;
  place.otherNames = otherNamesOf(tags);
  place.locality = localities_.of(tags, feature.position);
  place.position = feature.position;
  place.categories = categoriesOf(tags);
  place.phone = firstTag(tags, {"phone", "contact:phone"});
  place.website = firstTag(tags, {"website", "contact:website", "url"});
  if (place.kind == Place::Kind::locality) {
    place.locality.postal.clear();
    // A city is not part of a neighboring city.
    if (tags.is("place", "city") || tags.is("place", "town")) place.locality.city = name;
    if (tags.is("place", "country")) place.locality.city.clear();
  } else if (tags.has("addr:housenumber")) {
    place.address =
        addressLine(tags["addr:housenumber"], addressStreet(tags), place.locality.country);
  } else {
    place.address = addressStreet(tags);
  }
  // All ways of a river or a railway line are one place.
  if (isLine && !seen_.insert("line\n" + foldedName(name) + '\n' + place.locality.city).second) {
    return;
  }
  append(std::move(place));
}

std::optional<Place> Gazetteer::interpolatedAddress(std::uint32_t street, int houseNumber) const {
  const Street& on = streets_[street];
  if (!on.hasHouses || houseNumber <= 0 || on.line.hasHouse(houseNumber)) return std::nullopt;
  const auto position = on.line.positionOf(houseNumber);
  if (!position) return std::nullopt;
  Place place = streetAt(street, *position);
  place.kind = Place::Kind::interpolatedAddress;
  place.key += '.' + std::to_string(houseNumber);
  place.name = addressLine(std::to_string(houseNumber), place.name, place.locality.country);
  return place;
}

Place Gazetteer::streetAt(std::uint32_t street, const Coordinate& position) const {
  Place place = placeOf(streets_[street]);
  place.position = position;
  std::string city = std::move(place.locality.city);
  place.locality = localities_.at(position);
  place.locality.city = std::move(city);
  return place;
}

std::optional<Place> Gazetteer::placeWithKey(std::string_view key) const {
  const auto found = placeByKey_.find(std::string(key));
  if (found != placeByKey_.end()) return places_[found->second];
  // Keys of interpolated addresses have the form "street.w123.45" for house number 45.
  const std::size_t dot = key.rfind('.');
  if (dot == std::string_view::npos) return std::nullopt;
  const std::string_view digits = key.substr(dot + 1);
  int number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const auto street = placeByKey_.find(std::string(key.substr(0, dot)));
  if (street == placeByKey_.end() || error != std::errc() || end != digits.data() + digits.size() ||
      places_[street->second].kind != Place::Kind::street) {
    return std::nullopt;
  }
  return interpolatedAddress(places_[street->second].street, number);
}

}  // namespace quorvelkit::sandbox
