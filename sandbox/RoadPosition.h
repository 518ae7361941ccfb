// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadNetwork.h"

#include <cstddef>

namespace quorvelkit::sandbox {

/// The position on a road that is nearest to a position on the map.
struct RoadPosition {
  /// The edge in the direction of the way.
  RoadNetwork::EdgeIndex edge = 0;
  Coordinate position;
  /// The distance from the start of the edge, in meters.
  double offset = 0;
  /// The position is between the shape vertices `segment` and `segment + 1`.
  std::size_t segment = 0;
  /// The distance from the position on the map, in meters.
  double distance = 0;
};

}  // namespace quorvelkit::sandbox
