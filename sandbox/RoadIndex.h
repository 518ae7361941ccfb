// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadNetwork.h"
#include "sandbox/RoadPosition.h"

#include <memory>
#include <vector>

namespace quorvelkit::sandbox {

/// A spatial index of the roads of a network. The network must outlive it. Immutable.
class RoadIndex {
 public:
  explicit RoadIndex(const RoadNetwork& network);
  ~RoadIndex();
  RoadIndex(const RoadIndex&) = delete;
  RoadIndex& operator=(const RoadIndex&) = delete;

  /// Returns the nearest road within a kilometer and the roads that are at most 60 meters farther
  /// away, nearest first, each with its nearest position. Ignores motorways and ramps unless the
  /// position is on them: a trip does not start beside a motorway.
  std::vector<RoadPosition> near(const Coordinate& position) const;

 private:
  struct Tree;

  const RoadNetwork& network_;
  std::unique_ptr<Tree> tree_;
};

}  // namespace quorvelkit::sandbox
