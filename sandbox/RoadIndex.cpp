// SPDX-License-Identifier: Apache-2.0
#include "sandbox/RoadIndex.h"

#include "sandbox/Geometry.h"

#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace quorvelkit::sandbox {
namespace {

namespace bg = boost::geometry;
namespace bgi = boost::geometry::index;

/// A plane with degrees of latitude as the unit; longitudes are scaled to the same length.
using Point = bg::model::point<double, 2, bg::cs::cartesian>;
using Segment = bg::model::segment<Point>;

struct SegmentKey {
  RoadNetwork::EdgeIndex edge = 0;
  std::uint32_t index = 0;
};

constexpr double maximumRoadMeters = 1000;
constexpr double maximumExtraMeters = 60;
constexpr double maximumHighwayMeters = 12;
constexpr std::size_t maximumRoads = 8;

}  // namespace

struct RoadIndex::Tree {
  double longitudeScale = 1;
  bgi::rtree<std::pair<Segment, SegmentKey>, bgi::linear<16>> rtree;

  Point project(const Coordinate& c) const { return {c.longitude * longitudeScale, c.latitude}; }
};

RoadIndex::RoadIndex(const RoadNetwork& network)
    : network_(network), tree_(std::make_unique<Tree>()) {
  if (network.edgeCount() == 0) return;
  const Coordinate& anywhere = network.vertex(network.startOf(0)).position;
  tree_->longitudeScale = std::cos(anywhere.latitude * std::numbers::pi / 180);
  std::vector<std::pair<Segment, SegmentKey>> segments;
  for (RoadNetwork::EdgeIndex edge = 0; edge < network.edgeCount(); edge += 2) {
    for (std::uint32_t at = 0; at + 1 < network.shapeSize(edge); ++at) {
      segments.emplace_back(
          Segment(tree_->project(network.vertex(network.shape(edge, at)).position),
                  tree_->project(network.vertex(network.shape(edge, at + 1)).position)),
          SegmentKey{edge, at});
    }
  }
  // A tree that is built from all values at once is packed: fast to build and to search.
  tree_->rtree = decltype(tree_->rtree)(segments);
}

RoadIndex::~RoadIndex() = default;

std::vector<RoadPosition> RoadIndex::near(const Coordinate& position) const {
  std::vector<RoadPosition> found;
  const auto nearest = bgi::nearest(tree_->project(position), 200);
  for (auto at = tree_->rtree.qbegin(nearest); at != tree_->rtree.qend(); ++at) {
    const SegmentKey segment = at->second;
    const Coordinate& from = network_.vertex(network_.shape(segment.edge, segment.index)).position;
    const Coordinate& to =
        network_.vertex(network_.shape(segment.edge, segment.index + 1)).position;
    RoadPosition candidate;
    candidate.edge = segment.edge;
    candidate.segment = segment.index;
    candidate.position = between(from, to, nearestFraction(from, to, position));
    candidate.distance = distanceInMeters(position, candidate.position);
    const double limit =
        found.empty() ? maximumRoadMeters : found.front().distance + maximumExtraMeters;
    if (candidate.distance > limit || found.size() == maximumRoads) break;
    const Road& road = network_.road(segment.edge);
    const bool highway = road.isHighway() && (road.link || road.roadClass == RoadClass::motorway);
    if (highway && candidate.distance > maximumHighwayMeters) continue;
    if (std::any_of(found.begin(), found.end(),
                    [&](const RoadPosition& other) { return other.edge == segment.edge; })) {
      continue;
    }
    for (std::size_t index = 0; index < segment.index; ++index) {
      candidate.offset +=
          distanceInMeters(network_.vertex(network_.shape(segment.edge, index)).position,
                           network_.vertex(network_.shape(segment.edge, index + 1)).position);
    }
    candidate.offset += distanceInMeters(from, candidate.position);
    found.push_back(candidate);
  }
  return found;
}

}  // namespace quorvelkit::sandbox
