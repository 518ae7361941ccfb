// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"
#include "sandbox/MapData.h"
#include "sandbox/RoadIndex.h"
#include "sandbox/RoadNetwork.h"
#include "sandbox/SampleTrip.h"

#include <memory>
#include <optional>

namespace quorvelkit::sandbox {

/// The navigation server: computes routes on the roads of a map. Thread-safe.
class RouteService {
 public:
  explicit RouteService(std::shared_ptr<const MapData> map)
      : network_(std::move(map)), index_(network_) {}

  /// Returns nothing if the path belongs to another service.
  std::optional<HTTPAnswer> answer(const HTTPRequest& request) const;

  const RoadNetwork& network() const { return network_; }
  std::optional<Trip> sampleTrip() const { return sandbox::sampleTrip(network_, index_); }

 private:
  HTTPAnswer route(const RouteQuery& query) const;

  RoadNetwork network_;
  RoadIndex index_;
};

}  // namespace quorvelkit::sandbox
