// SPDX-License-Identifier: Apache-2.0
#include "sandbox/RouteDocument.h"

#include "sandbox/Geometry.h"
#include "sandbox/Instructions.h"
#include "sandbox/Maneuver.h"
#include "sandbox/RouteLine.h"
#include "sandbox/StreetDescription.h"

#include <cmath>

namespace quorvelkit::sandbox {
namespace {

/// A destination nearer than this counts as on the road.
constexpr double onRoadMeters = 5;

double rounded(double value, double unit) { return std::round(value * unit) / unit; }

Side sideOf(const RouteLine& line, const Coordinate& destination) {
  const auto& points = line.points();
  const Coordinate& end = points.back().position;
  if (points.size() < 2 || distanceInMeters(end, destination) < onRoadMeters) {
    return Side::onRoad;
  }
  const double course = bearing(points[points.size() - 2].position, end);
  return turnAngle(course, bearing(end, destination)) < 0 ? Side::left : Side::right;
}

/// Returns the node id of an end point, or the id of the nearest vertex if the point has none.
std::int64_t nodeAt(const RoadNetwork& network, const RoutePoint& end, const RoadPosition& at) {
  if (end.node) return *end.node;
  const auto first = network.vertex(network.shape(at.edge, at.segment));
  const auto second = network.vertex(network.shape(at.edge, at.segment + 1));
  return distanceInMeters(first.position, at.position) <=
                 distanceInMeters(second.position, at.position)
             ? first.id
             : second.id;
}

ValueMap pointMembers(const RoutePoint& point) {
  ValueMap members;
  members.set("lat", rounded(point.position.latitude, 1e7));
  members.set("lon", rounded(point.position.longitude, 1e7));
  members.set("t", rounded(point.seconds, 10));
  members.set("d", rounded(point.meters / metersPerMile, 1e4));
  members.set("edge", point.edge);
  if (point.node) members.set("node", *point.node);
  if (!point.notify.empty()) members.set("notify", point.notify);
  if (!point.say.empty()) members.set("say", JSON::makeArray(point.say));
  return members;
}

}  // namespace

JSON routeDocument(const RoadNetwork& network, const Path& path, const Coordinate& destination) {
  RouteLine line(network, path);
  const std::vector<Maneuver> maneuvers = findManeuvers(network, path);
  const Instructions instructions(network, path, maneuvers, sideOf(line, destination));
  const StreetDescription streets(network, path, maneuvers);
  instructions.addTo(line);

  ValueArray points;
  for (const RoutePoint& point : line.points()) {
    ValueMap members = pointMembers(point);
    if (point.maneuver) {
      const Maneuver& maneuver = maneuvers[*point.maneuver];
      members.set("turn", JSON::makeDictionary({{"dir", maneuver.direction},
                                                {"instruct", instructions.text(maneuver)},
                                                {"st", Value(streets.members(*point.maneuver))}}));
    }
    points.emplace_back(std::move(members));
  }
  return JSON::makeDictionary({{"distance", rounded(line.meters() / metersPerMile, 1e4)},
                               {"duration", rounded(line.seconds() / 60, 1e3)},
                               {"startNode", nodeAt(network, line.points().front(), path.start)},
                               {"endNode", nodeAt(network, line.points().back(), path.end)},
                               {"points", Value(std::move(points))}});
}

}  // namespace quorvelkit::sandbox
