// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace quorvelkit {

/// A position on the globe in degrees (WGS 84), latitude first. Nothing checks the ranges. In
/// the models, (0, 0) stands for a missing position.
struct Coordinate {
  double latitude = 0;
  double longitude = 0;

  friend bool operator==(const Coordinate&, const Coordinate&) = default;
};

}  // namespace quorvelkit
