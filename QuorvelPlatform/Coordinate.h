// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

namespace quorvelkit {

/// A position in degrees (WGS 84). The ranges are not checked. In models, (0, 0) means that the
/// position is missing.
struct Coordinate {
  /// Degrees north of the equator.
  double latitude = 0;
  /// Degrees east of Greenwich.
  double longitude = 0;

  friend bool operator==(const Coordinate&, const Coordinate&) = default;
};

}  // namespace quorvelkit
