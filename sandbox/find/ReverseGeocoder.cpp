// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/ReverseGeocoder.h"

#include <utility>
#include <vector>

namespace quorvelkit::sandbox {
namespace {

/// A known house this close is the answer, even where a street is closer.
constexpr double houseMeters = 40;
constexpr double farthestMeters = 10000;

NearestIndex indexOfAddresses(const Gazetteer& gazetteer) {
  std::vector<NearestIndex::Item> items;
  for (std::uint32_t i = 0; i < gazetteer.places().size(); ++i) {
    const Place& place = gazetteer.places()[i];
    if (place.kind == Place::Kind::address) items.push_back({place.position, place.position, i});
  }
  return NearestIndex(items);
}

NearestIndex indexOfStreets(const Gazetteer& gazetteer) {
  std::vector<NearestIndex::Item> items;
  for (std::uint32_t i = 0; i < gazetteer.streets().size(); ++i) {
    const Gazetteer::Street& street = gazetteer.streets()[i];
    if (!street.hasHouses) continue;
    street.line.forEachPiece([&](const Coordinate& from, const Coordinate& to) {
      items.push_back({from, to, i});
    });
  }
  return NearestIndex(items);
}

}  // namespace

ReverseGeocoder::ReverseGeocoder(std::shared_ptr<const Gazetteer> gazetteer)
    : gazetteer_(std::move(gazetteer)),
      addresses_(indexOfAddresses(*gazetteer_)),
      streets_(indexOfStreets(*gazetteer_)) {}

std::optional<Place> ReverseGeocoder::addressAt(const Coordinate& position) const {
  const auto house = addresses_.nearest(position);
  const auto street = streets_.nearest(position);
  const bool isAtHouse =
      house && (house->meters <= houseMeters || !street || house->meters <= street->meters);
  if (isAtHouse) {
    if (house->meters > farthestMeters) return std::nullopt;
    return gazetteer_->places()[house->value];
  }
  if (!street || street->meters > farthestMeters) return std::nullopt;
  if (const auto number = gazetteer_->streets()[street->value].line.numberAt(position)) {
    if (auto place = gazetteer_->interpolatedAddress(street->value, *number)) return place;
  }
  return gazetteer_->streetAt(street->value, street->position);
}

}  // namespace quorvelkit::sandbox
