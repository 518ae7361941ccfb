// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/FindService.h"

#include "sandbox/Geometry.h"
#include "sandbox/find/FindDocuments.h"

#include <string>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox {
namespace {

/// An address within this distance is the result even if a street is nearer.
constexpr double preferredAddressMeters = 40;
constexpr double maximumAddressMeters = 10000;

SpatialIndex indexOfAddresses(const Gazetteer& gazetteer) {
  std::vector<SpatialIndex::Item> items;
  for (std::uint32_t i = 0; i < gazetteer.places().size(); ++i) {
    const Place& place = gazetteer.places()[i];
    if (place.kind == Place::Kind::address) items.push_back({place.position, place.position, i});
  }
  return SpatialIndex(items);
}

SpatialIndex indexOfStreets(const Gazetteer& gazetteer) {
  std::vector<SpatialIndex::Item> items;
  for (std::uint32_t i = 0; i < gazetteer.streets().size(); ++i) {
    const Gazetteer::Street& street = gazetteer.streets()[i];
    if (!street.hasHouses) continue;
    street.line.forEachSegment([&](const Coordinate& from, const Coordinate& to) {
      items.push_back({from, to, i});
    });
  }
  return SpatialIndex(items);
}

}  // namespace

FindService::FindService(std::shared_ptr<const MapData> map)
    : gazetteer_(std::make_shared<const Gazetteer>(std::move(map))),
      search_(gazetteer_),
      addresses_(indexOfAddresses(*gazetteer_)),
      streets_(indexOfStreets(*gazetteer_)) {}

std::optional<HTTPAnswer> FindService::answer(const HTTPRequest& request) const {
  using Handler = HTTPAnswer (FindService::*)(const FindQuery&) const;
  struct Resource {
    const char* path;
    const char* textParameter;
    Handler handler;
  };
  constexpr Resource resources[] = {
      {"/api/v1/findAddressCandidates", "singleLine", &FindService::candidates},
      {"/api/v1/suggest", "text", &FindService::suggestions},
      {"/api/v1/reverseGeocode", nullptr, &FindService::address},
  };
  for (const auto& [path, textParameter, handler] : resources) {
    if (request.path != path) continue;
    if (request.method != "GET") {
      return HTTPAnswer::failure(
          405, 405, "This resource does not support the method " + request.method + ".");
    }
    std::string problem;
    const auto query = FindQuery::fromParameters(request.parameters, textParameter, problem);
    return query ? (this->*handler)(*query) : HTTPAnswer::failure(400, 400, problem);
  }
  return std::nullopt;
}

HTTPAnswer FindService::candidates(const FindQuery& query) const {
  std::vector<PlaceSearch::Result> found;
  if (!query.magicKey) {
    found = search_.candidates(query.text, {query.location, query.extent});
  } else if (auto place = gazetteer_->placeWithKey(*query.magicKey);
             place && (!query.extent || query.extent->contains(place->position))) {
    const double meters = distanceInMeters(place->position, query.location);
    found.push_back({*std::move(place), 100, meters});
  }
  return HTTPAnswer::json(candidatesDocument(found, gazetteer_->source()));
}

HTTPAnswer FindService::suggestions(const FindQuery& query) const {
  const auto found = search_.suggestions(query.text, {query.location, query.extent});
  return HTTPAnswer::json(suggestionsDocument(found, gazetteer_->source()));
}

HTTPAnswer FindService::address(const FindQuery& query) const {
  const auto place = nearestAddress(query.location);
  if (!place) {
    return HTTPAnswer::failure(404, 404, "There is no address within ten kilometers on this map.");
  }
  return HTTPAnswer::json(addressDocument(*place));
}

std::optional<Place> FindService::nearestAddress(const Coordinate& position) const {
  const auto address = addresses_.nearest(position);
  const auto street = streets_.nearest(position);
  if (address &&
      (address->meters <= preferredAddressMeters || !street || address->meters <= street->meters)) {
    if (address->meters > maximumAddressMeters) return std::nullopt;
    return gazetteer_->places()[address->value];
  }
  if (!street || street->meters > maximumAddressMeters) return std::nullopt;
  if (const auto number = gazetteer_->streets()[street->value].line.numberAt(position)) {
    if (auto place = gazetteer_->interpolatedAddress(street->value, *number)) return place;
  }
  return gazetteer_->streetAt(street->value, street->position);
}

}  // namespace quorvelkit::sandbox
