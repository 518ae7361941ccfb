// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/FindService.h"

#include "sandbox/Geometry.h"
#include "sandbox/find/FindDocuments.h"

#include <string>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox {

FindService::FindService(std::shared_ptr<const MapData> map)
    : gazetteer_(std::make_shared<const Gazetteer>(std::move(map))),
      search_(gazetteer_),
      geocoder_(gazetteer_) {}

std::optional<HTTPAnswer> FindService::answer(const HTTPRequest& request) const {
  using Handler = HTTPAnswer (FindService::*)(const FindQuery&) const;
  struct Resource {
    const char* path;
    const char* textName;
    Handler handler;
  };
  constexpr Resource resources[] = {
      {"/api/v1/findAddressCandidates", "singleLine", &FindService::candidates},
      {"/api/v1/suggest", "text", &FindService::suggestions},
      {"/api/v1/reverseGeocode", nullptr, &FindService::address},
  };
  for (const auto& [path, textName, handler] : resources) {
    if (request.path != path) continue;
    if (request.method != "GET") {
      return HTTPAnswer::failure(405, 405, "This resource does not take " + request.method + ".");
    }
    std::string problem;
    const auto query = FindQuery::fromParameters(request.parameters, textName, problem);
    return query ? (this->*handler)(*query) : HTTPAnswer::failure(400, 400, problem);
  }
  return std::nullopt;
}

HTTPAnswer FindService::candidates(const FindQuery& query) const {
  std::vector<PlaceSearch::Found> found;
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
  const auto place = geocoder_.addressAt(query.location);
  if (!place) {
    return HTTPAnswer::failure(404, 404, "There is no address within ten kilometers on this map.");
  }
  return HTTPAnswer::json(addressDocument(*place));
}

}  // namespace quorvelkit::sandbox
