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

/// All places of a map that have a name or an address. Immutable.
///
/// The ways of a street are one place, by name and city. A shop with an address gives two places,
/// itself and the address, unless the map has that address already.
class Gazetteer {
 public:
  struct Street {
    /// The number of its place.
    std::uint32_t place = 0;
    StreetLine line;
    /// False for motorways: nobody lives there.
    bool hasHouses = true;
  };

  explicit Gazetteer(std::shared_ptr<const MapData> map);

  const MapSource& source() const { return map_->source; }
  const std::vector<Place>& places() const { return places_; }
  const std::vector<Street>& streets() const { return streets_; }
  const Place& placeOf(const Street& street) const { return places_[street.place]; }

  /// The place with a key, interpolated addresses included.
  std::optional<Place> placeWithKey(std::string_view key) const;
  /// The address with a house number that the map does not have, interpolated; absent when the
  /// map has it, and beyond the street's last number.
  std::optional<Place> interpolatedAddress(std::uint32_t street, int houseNumber) const;
  /// A street with one of its positions and the locality there.
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
  void addNamed(const Feature& feature, bool isLine);
  std::uint32_t streetNear(std::string_view name, const Coordinate& position) const;
  void append(Place place);

  std::shared_ptr<const MapData> map_;
  Localities localities_;
  std::vector<Place> places_;
  std::vector<Street> streets_;
  std::unordered_map<std::string, std::uint32_t> placeByKey_;
  std::unordered_multimap<std::string, std::uint32_t> streetsByName_;
  /// Folded address lines with city, and names of lines with city: what there is already.
  std::unordered_set<std::string> known_;
};

}  // namespace quorvelkit::sandbox
