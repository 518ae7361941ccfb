// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <string>

namespace quorvelkit {

/// The box of a search, described by two corners in degrees. The corners are not checked.
struct QUORVELKIT_EXPORT QVSearchExtent {
  /// The corners.
  Coordinate southwestCoordinate;
  Coordinate northeastCoordinate;

  /// Returns "WEST,SOUTH,EAST,NORTH", as in queries: "-118.5,33.9,-118.1,34.2".
  std::string string() const;

  friend bool operator==(const QVSearchExtent&, const QVSearchExtent&) = default;
};

}  // namespace quorvelkit
