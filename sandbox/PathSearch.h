// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadNetwork.h"
#include "sandbox/RoadPosition.h"

#include <optional>
#include <vector>

namespace quorvelkit::sandbox {

/// A sequence of adjacent edges. The first and the last edge are driven in part.
struct Path {
  std::vector<RoadNetwork::EdgeIndex> edges;
  RoadPosition start;
  RoadPosition end;
};

/// The movement of the vehicle at the start.
struct Heading {
  /// A bearing in degrees, clockwise from north.
  double course = 0;
  /// Whether the vehicle is too fast to turn back at once.
  bool fast = false;
};

/// Returns the fastest path from one of the starts to one of the ends, or nothing if there is no
/// path. Turns cost time. A start or an end that is farther off its road than the nearest one costs
/// time for the additional distance.
std::optional<Path> fastestPath(const RoadNetwork& network, const std::vector<RoadPosition>& starts,
                                const std::vector<RoadPosition>& ends,
                                const std::optional<Heading>& heading);

}  // namespace quorvelkit::sandbox
