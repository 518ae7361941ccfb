// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/PathSearch.h"
#include "sandbox/RoadNetwork.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit::sandbox {

/// One point of a route.
struct RoutePoint {
  Coordinate position;
  /// The average time since the start.
  double seconds = 0;
  /// The distance from the start.
  double meters = 0;
  /// The node id; absent at the ends and between two nodes.
  std::optional<std::int64_t> node;
  /// The id of the way that leads to this point.
  std::int64_t edge = 0;
  /// The index of the maneuver at this point.
  std::optional<std::size_t> maneuver;
  std::string notify;
  std::vector<std::string> say;
};

/// The points of a path with their times and distances.
class RouteLine {
 public:
  RouteLine(const RoadNetwork& network, const Path& path);

  std::vector<RoutePoint>& points() { return points_; }
  const std::vector<RoutePoint>& points() const { return points_; }
  /// The distance in meters at which each edge of the path begins, followed by the total.
  const std::vector<double>& stepMeters() const { return stepMeters_; }
  double meters() const { return points_.back().meters; }
  double seconds() const { return points_.back().seconds; }

  /// The point where edge `step` of the path begins.
  RoutePoint& stepPoint(std::size_t step);
  /// Returns the point at a distance from the start. Adds a point if there is none within 25
  /// meters.
  RoutePoint& pointAt(double meters);

 private:
  void append(const Coordinate& position, const Road& road, double secondsPerMeter,
              const RoadNetwork::Vertex* node);

  std::vector<RoutePoint> points_;
  std::vector<double> stepMeters_;
};

}  // namespace quorvelkit::sandbox
