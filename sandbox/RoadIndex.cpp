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

/// A plane with degrees of latitude as its unit; longitudes are shrunk to the same length.
using Point = bg::model::point<double, 2, bg::cs::cartesian>;
using Segment = bg::model::segment<Point>;

struct Piece {
  RoadNetwork::EdgeIndex edge = 0;
  std::uint32_t index = 0;
};

constexpr double farthestMeters = 1000;
constexpr double hardlyFartherMeters = 60;
constexpr double onTheHighwayMeters = 12;
constexpr std::size_t mostRoads = 8;

}  // namespace

struct RoadIndex::Tree {
  double shrink = 1;
  bgi::rtree<std::pair<Segment, Piece>, bgi::linear<16>> rtree;

  Point point(const Coordinate& c) const { return {c.longitude * shrink, c.latitude}; }
};

RoadIndex::RoadIndex(const RoadNetwork& network)
    : network_(network), tree_(std::make_unique<Tree>()) {
  if (network.edgeCount() == 0) return;
  const Coordinate& anywhere = network.vertex(network.startOf(0)).position;
  tree_->shrink = std::cos(anywhere.latitude * std::numbers::pi / 180);
  std::vector<std::pair<Segment, Piece>> pieces;
  for (RoadNetwork::EdgeIndex edge = 0; edge < network.edgeCount(); edge += 2) {
    for (std::uint32_t at = 0; at + 1 < network.shapeSize(edge); ++at) {
      pieces.emplace_back(
          Segment(tree_->point(network.vertex(network.shape(edge, at)).position),
                  tree_->point(network.vertex(network.shape(edge, at + 1)).position)),
          Piece{edge, at});
    }
  }
  // Handed over in one piece, the tree is packed: fast to build and to search.
  tree_->rtree = decltype(tree_->rtree)(pieces);
}

RoadIndex::~RoadIndex() = default;

std::vector<RoadPosition> RoadIndex::near(const Coordinate& position) const {
  std::vector<RoadPosition> found;
  const auto nearest = bgi::nearest(tree_->point(position), 200);
  for (auto at = tree_->rtree.qbegin(nearest); at != tree_->rtree.qend(); ++at) {
    const Piece piece = at->second;
    const Coordinate& from = network_.vertex(network_.shape(piece.edge, piece.index)).position;
    const Coordinate& to = network_.vertex(network_.shape(piece.edge, piece.index + 1)).position;
    RoadPosition candidate;
    candidate.edge = piece.edge;
    candidate.piece = piece.index;
    candidate.position = between(from, to, nearestFraction(from, to, position));
    candidate.distance = distanceInMeters(position, candidate.position);
    const double limit =
        found.empty() ? farthestMeters : found.front().distance + hardlyFartherMeters;
    if (candidate.distance > limit || found.size() == mostRoads) break;
    const Road& road = network_.road(piece.edge);
    const bool highway = road.isHighway() && (road.link || road.roadClass == RoadClass::motorway);
    if (highway && candidate.distance > onTheHighwayMeters) continue;
    if (std::any_of(found.begin(), found.end(),
                    [&](const RoadPosition& other) { return other.edge == piece.edge; })) {
      continue;
    }
    for (std::size_t index = 0; index < piece.index; ++index) {
      candidate.offset +=
          distanceInMeters(network_.vertex(network_.shape(piece.edge, index)).position,
                           network_.vertex(network_.shape(piece.edge, index + 1)).position);
    }
    candidate.offset += distanceInMeters(from, candidate.position);
    found.push_back(candidate);
  }
  return found;
}

}  // namespace quorvelkit::sandbox
