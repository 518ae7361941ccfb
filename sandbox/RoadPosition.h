// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadNetwork.h"

#include <cstddef>

namespace quorvelkit::sandbox {

/// A place on a road: the nearest one to some position on the map.
struct RoadPosition {
  /// The edge along the way; the edge against it passes the same place.
  RoadNetwork::EdgeIndex edge = 0;
  Coordinate position;
  /// From the edge's start, in meters.
  double offset = 0;
  /// Between the two shape vertices `piece` and `piece + 1`.
  std::size_t piece = 0;
  /// How far the road is from the position that was looked up, in meters.
  double distance = 0;
};

}  // namespace quorvelkit::sandbox
