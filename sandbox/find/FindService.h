// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"
#include "sandbox/MapData.h"
#include "sandbox/find/FindQuery.h"
#include "sandbox/find/Gazetteer.h"
#include "sandbox/find/PlaceSearch.h"
#include "sandbox/find/SpatialIndex.h"

#include <memory>
#include <optional>

namespace quorvelkit::sandbox {

/// The find server: searches the places and addresses of a map. Thread-safe.
class FindService {
 public:
  explicit FindService(std::shared_ptr<const MapData> map);

  /// Returns nothing if the path belongs to another service.
  std::optional<HTTPAnswer> answer(const HTTPRequest& request) const;

 private:
  HTTPAnswer candidates(const FindQuery& query) const;
  HTTPAnswer suggestions(const FindQuery& query) const;
  HTTPAnswer address(const FindQuery& query) const;
  /// Returns an address of the map that is close to the position, or else the nearest street, with
  /// an interpolated house number if possible. Returns nothing if there is none within ten
  /// kilometers.
  std::optional<Place> nearestAddress(const Coordinate& position) const;

  std::shared_ptr<const Gazetteer> gazetteer_;
  PlaceSearch search_;
  SpatialIndex addresses_;
  SpatialIndex streets_;
};

}  // namespace quorvelkit::sandbox
