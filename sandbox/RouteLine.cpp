// SPDX-License-Identifier: Apache-2.0
#include "sandbox/RouteLine.h"

#include "sandbox/Geometry.h"
#include "sandbox/TurnCost.h"

#include <algorithm>

namespace quorvelkit::sandbox {
namespace {

/// An existing point within this distance is used instead of a new one.
constexpr double snapMeters = 25;

bool isBefore(const RoutePoint& point, double meters) { return point.meters < meters; }

}  // namespace

RouteLine::RouteLine(const RoadNetwork& network, const Path& path) {
  points_.push_back({.position = path.start.position,
                     .node = {},
                     .edge = network.road(path.edges.front()).id,
                     .maneuver = {},
                     .notify = {},
                     .say = {}});
  for (std::size_t step = 0; step < path.edges.size(); ++step) {
    const RoadNetwork::EdgeIndex edge = path.edges[step];
    const bool isFirst = step == 0;
    const bool isLast = step + 1 == path.edges.size();
    if (!isFirst) points_.back().seconds += turnSeconds(network, path.edges[step - 1], edge);
    stepMeters_.push_back(meters());

    // The shape vertices that follow the start and precede the end.
    const std::size_t size = network.shapeSize(edge);
    const auto segment = [&](const RoadPosition& at) {
      return edge % 2 == 0 ? at.segment : size - 2 - at.segment;
    };
    const std::size_t first = isFirst ? segment(path.start) + 1 : 1;
    const std::size_t last = isLast ? segment(path.end) : size - 1;
    const double pace = network.seconds(edge) / network.length(edge);
    for (std::size_t at = first; at <= last; ++at) {
      const RoadNetwork::Vertex& vertex = network.vertex(network.shape(edge, at));
      append(vertex.position, network.road(edge), pace, &vertex);
    }
    if (isLast) append(path.end.position, network.road(edge), pace, nullptr);
  }
  stepMeters_.push_back(meters());
}

void RouteLine::append(const Coordinate& position, const Road& road, double secondsPerMeter,
                       const RoadNetwork::Vertex* node) {
  const double step = distanceInMeters(points_.back().position, position);
  if (step < 0.01) {  // The start or the end is at the vertex.
    if (node != nullptr) points_.back().node = node->id;
    return;
  }
  RoutePoint point = {.position = position,
                      .seconds = seconds() + step * secondsPerMeter,
                      .meters = meters() + step,
                      .node = {},
                      .edge = road.id,
                      .maneuver = {},
                      .notify = {},
                      .say = {}};
  if (node != nullptr) point.node = node->id;
  points_.push_back(std::move(point));
}

RoutePoint& RouteLine::stepPoint(std::size_t step) {
  return *std::lower_bound(points_.begin(), points_.end() - 1, stepMeters_[step], isBefore);
}

RoutePoint& RouteLine::pointAt(double meters) {
  auto next = std::lower_bound(points_.begin(), points_.end() - 1, meters, isBefore);
  if (next->meters - meters < snapMeters || next == points_.begin()) return *next;
  const auto previous = next - 1;
  if (meters - previous->meters < snapMeters) return *previous;
  const double fraction = (meters - previous->meters) / (next->meters - previous->meters);
  RoutePoint point = {.position = between(previous->position, next->position, fraction),
                      .seconds = previous->seconds + fraction * (next->seconds - previous->seconds),
                      .meters = meters,
                      .node = {},
                      .edge = next->edge,
                      .maneuver = {},
                      .notify = {},
                      .say = {}};
  return *points_.insert(next, std::move(point));
}

}  // namespace quorvelkit::sandbox
