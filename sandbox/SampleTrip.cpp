// SPDX-License-Identifier: Apache-2.0
#include "sandbox/SampleTrip.h"

#include "sandbox/PathSearch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace quorvelkit::sandbox {

namespace {

// Returns the midpoints of named streets other than highways, from southwest to northeast.
std::vector<Coordinate> streetMidpoints(const RoadNetwork& network) {
  std::vector<Coordinate> midpoints;
  for (std::size_t section = 0; section < network.sectionCount(); ++section) {
    const auto edge = static_cast<RoadNetwork::EdgeIndex>(2 * section);
    if (network.road(edge).isHighway() || network.road(edge).name.empty()) continue;
    const auto middle = network.shape(edge, network.shapeSize(edge) / 2);
    midpoints.push_back(network.vertex(middle).position);
  }
  if (midpoints.empty()) return midpoints;
  const double longitudeScale = std::cos(midpoints.front().latitude * std::numbers::pi / 180);
  const auto northeast = [&](const Coordinate& midpoint) {
    return midpoint.latitude + midpoint.longitude * longitudeScale;
  };
  std::sort(midpoints.begin(), midpoints.end(),
            [&](const Coordinate& a, const Coordinate& b) { return northeast(a) < northeast(b); });
  return midpoints;
}

}  // namespace

// Streets at the edge of the map often have no connection to the rest, so the search moves inward
// until it finds a path.
std::optional<Trip> sampleTrip(const RoadNetwork& network, const RoadIndex& index) {
  const std::vector<Coordinate> midpoints = streetMidpoints(network);
  constexpr std::size_t steps = 40;
  for (std::size_t step = 1; step < steps / 2; ++step) {
    const std::size_t inward = midpoints.size() * step / steps;
    if (inward >= midpoints.size() - inward) break;
    const Trip trip{midpoints[inward], midpoints[midpoints.size() - 1 - inward]};
    if (fastestPath(network, index.near(trip.from), index.near(trip.to), std::nullopt)) return trip;
  }
  return std::nullopt;
}

}  // namespace quorvelkit::sandbox
