// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLAnnotation.h>
#include <QuorvelPlatform/Coordinate.h>

namespace quorvelkit {

/// A marker at one coordinate. Default: (0, 0).
class QUORVELKIT_EXPORT MGLPointAnnotation : public MGLAnnotation {
 public:
  MGLPointAnnotation();
  ~MGLPointAnnotation() override;

  /// The position of the marker.
  Coordinate coordinate() const { return coordinate_; }
  void setCoordinate(Coordinate coordinate) { coordinate_ = coordinate; }

 private:
  Coordinate coordinate_;
};

}  // namespace quorvelkit
