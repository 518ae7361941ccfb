// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadIndex.h"
#include "sandbox/RoadNetwork.h"

#include <QuorvelPlatform/Coordinate.h>

#include <optional>

namespace quorvelkit::sandbox {

/// The start and the end of a route.
struct Trip {
  Coordinate from;
  Coordinate to;
};

/// Returns an example trip across the map, from a street in its southwest to a street in its
/// northeast. Returns nothing if no such trip has a path.
std::optional<Trip> sampleTrip(const RoadNetwork& network, const RoadIndex& index);

}  // namespace quorvelkit::sandbox
