// SPDX-License-Identifier: Apache-2.0
#include "sandbox/RoadNetwork.h"

#include "sandbox/Geometry.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quorvelkit::sandbox {
namespace {

/// The length over which the bearing of an edge is measured.
constexpr double bearingMeters = 15;

/// Returns one number for a position, exact to the seven decimals of map data.
std::uint64_t positionKey(const Coordinate& position) {
  const auto latitude = static_cast<std::uint32_t>(std::lround(position.latitude * 1e7));
  const auto longitude = static_cast<std::uint32_t>(std::lround(position.longitude * 1e7));
  return std::uint64_t{latitude} << 32U | longitude;
}

/// Returns a node id for a position that has none. Deterministic, in the range of current OSM ids.
std::int64_t generatedNodeId(std::uint64_t key) {
  key = (key ^ (key >> 31U)) * 0x9E3779B97F4A7C15U;
  return static_cast<std::int64_t>(5'000'000'000U + (key >> 31U));
}

float delayAt(const Tags& tags) {
  if (tags.is("highway", "traffic_signals")) return 7;
  if (tags.is("highway", "stop")) return 4;
  return 0;
}

}  // namespace

RoadNetwork::RoadNetwork(std::shared_ptr<const MapData> map) : map_(std::move(map)) {
  VertexAt vertexAt;
  addRoads(vertexAt);
  readNodes(vertexAt);
  splitIntoSections();
  indexLeavingEdges();
}

void RoadNetwork::addRoads(VertexAt& vertexAt) {
  for (const MapWay& way : map_->ways) {
    const auto road = Road::fromWay(way);
    if (!road) continue;
    roads_.push_back(*road);
    topSpeed_ = std::max(topSpeed_, road->speed);
    roadShapes_.push_back(static_cast<std::uint32_t>(shapes_.size()));
    for (const Coordinate& position : way.line) {
      const std::uint64_t key = positionKey(position);
      const auto next = static_cast<VertexIndex>(vertices_.size());
      const auto [found, isNew] = vertexAt.try_emplace(key, next);
      if (isNew) vertices_.push_back({generatedNodeId(key), position, 0, {}});
      shapes_.push_back(found->second);
    }
  }
  roadShapes_.push_back(static_cast<std::uint32_t>(shapes_.size()));
}

void RoadNetwork::readNodes(const VertexAt& vertexAt) {
  for (const MapNode& node : map_->nodes) {
    const auto found = vertexAt.find(positionKey(node.position));
    if (found == vertexAt.end()) continue;
    Vertex& vertex = vertices_[found->second];
    vertex.id = node.id;
    vertex.delay = delayAt(node.tags);
    if (node.tags.is("highway", "motorway_junction")) vertex.exitNumber = node.tags["ref"];
  }
}

void RoadNetwork::splitIntoSections() {
  std::vector<std::uint8_t> uses(vertices_.size());
  for (const VertexIndex vertex : shapes_) {
    if (uses[vertex] < 2) ++uses[vertex];
  }
  for (std::uint32_t road = 0; road < roads_.size(); ++road) {
    std::uint32_t first = roadShapes_[road];
    const std::uint32_t end = roadShapes_[road + 1];
    for (std::uint32_t at = first + 1; at < end; ++at) {
      if (at + 1 < end && uses[shapes_[at]] < 2) continue;
      addSection(road, first, at);
      first = at;
    }
  }
}

void RoadNetwork::addSection(std::uint32_t road, std::uint32_t first, std::uint32_t last) {
  Section section;
  section.road = road;
  section.firstShape = first;
  section.shapeSize = last - first + 1;
  float delays = 0;
  for (std::uint32_t at = first; at < last; ++at) {
    const Vertex& vertex = vertices_[shapes_[at + 1]];
    section.length += distanceInMeters(vertices_[shapes_[at]].position, vertex.position);
    if (at + 1 < last) delays += vertex.delay;
  }
  if (section.length == 0) return;
  const float driving = static_cast<float>(section.length / roads_[road].speed) + delays;
  section.seconds[0] = driving + vertices_[shapes_[last]].delay;
  section.seconds[1] = driving + vertices_[shapes_[first]].delay;
  sections_.push_back(section);
  const auto edge = static_cast<EdgeIndex>(2 * (sections_.size() - 1));
  sections_.back().bearings[0] = bearingFrom(edge);
  sections_.back().bearings[1] = bearingFrom(reversed(edge));
}

float RoadNetwork::bearingFrom(EdgeIndex edge) const {
  const Coordinate& start = vertex(startOf(edge)).position;
  double walked = 0;
  Coordinate here = start;
  for (std::size_t at = 1; at < shapeSize(edge); ++at) {
    const Coordinate& next = vertex(shape(edge, at)).position;
    const double step = distanceInMeters(here, next);
    if (walked + step >= bearingMeters) {
      here = between(here, next, (bearingMeters - walked) / step);
      break;
    }
    walked += step;
    here = next;
  }
  return static_cast<float>(bearing(start, here));
}

void RoadNetwork::indexLeavingEdges() {
  firstLeaving_.assign(vertices_.size() + 1, 0);
  for (EdgeIndex edge = 0; edge < edgeCount(); ++edge) {
    if (isOpen(edge)) ++firstLeaving_[startOf(edge) + 1];
  }
  std::partial_sum(firstLeaving_.begin(), firstLeaving_.end(), firstLeaving_.begin());
  leaving_.resize(firstLeaving_.back());
  std::vector<std::uint32_t> next(firstLeaving_.begin(), firstLeaving_.end() - 1);
  for (EdgeIndex edge = 0; edge < edgeCount(); ++edge) {
    if (isOpen(edge)) leaving_[next[startOf(edge)]++] = edge;
  }
}

RoadNetwork::VertexIndex RoadNetwork::shape(EdgeIndex edge, std::size_t index) const {
  const Section& section = sections_[edge / 2];
  const std::size_t offset = edge % 2 == 0 ? index : section.shapeSize - 1 - index;
  return shapes_[section.firstShape + offset];
}

double RoadNetwork::endBearing(EdgeIndex edge) const {
  return std::fmod(startBearing(reversed(edge)) + 180, 360);
}

double RoadNetwork::turn(EdgeIndex from, EdgeIndex onto) const {
  return onto == reversed(from) ? 180 : turnAngle(endBearing(from), startBearing(onto));
}

std::span<const RoadNetwork::EdgeIndex> RoadNetwork::leaving(VertexIndex vertex) const {
  return std::span(leaving_).subspan(firstLeaving_[vertex],
                                     firstLeaving_[vertex + 1] - firstLeaving_[vertex]);
}

}  // namespace quorvelkit::sandbox
