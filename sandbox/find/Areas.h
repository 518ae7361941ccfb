// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"

#include <optional>

namespace quorvelkit::sandbox {

/// Whether a position lies on the surface: inside an outer ring, outside the rings of its holes.
bool areaContains(const MapArea& area, const Coordinate& position);

/// The centroid of the area's first polygon; absent when the area has none.
std::optional<Coordinate> areaMiddle(const MapArea& area);

}  // namespace quorvelkit::sandbox
