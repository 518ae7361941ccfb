// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadNetwork.h"
#include "sandbox/RoadPosition.h"

#include <memory>
#include <vector>

namespace quorvelkit::sandbox {

/// Finds the roads near a position. The network must outlive the index. Immutable.
class RoadIndex {
 public:
  explicit RoadIndex(const RoadNetwork& network);
  ~RoadIndex();
  RoadIndex(const RoadIndex&) = delete;
  RoadIndex& operator=(const RoadIndex&) = delete;

  /// The nearest place on each of the few roads nearest to a position, nearest first: the nearest
  /// road within a kilometer and those hardly farther away. Motorways and ramps count only for a
  /// position that is on them, since nobody starts from a house beside a motorway.
  std::vector<RoadPosition> near(const Coordinate& position) const;

 private:
  struct Tree;

  const RoadNetwork& network_;
  std::unique_ptr<Tree> tree_;
};

}  // namespace quorvelkit::sandbox
