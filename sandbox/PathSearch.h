// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadNetwork.h"
#include "sandbox/RoadPosition.h"

#include <optional>
#include <vector>

namespace quorvelkit::sandbox {

/// A way through the network: edges that follow one another, the first and the last in part.
struct Path {
  std::vector<RoadNetwork::EdgeIndex> edges;
  RoadPosition start;
  RoadPosition end;
};

/// How a vehicle is moving at the start: the bearing that it is heading for, in degrees.
struct Heading {
  double course = 0;
  /// Whether it is fast enough that turning back at once is out of the question.
  bool fast = false;
};

/// Finds the fastest path from one of the starts to one of the ends; turns cost time, and so does
/// every meter that a start or an end lies farther from its position than the nearest road does.
/// Absent when no path leads there.
std::optional<Path> fastestPath(const RoadNetwork& network, const std::vector<RoadPosition>& starts,
                                const std::vector<RoadPosition>& ends,
                                const std::optional<Heading>& heading);

}  // namespace quorvelkit::sandbox
