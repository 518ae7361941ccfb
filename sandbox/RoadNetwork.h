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

/// The streets of a map as a graph. Ways are joined wherever they share a position and cut into
/// sections there. A section may be driven one way or both: every direction is an edge. Immutable.
class RoadNetwork {
 public:
  using VertexIndex = std::uint32_t;
  /// Twice the section's number, plus one for the direction against the way.
  using EdgeIndex = std::uint32_t;

  struct Vertex {
    /// The OSM id where the map has a tagged node here, otherwise a number made from the
    /// position. Either may be beyond 32 bits.
    std::int64_t id = 0;
    Coordinate position;
    /// How long a car waits here on average, in seconds: lights, stop signs.
    float delay = 0;
    /// The number of a motorway exit; points into the map data.
    std::string_view exitNumber;
  };

  explicit RoadNetwork(std::shared_ptr<const MapData> map);

  std::size_t edgeCount() const { return sections_.size() * 2; }
  std::size_t sectionCount() const { return sections_.size(); }
  /// What is driven on the fastest road, in meters per second.
  double topSpeed() const { return topSpeed_; }
  const Vertex& vertex(VertexIndex index) const { return vertices_[index]; }

  static EdgeIndex reversed(EdgeIndex edge) { return edge ^ 1U; }
  const Road& road(EdgeIndex edge) const { return roads_[sections_[edge / 2].road]; }
  /// Whether the edge may be driven.
  bool isOpen(EdgeIndex edge) const {
    return edge % 2 == 0 ? road(edge).openForward : road(edge).openBackward;
  }
  double length(EdgeIndex edge) const { return sections_[edge / 2].length; }
  /// Driving time in seconds with the waits on the way, those at its end included.
  double seconds(EdgeIndex edge) const { return sections_[edge / 2].seconds[edge % 2]; }
  /// The vertices along the edge in driving direction, both ends included.
  std::size_t shapeSize(EdgeIndex edge) const { return sections_[edge / 2].shapeSize; }
  VertexIndex shape(EdgeIndex edge, std::size_t index) const;
  VertexIndex startOf(EdgeIndex edge) const { return shape(edge, 0); }
  VertexIndex endOf(EdgeIndex edge) const { return shape(edge, shapeSize(edge) - 1); }
  /// The course at the edge's start and at its end, as a driver feels it: over some meters.
  double startBearing(EdgeIndex edge) const { return sections_[edge / 2].bearings[edge % 2]; }
  double endBearing(EdgeIndex edge) const;
  /// The turn from one edge onto the next in degrees; right is positive.
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
    /// At the start of either edge, leading away from the end where it starts.
    float bearings[2] = {0, 0};
  };

  using VertexAt = std::unordered_map<std::uint64_t, VertexIndex>;

  void addRoads(VertexAt& vertexAt);
  void readNodes(const VertexAt& vertexAt);
  void cutIntoSections();
  void addSection(std::uint32_t road, std::uint32_t first, std::uint32_t last);
  void indexLeavingEdges();
  float bearingFrom(EdgeIndex edge) const;

  std::shared_ptr<const MapData> map_;
  std::vector<Road> roads_;
  std::vector<Vertex> vertices_;
  /// All roads' vertices, one road after the other; roadShapes_[i] is where road i begins.
  std::vector<VertexIndex> shapes_;
  std::vector<std::uint32_t> roadShapes_;
  std::vector<Section> sections_;
  double topSpeed_ = 1;
  std::vector<std::uint32_t> firstLeaving_;
  std::vector<EdgeIndex> leaving_;
};

}  // namespace quorvelkit::sandbox
