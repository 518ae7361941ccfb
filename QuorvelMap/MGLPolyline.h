// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLAnnotation.h>
#include <QuorvelPlatform/Coordinate.h>

#include <cstddef>
#include <vector>

namespace quorvelkit {

/// A line through positions in their order. Between two neighbours it takes the shorter way around
/// the globe, so a line may cross the antimeridian. Positions that are not finite are passed over;
/// with fewer than two others nothing is drawn.
class QUORVELKIT_EXPORT MGLPolyline : public MGLAnnotation {
 public:
  explicit MGLPolyline(std::vector<Coordinate> coordinates);
  ~MGLPolyline() override;

  const std::vector<Coordinate>& coordinates() const { return coordinates_; }
  std::size_t pointCount() const { return coordinates_.size(); }

 private:
  std::vector<Coordinate> coordinates_;
};

}  // namespace quorvelkit
