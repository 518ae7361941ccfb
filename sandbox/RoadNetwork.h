// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"
#include "sandbox/Road.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quorvelkit::sandbox {

/// The roads of a map as a graph. Ways that share a position are joined and split into sections
/// there. A section has two edges, one for each direction. Immutable.
class RoadNetwork {
 public:
  using VertexIndex = std::uint32_t;
  /// Twice the section's index; plus one for the direction against the way.
  using EdgeIndex = std::uint32_t;

  struct Vertex {
    /// The OSM id if the map has a tagged node here, otherwise a number that is computed from the
    /// position. Both can exceed 32 bits.
    std::int64_t id = 0;
    Coordinate position;
    /// The average wait of a car in seconds, at a traffic light or a stop sign.
    float delay = 0;
    /// The number of a motorway exit. Points into the map data.
    std::string_view exitNumber;
  };

  explicit RoadNetwork(std::shared_ptr<const MapData> map);

  std::size_t edgeCount() const { return sections_.size() * 2; }
  std::size_t sectionCount() const { return sections_.size(); }
  /// The speed on the fastest road, in meters per second.
  double topSpeed() const { return topSpeed_; }
  const Vertex& vertex(VertexIndex index) const { return vertices_[index]; }

  static EdgeIndex reversed(EdgeIndex edge) { return edge ^ 1U; }
  const Road& road(EdgeIndex edge) const { return roads_[sections_[edge / 2].road]; }
  /// Whether cars may drive along the edge.
  bool isOpen(EdgeIndex edge) const {
    return edge % 2 == 0 ? road(edge).openForward : road(edge).openBackward;
  }
  /// In meters.
  double length(EdgeIndex edge) const { return sections_[edge / 2].length; }
  /// The driving time in seconds, with the waits on the edge and at its end.
  double seconds(EdgeIndex edge) const { return sections_[edge / 2].seconds[edge % 2]; }
  /// The vertices along the edge in driving direction, both ends included.
  std::size_t shapeSize(EdgeIndex edge) const { return sections_[edge / 2].shapeSize; }
  VertexIndex shape(EdgeIndex edge, std::size_t index) const;
  VertexIndex startOf(EdgeIndex edge) const { return shape(edge, 0); }
  VertexIndex endOf(EdgeIndex edge) const { return shape(edge, shapeSize(edge) - 1); }
  /// The bearing at the start and at the end of the edge, in degrees, measured over 15 meters.
  double startBearing(EdgeIndex edge) const { return sections_[edge / 2].bearings[edge % 2]; }
  double endBearing(EdgeIndex edge) const;
  /// The angle of the turn from one edge onto the next, in degrees; right is positive.
  double turn(EdgeIndex from, EdgeIndex onto) const;

  /// The open edges that leave a vertex.
  std::span<const EdgeIndex> leaving(VertexIndex vertex) const;

 private:
  struct Section {
    std::uint32_t road = 0;
    std::uint32_t firstShape = 0;
    std::uint32_t shapeSize = 0;
    double length = 0;
    float seconds[2] = {0, 0};
    /// At the start of each of the two edges, in driving direction.
    float bearings[2] = {0, 0};
  };

  using VertexAt = std::unordered_map<std::uint64_t, VertexIndex>;

  void addRoads(VertexAt& vertexAt);
  void readNodes(const VertexAt& vertexAt);
  void splitIntoSections();
  void addSection(std::uint32_t road, std::uint32_t first, std::uint32_t last);
  void indexLeavingEdges();
  float bearingFrom(EdgeIndex edge) const;

  std::shared_ptr<const MapData> map_;
  std::vector<Road> roads_;
  std::vector<Vertex> vertices_;
  /// The vertices of all roads, back to back; roadShapes_[i] is the index where road i begins.
  std::vector<VertexIndex> shapes_;
  std::vector<std::uint32_t> roadShapes_;
  std::vector<Section> sections_;
  double topSpeed_ = 1;
  std::vector<std::uint32_t> firstLeaving_;
  std::vector<EdgeIndex> leaving_;
};

}  // namespace quorvelkit::sandbox
