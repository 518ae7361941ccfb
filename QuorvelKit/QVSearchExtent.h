// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <string>

namespace quorvelkit {

/// A box to search in, by its corners. Nothing checks which lies where.
struct QUORVELKIT_EXPORT QVSearchExtent {
  Coordinate southwestCoordinate;
  Coordinate northeastCoordinate;

  /// West, south, east and north, as queries have them: "-118.5,33.9,-118.1,34.2".
  std::string string() const;

  friend bool operator==(const QVSearchExtent&, const QVSearchExtent&) = default;
};

}  // namespace quorvelkit
