// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"
#include "sandbox/find/Localities.h"
#include "sandbox/find/Place.h"
#include "sandbox/find/StreetLine.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quorvelkit::sandbox {

/// The places of a map that have a name or an address. Immutable.
///
/// Ways with the same name in the same city are one street and one place. A shop with an address
/// adds two places, the shop and the address, unless the map has the address already.
class Gazetteer {
 public:
  struct Street {
    /// The index of its place.
    std::uint32_t place = 0;
    StreetLine line;
    /// False for motorways.
    bool hasHouses = true;
  };

  explicit Gazetteer(std::shared_ptr<const MapData> map);

  const MapSource& source() const { return map_->source; }
  const std::vector<Place>& places() const { return places_; }
  const std::vector<Street>& streets() const { return streets_; }
  const Place& placeOf(const Street& street) const { return places_[street.place]; }

  /// Returns the place with a key. Accepts keys of interpolated addresses.
  std::optional<Place> placeWithKey(std::string_view key) const;
  /// Returns the interpolated address of a house number. Returns nothing if the map has this
  /// address, or if the number is larger than the last number of the street.
  std::optional<Place> interpolatedAddress(std::uint32_t street, int houseNumber) const;
  /// Returns the place of a street with another position on it and the locality there.
  Place streetAt(std::uint32_t street, const Coordinate& position) const;

 private:
  struct Feature {
    char type = 'n';
    std::int64_t id = 0;
    const Tags* tags = nullptr;
    Coordinate position;
  };

  void addStreets();
  void addFeatures();
  void addAddress(const Feature& feature);
  void addNamedFeature(const Feature& feature, bool isLine);
  std::uint32_t nearestStreet(std::string_view name, const Coordinate& position) const;
  void append(Place place);

  std::shared_ptr<const MapData> map_;
  Localities localities_;
  std::vector<Place> places_;
  std::vector<Street> streets_;
  std::unordered_map<std::string, std::uint32_t> placeByKey_;
  std::unordered_multimap<std::string, std::uint32_t> streetsByName_;
  /// The added address lines and line names, folded and with their city.
  std::unordered_set<std::string> seen_;
};

}  // namespace quorvelkit::sandbox
