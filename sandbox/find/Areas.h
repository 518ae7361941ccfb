// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"

#include <optional>

namespace quorvelkit::sandbox {

/// Whether a position is inside an outer ring and outside the rings of its holes.
bool areaContains(const MapArea& area, const Coordinate& position);

/// Returns the centroid of the first polygon, or nothing if the area has no polygon.
std::optional<Coordinate> areaCentroid(const MapArea& area);

}  // namespace quorvelkit::sandbox
