// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/PathSearch.h"
#include "sandbox/RoadNetwork.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit::sandbox {

/// One position on the way, and what happens there.
struct RoutePoint {
  Coordinate position;
  /// Since the start, on average.
  double seconds = 0;
  /// From the start.
  double meters = 0;
  /// Absent where the map has no node: at the ends and between two nodes.
  std::optional<std::int64_t> node;
  /// The way that leads here.
  std::int64_t edge = 0;
  /// Which maneuver is made here, by its number.
  std::optional<std::size_t> maneuver;
  std::string notify;
  std::vector<std::string> say;
};

/// A path laid out on the ground: its points with times and distances.
class RouteLine {
 public:
  RouteLine(const RoadNetwork& network, const Path& path);

  std::vector<RoutePoint>& points() { return points_; }
  const std::vector<RoutePoint>& points() const { return points_; }
  /// The distance from the start at which each edge of the path begins, and at the end the whole.
  const std::vector<double>& stepMeters() const { return stepMeters_; }
  double meters() const { return points_.back().meters; }
  double seconds() const { return points_.back().seconds; }

  /// The point where step `step` of the path begins.
  RoutePoint& stepPoint(std::size_t step);
  /// The point at a distance from the start. One is added when none is near.
  RoutePoint& pointAt(double meters);

 private:
  void append(const Coordinate& position, const Road& road, double secondsPerMeter,
              const RoadNetwork::Vertex* node);

  std::vector<RoutePoint> points_;
  std::vector<double> stepMeters_;
};

}  // namespace quorvelkit::sandbox
