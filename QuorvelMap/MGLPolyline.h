// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLAnnotation.h>
#include <QuorvelPlatform/Coordinate.h>

#include <cstddef>
#include <vector>

namespace quorvelkit {

/// A line through coordinates. Between two coordinates it takes the shorter way around the globe,
/// so it can cross the antimeridian. The map view skips coordinates that are not finite, and draws
/// nothing if fewer than two others remain.
class QUORVELKIT_EXPORT MGLPolyline : public MGLAnnotation {
 public:
  /// Makes a line through these coordinates, in this order.
  explicit MGLPolyline(std::vector<Coordinate> coordinates);
  ~MGLPolyline() override;

  /// The coordinates and their number.
  const std::vector<Coordinate>& coordinates() const { return coordinates_; }
  std::size_t pointCount() const { return coordinates_.size(); }

 private:
  std::vector<Coordinate> coordinates_;
};

}  // namespace quorvelkit
