// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadIndex.h"
#include "sandbox/RoadNetwork.h"

#include <QuorvelPlatform/Coordinate.h>

#include <optional>

namespace quorvelkit::sandbox {

/// Where to drive from and to.
struct Trip {
  Coordinate from;
  Coordinate to;
};

/// A trip across the whole map, to try a map of which one knows nothing: from a street in its
/// southwest to one in its northeast that can be reached from there. Absent on a map without one.
std::optional<Trip> sampleTrip(const RoadNetwork& network, const RoadIndex& index);

}  // namespace quorvelkit::sandbox
