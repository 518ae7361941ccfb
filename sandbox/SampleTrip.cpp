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

// The middles of the streets that people live on, from southwest to northeast.
std::vector<Coordinate> streetsAcross(const RoadNetwork& network) {
  std::vector<Coordinate> places;
  for (std::size_t section = 0; section < network.sectionCount(); ++section) {
    const auto edge = static_cast<RoadNetwork::EdgeIndex>(2 * section);
    if (network.road(edge).isHighway() || network.road(edge).name.empty()) continue;
    const auto middle = network.shape(edge, network.shapeSize(edge) / 2);
    places.push_back(network.vertex(middle).position);
  }
  if (places.empty()) return places;
  const double narrowing = std::cos(places.front().latitude * std::numbers::pi / 180);
  const auto northeast = [&](const Coordinate& place) {
    return place.latitude + place.longitude * narrowing;
  };
  std::sort(places.begin(), places.end(),
            [&](const Coordinate& a, const Coordinate& b) { return northeast(a) < northeast(b); });
  return places;
}

}  // namespace

// The outermost streets are often cut off from the rest by the map's edge, so the search moves
// inward until a path is found.
std::optional<Trip> sampleTrip(const RoadNetwork& network, const RoadIndex& index) {
  const std::vector<Coordinate> places = streetsAcross(network);
  constexpr std::size_t steps = 40;
  for (std::size_t step = 1; step < steps / 2; ++step) {
    const std::size_t inward = places.size() * step / steps;
    if (inward >= places.size() - inward) break;
    const Trip trip{places[inward], places[places.size() - 1 - inward]};
    if (fastestPath(network, index.near(trip.from), index.near(trip.to), std::nullopt)) return trip;
  }
  return std::nullopt;
}

}  // namespace quorvelkit::sandbox
